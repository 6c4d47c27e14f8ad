// Texts of 8 bits in the job's code page, for forms that hold bytes rather than text.
#pragma once

#include "vellumlib/encoding.h"

#include <cstdint>

/// Turns UTF-8 into the bytes of a code page and back, text by text. Texts in ASCII pass as they are. One thread at a
/// time.
class CIECodePage {
public:
    /// A name known to iconv; an unknown one, and one whose ASCII isn't ASCII (UTF-16, EBCDIC), is taken as CP1252.
    explicit CIECodePage(const CString& name);

    /// The text's bytes. A character that the code page lacks becomes "?" and is counted.
    std::string ToBytes(std::string_view text);
    /// The bytes' text. A byte without a meaning becomes U+FFFD.
    CString ToText(std::string_view bytes);
    /// Characters that became "?" so far.
    [[nodiscard]] std::int64_t GetReplacedCharacters() const { return m_nReplaced; }
    /// The name in force.
    [[nodiscard]] const CString& GetName() const { return m_strName; }

private:
    bool Open(const CString& name);

    CString m_strName;
    Encoding::CConverter m_ToBytes;
    Encoding::CConverter m_ToText;
    std::int64_t m_nReplaced = 0;
};
