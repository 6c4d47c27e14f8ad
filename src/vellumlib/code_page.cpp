#include "vellumlib/code_page.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

CIECodePage::CIECodePage(const CString& name) : m_strName(name)
{
    if (Open(name))
        return;
    m_strName = "CP1252";
    (void)Open(m_strName);
}

bool CIECodePage::Open(const CString& name)
{
    constexpr std::string_view kSample = "AZaz09 !\"%+,-./:_*";
    if (!m_ToBytes.Open(name, "UTF-8") || !m_ToText.Open("UTF-8", name))
        return false;
    std::string bytes;
    const bool bAll = m_ToBytes.Convert(bytes, kSample).empty();
    m_ToBytes.Restart();
    return bAll && bytes == kSample;
}

std::string CIECodePage::ToBytes(std::string_view text)
{
    if (IsAscii(text))
        return std::string(text);
    std::string bytes;
    text = m_ToBytes.Convert(bytes, text);
    while (!text.empty()) {
        ++m_nReplaced;
        m_ToBytes.Convert(bytes, "?");
        text.remove_prefix(std::max<std::size_t>(IEUtils::Left(text, 1).size(), 1));
        text = m_ToBytes.Convert(bytes, text);
    }
    m_ToBytes.Finish(bytes);
    return bytes;
}

CString CIECodePage::ToText(std::string_view bytes)
{
    if (IsAscii(bytes))
        return CString(bytes);
    CString text;
    bytes = m_ToText.Convert(text, bytes);
    while (!bytes.empty()) {
        text += Encoding::kReplacement;
        m_ToText.Restart();
        bytes = m_ToText.Convert(text, bytes.substr(1));
    }
    m_ToText.Restart();
    if (IEUtils::IsValidUtf8(text))
        return text;
    // iconv lets characters beyond U+10FFFF pass where the code page is UTF-8 itself
    CString mended;
    Encoding::AppendMended(mended, text);
    return mended;
}
