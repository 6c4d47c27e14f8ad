#include "formats/dxf/import/dxf_text.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view kFirstUtf8Version = "AC1021";
constexpr std::size_t kEscapeStart = 3; ///< characters of "\U+" and "\M+"
constexpr std::size_t kEscapeDigits = 4;

bool IsPlain(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '\\'; });
}

/// Pages by the start of their name in a drawing; what stands behind it goes behind ours.
struct TPageName {
    std::string_view m_InDrawing;
    std::string_view m_Ours;
};
constexpr TPageName kPageNames[] = {
    {"ANSI_1361", "JOHAB"},
    {"ANSI_", "CP"},
    {"DOS", "CP"},
    {"ISO8859-", "ISO-8859-"},
    {"UTF-8", "UTF-8"},
    {"UTF8", "UTF-8"},
    {"BIG5", "CP950"},
    {"GB2312", "CP936"},
    {"KSC5601", "CP949"},
    {"JOHAB", "JOHAB"},
    {"MAC-ROMAN", "MACINTOSH"},
    {"MACINTOSH", "MACINTOSH"},
    {"KOI8-R", "KOI8-R"},
};
constexpr std::string_view kMultiByteNames[] = {"", "CP932", "CP950", "CP949", "JOHAB", "CP936"};

/// Four hexadecimal digits at an offset. False if there are none.
bool ReadHex(std::string_view text, std::size_t nOffset, unsigned& nValue)
{
    if (text.size() < nOffset + kEscapeDigits)
        return false;
    const char* const pEnd = text.data() + nOffset + kEscapeDigits;
    const auto read = std::from_chars(text.data() + nOffset, pEnd, nValue, 16);
    return read.ec == std::errc() && read.ptr == pEnd;
}

bool IsSurrogate(unsigned nUnit, unsigned nFirst)
{
    return nUnit >= nFirst && nUnit < nFirst + 0x400;
}

/// Takes the escape of one character, of two units where one isn't enough. 0, with nothing taken, where there is none:
/// a control character isn't taken either.
unsigned TakeUnicode(std::string_view& text)
{
    constexpr std::size_t kLength = kEscapeStart + kEscapeDigits;
    constexpr unsigned kLeast = 0x20, kHigh = 0xD800, kLow = 0xDC00;
    unsigned nCode = 0, nLow = 0;
    if (!text.starts_with("\\U+") || !ReadHex(text, kEscapeStart, nCode) || nCode < kLeast)
        return 0;
    text.remove_prefix(kLength);
    if (IsSurrogate(nCode, kHigh) && text.starts_with("\\U+") && ReadHex(text, kEscapeStart, nLow) &&
        IsSurrogate(nLow, kLow)) {
        text.remove_prefix(kLength);
        return 0x10000 + ((nCode - kHigh) << 10U) + (nLow - kLow);
    }
    return nCode; // half a character has no meaning, which AppendCharacter sees to
}

} // namespace

void CDXFText::SetVersion(std::string_view version)
{
    m_bUtf8 = version.starts_with("AC") && version >= kFirstUtf8Version;
}

bool CDXFText::SetCodePage(std::string_view name)
{
    const auto* const pName = std::find_if(std::begin(kPageNames), std::end(kPageNames), [name](const TPageName& page) {
        return name.starts_with(page.m_InDrawing);
    });
    if (pName == std::end(kPageNames))
        return name == "ASCII" || name == "US-ASCII"; // and so no page is told
    const CString strName = CString(pName->m_Ours) + CString(name.substr(pName->m_InDrawing.size()));
    auto pPage = std::make_unique<CIECodePage>(strName);
    if (pPage->GetName() != strName)
        return false;
    m_pPage = std::move(pPage);
    m_bPageStated = true;
    return true;
}

void CDXFText::Prepare()
{
    constexpr std::string_view kDouble[] = {"CP936", "CP949", "CP950", "JOHAB"};
    const CString& strPage = m_pPage->GetName();
    CDXFReader::EBytes eBytes = CDXFReader::EBytes::Single;
    if (!m_bUtf8 && strPage == "CP932")
        eBytes = CDXFReader::EBytes::ShiftJis;
    else if (!m_bUtf8 && std::find(std::begin(kDouble), std::end(kDouble), strPage) != std::end(kDouble))
        eBytes = CDXFReader::EBytes::Double;
    m_Reader.SetBytes(eBytes, !m_bPageStated);
}

std::string_view CDXFText::View(std::string_view bytes, CString& strScratch)
{
    if (IsPlain(bytes))
        return bytes;
    strScratch = ToText(bytes);
    return strScratch;
}

CString CDXFText::ToText(std::string_view bytes)
{
    if (IsPlain(bytes))
        return CString(bytes);
    CString text = (m_bUtf8 || !m_bPageStated) && IEUtils::IsValidUtf8(bytes) ? CString(bytes) : m_pPage->ToText(bytes);
    if (text.find('\\') != CString::npos)
        text = Unescape(text);
    if (text.find(Encoding::kReplacement) != CString::npos && m_nMended++ == 0)
        m_FirstMended = CDXFTally::PlaceOf(m_Reader);
    return text;
}

CString CDXFText::Unescape(std::string_view text)
{
    CString out;
    while (!text.empty()) {
        unsigned nBytes = 0;
        if (const unsigned nCode = TakeUnicode(text)) {
            IEUtils::AppendCharacter(out, nCode);
        } else if (text.starts_with("\\M+") && text.size() > kEscapeStart && text[kEscapeStart] >= '1' &&
                   text[kEscapeStart] < '0' + static_cast<int>(kMultiBytePages) &&
                   ReadHex(text, kEscapeStart + 1, nBytes)) {
            out += ToMultiByteText(static_cast<unsigned>(text[kEscapeStart] - '0'), nBytes);
            text.remove_prefix(kEscapeStart + 1 + kEscapeDigits);
        } else {
            out += text[0];
            text.remove_prefix(1);
        }
    }
    return out;
}

CString CDXFText::ToMultiByteText(unsigned nPage, unsigned nBytes)
{
    std::unique_ptr<CIECodePage>& pPage = m_MultiByte[nPage];
    if (!pPage)
        pPage = std::make_unique<CIECodePage>(CString(kMultiByteNames[nPage]));
    const char bytes[] = {static_cast<char>(nBytes >> 8U), static_cast<char>(nBytes & 0xFFU)};
    return pPage->ToText({bytes, sizeof bytes});
}
