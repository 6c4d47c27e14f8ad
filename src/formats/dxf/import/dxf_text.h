// Texts of a drawing, which are bytes, as texts of the job.
#pragma once

#include "alidade/formats/dxf/import/dxf_reader.h"
#include "formats/dxf/import/dxf_tally.h"
#include "vellumlib/code_page.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

/// Knows what a drawing says of its encoding. From version AC1021 on it is UTF-8, before that the code page that the
/// header names; where it names none, valid UTF-8 stays as it is and all else is in the page of the settings.
class CDXFText {
public:
    /// The reader, which has to outlive this, is told how to take bytes, and asked where a text stands.
    CDXFText(const CString& strSettingsPage, CDXFReader& reader)
        : m_Reader(reader), m_pPage(std::make_unique<CIECodePage>(strSettingsPage))
    {
    }

    /// The value of $ACADVER, in upper case.
    void SetVersion(std::string_view version);
    /// The value of $DWGCODEPAGE, in upper case. False for a page that isn't known; the one in force stays then.
    bool SetCodePage(std::string_view name);

    /// Tells the reader how to take the bytes of texts from now on.
    void Prepare();

    /// UTF-8 of a text, in which \U+XXXX and \M+NXXXX stand for characters.
    CString ToText(std::string_view bytes);
    /// The same; a text that needs no change is given back itself.
    std::string_view View(std::string_view bytes, CString& strScratch);

    /// Texts in which something became U+FFFD, so far.
    [[nodiscard]] std::int64_t GetMended() const { return m_nMended; }
    /// Where the reader was at the first of them.
    [[nodiscard]] const CDXFTally::TPlace& GetFirstMended() const { return m_FirstMended; }

private:
    static constexpr std::size_t kMultiBytePages = 6;

    CString Unescape(std::string_view text);
    CString ToMultiByteText(unsigned nPage, unsigned nBytes);

    CDXFReader& m_Reader;
    std::unique_ptr<CIECodePage> m_pPage;
    bool m_bPageStated = false;
    bool m_bUtf8 = false;
    std::array<std::unique_ptr<CIECodePage>, kMultiBytePages> m_MultiByte; ///< by the digit N, made when first met
    std::int64_t m_nMended = 0;
    CDXFTally::TPlace m_FirstMended;
};
