#include "jobfile/json_text.h"

#include "jobfile/json_scanner.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <utility>

namespace {

constexpr std::size_t kPiece = std::size_t{64} << 10;

/// Numbers within these are written without an exponent.
constexpr double kSmallestPlain = 1e-9;
constexpr double kLargestPlain = 1e15;

bool IsPlain(char c)
{
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
}

/// False if it had to be mended.
bool AppendEscaped(CString& out, std::string_view text)
{
    constexpr std::string_view kSigns = "\"\\bfnrt";
    constexpr std::string_view kMeanings = "\"\\\b\f\n\r\t";
    bool bWhole = true;
    while (!text.empty()) {
        const std::size_t nLength = GetCharacterLength(text);
        const std::size_t nSign = kMeanings.find(text[0]);
        if (nLength == 0)
            IEUtils::AppendCharacter(out, 0xFFFD);
        else if (nSign != std::string_view::npos)
            out.append(1, '\\').append(1, kSigns[nSign]);
        else if (static_cast<unsigned char>(text[0]) < ' ')
            out.append(fmt::format("\\u{:04x}", static_cast<unsigned>(text[0])));
        else
            out.append(text.substr(0, nLength));
        text.remove_prefix(std::max<std::size_t>(nLength, 1));
        bWhole = bWhole && nLength != 0;
    }
    return bWhole;
}

} // namespace

void CIEJsonText::NewLine()
{
    if (m_strBuffer.size() >= kPiece) {
        m_bTaken = m_bTaken && m_Sink.Take(m_strBuffer);
        m_strBuffer.clear();
    }
    m_strBuffer.push_back('\n');
    m_strBuffer.append(2 * m_Levels.size(), ' ');
}

/// The comma behind the value before, and the line of this one.
void CIEJsonText::StartValue()
{
    if (m_bAfterKey) {
        m_bAfterKey = false;
        return;
    }
    if (m_Levels.empty())
        return;
    TLevel& level = m_Levels.back();
    if (!level.m_bEmpty)
        m_strBuffer.push_back(',');
    level.m_bEmpty = false;
    if (level.m_bLines)
        NewLine();
}

void CIEJsonText::BeginOptionalObject(const char* pKey, EStyle eStyle)
{
    m_pPendingKey = pKey;
    m_ePendingStyle = eStyle;
}

void CIEJsonText::EndObject()
{
    if (m_pPendingKey)
        m_pPendingKey = nullptr;
    else
        End('}');
}

void CIEJsonText::Key(std::string_view key)
{
    if (const char* const pPending = std::exchange(m_pPendingKey, nullptr)) {
        Key(pPending);
        BeginObject(m_ePendingStyle);
    }
    StartValue();
    AppendQuoted(key);
    m_strBuffer.append(m_Levels.back().m_bLines ? ": " : ":");
    m_bAfterKey = true;
}

void CIEJsonText::Begin(char cBracket, EStyle eStyle)
{
    StartValue();
    m_strBuffer.push_back(cBracket);
    const bool bWithinLines = m_Levels.empty() || m_Levels.back().m_bLines;
    m_Levels.push_back({bWithinLines && eStyle == Lines, true});
}

void CIEJsonText::End(char cBracket)
{
    const TLevel level = m_Levels.back();
    m_Levels.pop_back();
    if (level.m_bLines && !level.m_bEmpty)
        NewLine();
    m_strBuffer.push_back(cBracket);
}

void CIEJsonText::Number(double dValue)
{
    StartValue();
    m_nMended += !std::isfinite(dValue);
    const double dSize = std::fabs(dValue);
    if (dSize == 0.0 || (dSize >= kSmallestPlain && dSize < kLargestPlain) || !std::isfinite(dValue)) {
        IEUtils::AppendDouble(m_strBuffer, dValue, -1);
        return;
    }
    char digits[32];
    const auto written = std::to_chars(std::begin(digits), std::end(digits), dValue, std::chars_format::scientific);
    m_strBuffer.append(digits, written.ptr);
}

void CIEJsonText::Whole(std::int64_t nValue)
{
    StartValue();
    m_strBuffer.append(IEUtils::IntToString(nValue));
}

void CIEJsonText::Flag(bool bValue)
{
    StartValue();
    m_strBuffer.append(bValue ? "true" : "false");
}

void CIEJsonText::Text(std::string_view text)
{
    StartValue();
    AppendQuoted(text);
}

void CIEJsonText::AppendQuoted(std::string_view text)
{
    m_strBuffer.push_back('"');
    if (std::all_of(text.begin(), text.end(), [](char c) { return IsPlain(c); }))
        m_strBuffer.append(text);
    else
        m_nMended += !AppendEscaped(m_strBuffer, text);
    m_strBuffer.push_back('"');
}

bool CIEJsonText::Finish()
{
    m_strBuffer.push_back('\n');
    m_bTaken = m_bTaken && m_Sink.Take(m_strBuffer);
    m_strBuffer.clear();
    return m_bTaken;
}
