// What the notes on a drawing share.
#pragma once

#include "alidade/vellumlib/draw_properties.h"
#include "alidade/vellumlib/types.h"

#include <string_view>

namespace DXFNoteWords {

/// Whether readers act on a text wherever it stands.
bool IsWord(std::string_view text);
/// The name of an object's block as it is read back.
CString BlockName(const CString& strName);

// what a drawing holds of no object or not of all; the properties may be null
bool HasWidth(const CIEDrawProperties* pProperties);
bool HasMarkStyle(const CIEDrawProperties* pProperties);
bool IsFlooded(const CIEDrawProperties* pProperties);

/// Joins what is wrong with one thing into a sentence.
class CReasons {
public:
    void Add(bool bHolds, std::string_view reason)
    {
        if (!bHolds)
            return;
        m_strText += m_strText.empty() ? "" : "; ";
        m_strText += reason;
    }
    [[nodiscard]] const CString& Get() const { return m_strText; }

private:
    CString m_strText;
};

} // namespace DXFNoteWords
