#include "jobfile/json_scanner.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// Bytes that stand for themselves within a text.
constexpr std::array<bool, 256> MakePlain()
{
    std::array<bool, 256> plain{};
    for (std::size_t i = 0x20; i < 0x80; ++i)
        plain[i] = i != '"' && i != '\\';
    return plain;
}
constexpr std::array<bool, 256> kPlain = MakePlain();

bool IsPlain(char c)
{
    return kPlain[static_cast<unsigned char>(c)];
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsFirstByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

} // namespace

std::size_t GetCharacterLength(std::string_view text)
{
    constexpr std::size_t kLongest = 4;
    for (std::size_t n = 1; n <= std::min(kLongest, text.size()); ++n) {
        if (IEUtils::IsValidUtf8(text.substr(0, n)))
            return n;
    }
    return 0;
}

CIEJsonScanner::CIEJsonScanner(std::string_view text)
    : m_pBegin(text.empty() ? "" : text.data()),
      m_p(m_pBegin + (text.starts_with(kMark) ? kMark.size() : 0)),
      m_pEnd(m_pBegin + text.size())
{
}

CString CIEJsonScanner::GetPlace() const
{
    const auto nLine = std::count(m_pBegin, m_pBroken, '\n') + 1;
    const std::string_view before(m_pBegin, static_cast<std::size_t>(m_pBroken - m_pBegin));
    const std::size_t nLineStart = before.rfind('\n') + 1; // npos + 1 is 0
    const auto nColumn =
        std::count_if(before.begin() + static_cast<std::ptrdiff_t>(nLineStart), before.end(), IsFirstByte) + 1;
    return "line " + std::to_string(nLine) + ", column " + std::to_string(nColumn);
}

CIEJsonScanner::EToken CIEJsonScanner::Fail(const char* pWhere, const char* pReason)
{
    m_pBroken = pWhere;
    m_pReason = pReason;
    m_eState = Done;
    return Broken;
}

/// Fails at the end of a token that may not stand where it is, unless it is broken itself.
CIEJsonScanner::EToken CIEJsonScanner::FailUnexpected(const char* pReason)
{
    const char* const pFirst = m_p;
    if (ReadValue() != Broken)
        return Fail(m_p - 1, pReason);
    if (m_pBroken == pFirst && pFirst != m_pEnd) {
        m_pReason = pReason;
        m_bTooDeep = false;
    }
    return Broken;
}

void CIEJsonScanner::SkipBlanks()
{
    while (m_p != m_pEnd && (*m_p == ' ' || *m_p == '\n' || *m_p == '\r' || *m_p == '\t'))
        ++m_p;
}

// ---- grammar

CIEJsonScanner::EToken CIEJsonScanner::Next()
{
    if (m_pBroken)
        return Broken;
    SkipBlanks();
    const char c = m_p == m_pEnd ? '\0' : *m_p;
    switch (m_eState) {
    case FirstKey:
        return c == '}' ? CloseLevel(true) : ReadKey();
    case NextKey:
        return ReadKey();
    case FirstElement:
        return c == ']' ? CloseLevel(false) : ReadValue();
    case Value:
        return ReadValue();
    case Done:
        return m_p == m_pEnd ? End : FailUnexpected("The text goes on behind the document's end.");
    case AfterValue:
        break;
    }
    const bool bObject = IsInObject();
    if (c == ',') {
        ++m_p;
        SkipBlanks();
        return bObject ? ReadKey() : ReadValue();
    }
    if (c == (bObject ? '}' : ']'))
        return CloseLevel(bObject);
    return FailUnexpected(bObject ? "A comma or } is wanted here." : "A comma or ] is wanted here.");
}

CIEJsonScanner::EToken CIEJsonScanner::ReadValue()
{
    m_eState = m_nDepth == 0 ? Done : AfterValue;
    if (m_p == m_pEnd)
        return Fail(m_p, "The text ends too early.");
    switch (*m_p) {
    case '{':
        return OpenLevel(true);
    case '[':
        return OpenLevel(false);
    case '"':
        return ReadText(Text);
    case 't':
    case 'f':
        m_bFlag = *m_p == 't';
        return ReadWord(m_bFlag ? "true" : "false", Flag);
    case 'n':
        return ReadWord("null", Null);
    default:
        return *m_p == '-' || IsDigit(*m_p) ? ReadNumber() : Fail(m_p, "A value is wanted here.");
    }
}

CIEJsonScanner::EToken CIEJsonScanner::ReadKey()
{
    if (m_p == m_pEnd || *m_p != '"')
        return FailUnexpected("A key in double quotes is wanted here.");
    if (ReadText(Key) == Broken)
        return Broken;
    SkipBlanks();
    if (m_p == m_pEnd || *m_p != ':')
        return FailUnexpected("A colon is wanted here.");
    ++m_p;
    m_eState = Value;
    return Key;
}

CIEJsonScanner::EToken CIEJsonScanner::OpenLevel(bool bObject)
{
    ++m_p;
    if (m_nDepth == kDeepest) {
        m_bTooDeep = true;
        return Fail(m_p - 1, "Values are nested too deep here.");
    }
    m_Objects[m_nDepth++] = bObject;
    m_eState = bObject ? FirstKey : FirstElement;
    return bObject ? OpenObject : OpenArray;
}

CIEJsonScanner::EToken CIEJsonScanner::CloseLevel(bool bObject)
{
    ++m_p;
    m_eState = --m_nDepth == 0 ? Done : AfterValue;
    return bObject ? CloseObject : CloseArray;
}

// ---- words and numbers

CIEJsonScanner::EToken CIEJsonScanner::ReadWord(std::string_view word, EToken eToken)
{
    for (const char c : word) {
        if (m_p == m_pEnd || *m_p != c)
            return Fail(m_p, "This is none of the words true, false and null.");
        ++m_p;
    }
    return eToken;
}

bool CIEJsonScanner::SkipDigits()
{
    const char* const pFirst = m_p;
    while (m_p != m_pEnd && IsDigit(*m_p))
        ++m_p;
    return m_p != pFirst;
}

CIEJsonScanner::EToken CIEJsonScanner::ReadNumber()
{
    constexpr const char* kDigitWanted = "A digit is wanted here.";
    const char* const pFirst = m_p;
    m_p += *m_p == '-';
    if (m_p != m_pEnd && *m_p == '0')
        ++m_p;
    else if (!SkipDigits())
        return Fail(m_p, kDigitWanted);
    m_bWhole = true;
    if (m_p != m_pEnd && *m_p == '.') {
        m_bWhole = false;
        ++m_p;
        if (!SkipDigits())
            return Fail(m_p, kDigitWanted);
    }
    if (m_p != m_pEnd && (*m_p == 'e' || *m_p == 'E')) {
        m_bWhole = false;
        ++m_p;
        m_p += m_p != m_pEnd && (*m_p == '+' || *m_p == '-');
        if (!SkipDigits())
            return Fail(m_p, kDigitWanted);
    }
    m_Token = {pFirst, static_cast<std::size_t>(m_p - pFirst)};
    if (!IEUtils::StringToDouble(m_Token, m_dNumber, false))
        return Fail(m_p - 1, "This number is too large.");
    if (m_bWhole)
        m_dNumber += 0.0; // no minus zero
    return Number;
}

// ---- texts

CIEJsonScanner::EToken CIEJsonScanner::ReadText(EToken eToken)
{
    const char* pFirst = ++m_p; // of what isn't in m_strDecoded yet
    m_bInPlace = true;
    for (;;) {
        while (m_p != m_pEnd && IsPlain(*m_p))
            ++m_p;
        if (m_p == m_pEnd)
            return Fail(m_p, "The text ends within double quotes.");
        const std::string_view piece(pFirst, static_cast<std::size_t>(m_p - pFirst));
        if (*m_p == '"') {
            ++m_p;
            m_Token = m_bInPlace ? piece : std::string_view(m_strDecoded.append(piece));
            return eToken;
        }
        if (*m_p == '\\') {
            if (m_bInPlace)
                m_strDecoded.clear();
            m_bInPlace = false;
            m_strDecoded.append(piece);
            if (!ReadEscape())
                return Broken;
            pFirst = m_p;
        } else if (!SkipCharacter()) {
            return Broken;
        }
    }
}

/// A character of more than one byte, or one that may not stand in a text.
bool CIEJsonScanner::SkipCharacter()
{
    if (static_cast<unsigned char>(*m_p) < 0x80) {
        Fail(m_p, "A control character stands in a text; \\u and four digits may stand for it.");
        return false;
    }
    const std::size_t nLength = GetCharacterLength({m_p, static_cast<std::size_t>(m_pEnd - m_p)});
    if (nLength == 0) {
        const bool bLeads = static_cast<unsigned char>(*m_p) >= 0xC2 && static_cast<unsigned char>(*m_p) <= 0xF4;
        Fail(m_p + (bLeads ? 1 : 0), "This isn't UTF-8."); // where the character isn't gone on with
        return false;
    }
    m_p += nLength;
    return true;
}

bool CIEJsonScanner::ReadHex(char32_t& c)
{
    c = 0;
    for (int i = 0; i < 4; ++i, ++m_p) {
        int nDigit = 0;
        if (m_p == m_pEnd || std::from_chars(m_p, m_p + 1, nDigit, 16).ec != std::errc()) {
            Fail(m_p, "\\u needs four hexadecimal digits.");
            return false;
        }
        c = c * 16 + static_cast<char32_t>(nDigit);
    }
    return true;
}

bool CIEJsonScanner::ReadEscape()
{
    constexpr std::string_view kSigns = "\"\\/bfnrt";
    constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    constexpr const char* kHalf = "Half a pair of \\u characters stands here.";
    ++m_p;
    if (m_p == m_pEnd)
        return Fail(m_p, "The text ends within double quotes.") != Broken;
    const std::size_t nSign = kSigns.find(*m_p);
    if (nSign != std::string_view::npos) {
        m_strDecoded.push_back(kMeanings[nSign]);
        ++m_p;
        return true;
    }
    if (*m_p != 'u')
        return Fail(m_p, "There is no such character behind \\.") != Broken;
    ++m_p;
    char32_t c = 0;
    if (!ReadHex(c))
        return false;
    if (c >= 0xDC00 && c <= 0xDFFF)
        return Fail(m_p - 1, kHalf) != Broken;
    if (c >= 0xD800 && c <= 0xDBFF) {
        char32_t cLow = 0;
        for (const char sign : {'\\', 'u'}) {
            if (m_p == m_pEnd || *m_p != sign)
                return Fail(m_p, kHalf) != Broken;
            ++m_p;
        }
        if (!ReadHex(cLow))
            return false;
        if (cLow < 0xDC00 || cLow > 0xDFFF)
            return Fail(m_p - 1, kHalf) != Broken;
        c = 0x10000 + ((c - 0xD800) << 10U) + (cLow - 0xDC00);
    }
    IEUtils::AppendCharacter(m_strDecoded, c);
    return true;
}
