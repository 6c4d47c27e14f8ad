#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// True if `nWords` times eight bytes from `p` on are ASCII.
template <int nWords>
bool IsAscii(const char* p)
{
    std::uint64_t words[nWords];
    std::memcpy(words, p, sizeof words);
    std::uint64_t all = 0;
    for (std::uint64_t word : words)
        all |= word;
    return (all & 0x8080808080808080U) == 0;
}

/// Takes one character off the front of a text that isn't empty. False for bytes that UTF-8 doesn't allow: cut
/// sequences, longer forms than needed, surrogates, values above U+10FFFF.
bool TakeCharacter(const char*& p, const char* pEnd, char32_t& c)
{
    const auto lead = static_cast<unsigned char>(*p);
    if (lead < 0x80) {
        c = lead;
        ++p;
        return true;
    }
    const int nMore = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || pEnd - p <= nMore)
        return false;
    c = lead & (0x3FU >> nMore);
    for (int i = 1; i <= nMore; ++i) {
        if (!IsContinuation(p[i]))
            return false;
        c = c << 6U | (static_cast<unsigned char>(p[i]) & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[nMore] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
        return false;
    p += nMore + 1;
    return true;
}

/// Byte at which the character of that index begins; the size of the text if it has fewer characters. A stray
/// continuation byte belongs to the character ahead of it.
std::size_t OffsetOf(std::string_view text, std::int64_t nIndex)
{
    std::size_t at = 0;
    for (; nIndex >= 8 && at + 8 <= text.size() && IsAscii<1>(text.data() + at); nIndex -= 8)
        at += 8;
    while (at > 0 && at < text.size() && IsContinuation(text[at]))
        ++at;
    for (; nIndex > 0 && at < text.size(); --nIndex) {
        ++at;
        while (at < text.size() && IsContinuation(text[at]))
            ++at;
    }
    return at;
}

// Both kinds of lists are filled in place, so that the strings of the line before lend their memory to this one.
class CFieldSink {
public:
    explicit CFieldSink(CStringArray& out) : m_Out(out) {}
    ~CFieldSink() { m_Out.resize(m_nCount); }
    CFieldSink(const CFieldSink&) = delete;
    CFieldSink& operator=(const CFieldSink&) = delete;
    void Add(std::string_view field)
    {
        if (m_nCount < m_Out.size())
            m_Out[m_nCount].assign(field);
        else
            m_Out.emplace_back(field);
        ++m_nCount;
    }

private:
    CStringArray& m_Out;
    std::size_t m_nCount = 0;
};

class CViewSink {
public:
    explicit CViewSink(std::vector<std::string_view>& out) : m_Out(out) { m_Out.clear(); }
    void Add(std::string_view field) { m_Out.push_back(field); }

private:
    std::vector<std::string_view>& m_Out;
};

template <typename TSink>
void SplitPlain(std::string_view text, std::string_view delimiter, TSink& sink)
{
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = text.find(delimiter, begin);
        if (end == std::string_view::npos)
            break;
        sink.Add(text.substr(begin, end - begin));
        begin = end + delimiter.size();
    }
    sink.Add(text.substr(begin));
}

/// Splits at the delimiters that `quoteEnd` doesn't pass over. `quoteEnd(at, begin)` gives the index behind the quoted
/// text that opens at `at` in the field that begins at `begin`, or `at` if none does.
template <typename TSink, typename TQuoteEnd>
void SplitQuoted(std::string_view text, std::string_view delimiter, TSink& sink, TQuoteEnd quoteEnd)
{
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == delimiter[0] && text.substr(at, delimiter.size()) == delimiter) {
            sink.Add(text.substr(begin, at - begin));
            begin = at = at + delimiter.size();
            continue;
        }
        const std::size_t behind = quoteEnd(at, begin);
        at = behind > at ? behind : at + 1;
    }
    sink.Add(text.substr(begin));
}

/// Leaves out the empty fields that a run of blanks gives.
template <typename TSink>
class CBlankSink {
public:
    explicit CBlankSink(TSink& sink) : m_Sink(sink) {}
    void Add(std::string_view field)
    {
        if (!field.empty())
            m_Sink.Add(field);
    }

private:
    TSink& m_Sink;
};

template <typename TSink>
void SplitInDoubleQuotes(std::string_view text, std::string_view delimiter, TSink& sink)
{
    if (text.find('"') == std::string_view::npos) {
        SplitPlain(text, delimiter, sink);
        return;
    }
    SplitQuoted(text, delimiter, sink, [text](std::size_t at, std::size_t begin) {
        constexpr std::string_view kOpensBehind = "=&@(# \t";
        if (text[at] != '"' || (at != begin && kOpensBehind.find(text[at - 1]) == std::string_view::npos))
            return at;
        // a quote without a partner is the last one of the text, so the search for it is made only once
        const std::size_t close = text.find('"', at + 1);
        return close == std::string_view::npos ? at : close + 1;
    });
}

template <typename TSink>
void ParseInQuotes(std::string_view text, TSink& sink, char16_t cDelimiter)
{
    if (text.empty())
        return;
    if (cDelimiter == u' ') {
        CBlankSink<TSink> blanks(sink);
        SplitInDoubleQuotes(text, " ", blanks);
    } else if (cDelimiter < 0x80) {
        const char c = static_cast<char>(cDelimiter);
        SplitInDoubleQuotes(text, {&c, 1}, sink);
    } else {
        SplitInDoubleQuotes(text, IEUtils::CharToString(cDelimiter), sink);
    }
}

/// The ASCII letters of one case, of which `cFrom` is the first, as those of the other.
CString ShiftLetters(std::string_view text, char cFrom, char cTo)
{
    constexpr int kLetters = 26;
    CString shifted(text);
    for (char& c : shifted) {
        if (c >= cFrom && c < cFrom + kLetters)
            c = static_cast<char>(c - cFrom + cTo);
    }
    return shifted;
}

} // namespace

namespace IEUtils {

void ParseValues(std::string_view text, CStringArray& out, char16_t cDelimiter, std::string_view quotes)
{
    CFieldSink sink(out);
    if (text.empty())
        return;
    const CString delimiter = CharToString(cDelimiter);
    if (text.find_first_of(quotes) == std::string_view::npos) {
        SplitPlain(text, delimiter, sink);
        return;
    }
    SplitQuoted(text, delimiter, sink, [text, quotes](std::size_t at, std::size_t) {
        for (std::string_view rest = quotes; !rest.empty();) {
            const std::string_view quote = Left(rest, 1);
            rest.remove_prefix(quote.size());
            if (text.substr(at, quote.size()) != quote)
                continue;
            const std::size_t close = text.find(quote, at + quote.size());
            return close == std::string_view::npos ? at : close + quote.size();
        }
        return at;
    });
}

void ParseValuesForSIMAFormat(std::string_view text, CStringArray& out, char16_t cDelimiter, std::string_view)
{
    ParseValues(text, out, cDelimiter, {});
}

void ParseValuesForAPAFormat(std::string_view text, CStringArray& out, char16_t cDelimiter, std::string_view)
{
    ParseValues(text, out, cDelimiter, {});
}

void ParseValues(std::string_view text, std::vector<std::string_view>& out, char16_t cDelimiter)
{
    CViewSink sink(out);
    if (!text.empty())
        SplitPlain(text, CharToString(cDelimiter), sink);
}

void ParseValuesInQuotes(std::string_view text, CStringArray& out, char16_t cDelimiter)
{
    CFieldSink sink(out);
    ParseInQuotes(text, sink, cDelimiter);
}

void ParseValuesInQuotes(std::string_view text, std::vector<std::string_view>& out, char16_t cDelimiter)
{
    CViewSink sink(out);
    ParseInQuotes(text, sink, cDelimiter);
}

CString RemoveBorderQuotes(std::string_view text)
{
    if (text.starts_with('"'))
        text.remove_prefix(1);
    if (text.ends_with('"'))
        text.remove_suffix(1);
    return CString(text);
}

std::string_view Trim(std::string_view text)
{
    return TrimLeft(TrimRight(text));
}

std::string_view TrimLeft(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view TrimRight(std::string_view text)
{
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

int Length(std::string_view text)
{
    if (text.empty())
        return 0;
    const auto count = 1 + std::count_if(text.begin() + 1, text.end(), [](char c) { return !IsContinuation(c); });
    return static_cast<int>(std::min<std::ptrdiff_t>(count, INT_MAX));
}

int GetMBCSLength(std::string_view text)
{
    return Length(text);
}

std::string_view Left(std::string_view text, int nCount)
{
    return text.substr(0, OffsetOf(text, nCount));
}

std::string_view Right(std::string_view text, int nCount)
{
    std::size_t at = text.size();
    for (; nCount > 0 && at > 0; --nCount) {
        --at;
        while (at > 0 && IsContinuation(text[at]))
            --at;
    }
    return text.substr(at);
}

std::string_view Mid(std::string_view text, int nFirst, int nCount)
{
    // characters that would stand ahead of the text count as taken
    if (nFirst < 0)
        nCount = static_cast<int>(std::max<std::int64_t>(0, std::int64_t{nCount} + nFirst));
    text.remove_prefix(OffsetOf(text, nFirst));
    return Left(text, nCount);
}

std::string_view Column(std::string_view text, int nFirst, int nWidth)
{
    return Trim(Mid(text, nFirst, nWidth));
}

CString GetReportString(char cFill, int nWidth, bool bRight, std::string_view text)
{
    const int nLength = Length(text);
    CString field(nWidth > nLength ? static_cast<std::size_t>(nWidth - nLength) : 0, cFill);
    field.insert(bRight ? field.size() : 0, text);
    return field;
}

CString GetStringOfSpaces(int nCount)
{
    return CString(static_cast<std::size_t>(std::max(nCount, 0)), ' ');
}

void AppendCharacter(CString& out, char32_t c)
{
    const auto add = [&out](char32_t nByte) { out += static_cast<char>(static_cast<unsigned char>(nByte)); };
    if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
        c = 0xFFFD;
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0U | c >> 6U);
        add(0x80U | (c & 0x3FU));
    } else if (c < 0x10000) {
        add(0xE0U | c >> 12U);
        add(0x80U | (c >> 6U & 0x3FU));
        add(0x80U | (c & 0x3FU));
    } else {
        add(0xF0U | c >> 18U);
        add(0x80U | (c >> 12U & 0x3FU));
        add(0x80U | (c >> 6U & 0x3FU));
        add(0x80U | (c & 0x3FU));
    }
}

CString CharToString(char16_t c)
{
    CString text;
    AppendCharacter(text, c);
    return text;
}

char16_t StringToChar(std::string_view text)
{
    const char* p = text.data();
    char32_t c = 0;
    if (text.empty() || !TakeCharacter(p, p + text.size(), c) || c > 0xFFFF)
        return 0;
    return static_cast<char16_t>(c);
}

bool IsValidUtf8(std::string_view text)
{
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    while (p != pEnd) {
        while (pEnd - p >= 64 && IsAscii<8>(p))
            p += 64;
        while (pEnd - p >= 8 && IsAscii<1>(p))
            p += 8;
        // what stopped the run lies within the next eight bytes; a text without ASCII gets past the runs in one step
        char32_t c = 0;
        for (int i = 0; i < 8 && p != pEnd; ++i) {
            if (!TakeCharacter(p, pEnd, c))
                return false;
        }
    }
    return true;
}

CString ToLower(std::string_view text)
{
    return ShiftLetters(text, 'A', 'a');
}

CString ToUpper(std::string_view text)
{
    return ShiftLetters(text, 'a', 'A');
}

} // namespace IEUtils
