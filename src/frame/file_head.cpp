#include "frame/file_head.h"

#include <charconv>

namespace {

enum class EText { Bytes, LittleEndian, BigEndian };

EText GuessText(std::string_view head)
{
    if (head.starts_with("\xff\xfe"))
        return EText::LittleEndian;
    if (head.starts_with("\xfe\xff"))
        return EText::BigEndian;
    // two ASCII characters without a mark
    if (head.size() >= 4) {
        if (head[0] && !head[1] && head[2] && !head[3])
            return EText::LittleEndian;
        if (!head[0] && head[1] && !head[2] && head[3])
            return EText::BigEndian;
    }
    return EText::Bytes;
}

std::string_view Trim(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first == text.npos ? std::string_view() : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

namespace FileHead {

CString ToText(std::string_view head)
{
    const EText kind = GuessText(head);
    if (kind == EText::Bytes)
        return CString(head.substr(head.starts_with("\xef\xbb\xbf") ? 3 : 0));

    const std::size_t low = kind == EText::LittleEndian ? 0 : 1;
    CString text;
    text.reserve(head.size() / 2);
    for (std::size_t i = 0; i + 1 < head.size(); i += 2) {
        const char c = head[i + low];
        text.push_back(head[i + 1 - low] == 0 && static_cast<unsigned char>(c) < 0x80 ? c : '?');
    }
    if (head.starts_with("\xff\xfe") || head.starts_with("\xfe\xff"))
        text.erase(0, 1);
    return text;
}

CString GetXmlRoot(std::string_view head)
{
    const CString whole = ToText(head);
    std::string_view text = whole;
    for (;;) {
        const std::size_t open = text.find('<');
        if (open == text.npos)
            return {};
        text.remove_prefix(open + 1);
        if (text.starts_with("!--")) {
            const std::size_t end = text.find("-->", 3);
            if (end == text.npos)
                return {};
            text.remove_prefix(end + 3);
        } else if (!text.starts_with('?') && !text.starts_with('!'))
            break;
    }
    const std::size_t end = text.find_first_of(" \t\r\n/>");
    if (end == text.npos)
        return {};
    text = text.substr(0, end);
    return CString(text.substr(text.rfind(':') + 1)); // npos + 1 is 0
}

TIEGroup GetFirstGroup(std::string_view head)
{
    constexpr int kRemark = 999;

    CIEHeadLines lines(head);
    std::string_view code, value;
    while (lines.Next(code) && lines.Next(value)) {
        TIEGroup group;
        code = Trim(code);
        const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), group.m_nCode);
        if (error != std::errc() || end != code.data() + code.size() || group.m_nCode < 0)
            break;
        if (group.m_nCode != kRemark) {
            group.m_strValue = Trim(value);
            return group;
        }
    }
    return {};
}

} // namespace FileHead

CIEHeadLines::CIEHeadLines(std::string_view head)
    : m_strText(FileHead::ToText(head)), m_bMaybeCut(head.size() >= FileHead::kMaxBytes)
{
}

bool CIEHeadLines::Next(std::string_view& line)
{
    if (m_nPlace >= m_strText.size())
        return false;
    const std::string_view rest = std::string_view(m_strText).substr(m_nPlace);
    const std::size_t end = rest.find_first_of("\r\n");
    if (end == rest.npos && m_bMaybeCut)
        return false;
    line = rest.substr(0, end);
    if (end == rest.npos)
        m_nPlace = m_strText.size();
    else
        m_nPlace += end + (rest.substr(end).starts_with("\r\n") ? 2 : 1);
    return true;
}
