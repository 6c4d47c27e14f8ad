#include "alidade/vellumlib/utils.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

CStringArray Parse(std::string_view text, char16_t cDelimiter, std::string_view quotes)
{
    CStringArray out = {"of", "a line", "read before", "with more fields", "than this one has", "", "7", "8", "9"};
    IEUtils::ParseValues(text, out, cDelimiter, quotes);
    return out;
}

CStringArray ParseInQuotes(std::string_view text, char16_t cDelimiter)
{
    CStringArray out = {"of", "a line", "read before", "with more fields", "than this one has", "", "7", "8", "9"};
    std::vector<std::string_view> views(20);
    IEUtils::ParseValuesInQuotes(text, out, cDelimiter);
    IEUtils::ParseValuesInQuotes(text, views, cDelimiter);
    EXPECT_EQ(out, CStringArray(views.begin(), views.end())) << text;
    return out;
}

TEST(UtilsText, ParseValuesKeepsEmptyFieldsAndQuotes)
{
    const struct {
        std::string_view m_Text;
        char16_t m_cDelimiter;
        std::string_view m_Quotes;
        CStringArray m_Fields;
    } kRows[] = {
        {"", u',', "", {}},
        {",", u',', "", {"", ""}},
        {"a,,b,", u',', "", {"a", "", "b", ""}},
        {"a  b", u' ', "", {"a", "", "b"}},
        {"\"a,b\",c", u',', "", {"\"a", "b\"", "c"}},
        {"\"a,b\",c", u',', "\"", {"\"a,b\"", "c"}},
        {"x'1,2'y,\"3,'\",'4", u',', "'\"", {"x'1,2'y", "\"3,'\"", "'4"}},
        {"open\",a,b", u',', "\"", {"open\"", "a", "b"}},
        {"1\u00A72\u00A73", u'\u00A7', "", {"1", "2", "3"}},
        {"\u00ABa,b\u00AB,c", u',', "\u00AB", {"\u00ABa,b\u00AB", "c"}},
        {"\"a\"\"b\"", u'"', "\"", {"", "a", "", "b", ""}},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Parse(row.m_Text, row.m_cDelimiter, row.m_Quotes), row.m_Fields) << row.m_Text;

    CStringArray fields;
    IEUtils::ParseValuesForSIMAFormat("A01,\"1,2\",", fields, u',', "\"");
    EXPECT_EQ(fields, (CStringArray{"A01", "\"1", "2\"", ""}));
}

TEST(UtilsText, DoubleQuotesOpenOnlyWhereAValueBegins)
{
    const struct {
        std::string_view m_Text;
        char16_t m_cDelimiter;
        CStringArray m_Fields;
    } kRows[] = {
        {"", u',', {}},
        {"P1,1.5,2.5,,ROAD", u',', {"P1", "1.5", "2.5", "", "ROAD"}},
        {"P1,\"a,b\",c", u',', {"P1", "\"a,b\"", "c"}},
        {"R:k.TEXT=\"a,b\"$w=\"c,d\"&\"e,f\"@\"g,h\",x", u',', {"R:k.TEXT=\"a,b\"$w=\"c,d\"&\"e,f\"@\"g,h\"", "x"}},
        {"l.LIST(\"a,b\"#\"c,d\")=1,x", u',', {"l.LIST(\"a,b\"#\"c,d\")=1", "x"}},
        {"pipe 5\",1,pipe 6\",2", u',', {"pipe 5\"", "1", "pipe 6\"", "2"}},
        {"10\u00B020'30.5\",11\u00B020'30.5\",12", u',', {"10\u00B020'30.5\"", "11\u00B020'30.5\"", "12"}},
        {"\"open,a,b", u',', {"\"open", "a", "b"}},
        {"\"a\"b\",c\",d", u',', {"\"a\"b\"", "c\"", "d"}},
        {",\"\",", u',', {"", "\"\"", ""}},
        {"  a   b ", u' ', {"a", "b"}},
        {"    ", u' ', {}},
        {" a \"b  c\"  d ", u' ', {"a", "\"b  c\"", "d"}},
        {"a\t\t\"b\tc\"", u'\t', {"a", "", "\"b\tc\""}},
        {"1\u20AC\"2\u20AC3\"\u20AC", u'\u20AC', {"1", "\"2\u20AC3\"", ""}},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(ParseInQuotes(row.m_Text, row.m_cDelimiter), row.m_Fields) << row.m_Text;
}

TEST(UtilsText, BordersAreCutOnce)
{
    const std::pair<std::string_view, std::string_view> kQuoted[] = {
        {"\"a\"", "a"}, {"\"\"a\"\"", "\"a\""}, {"\"", ""},       {"\"\"", ""},
        {"a\"", "a"},   {"\"a", "a"},           {"a\"b", "a\"b"}, {"", ""},
    };
    for (const auto& [text, plain] : kQuoted)
        EXPECT_EQ(IEUtils::RemoveBorderQuotes(text), plain) << text;
    EXPECT_EQ(IEUtils::Trim(" \t a b\t "), "a b");
    EXPECT_EQ(IEUtils::Trim(" \t "), "");
    EXPECT_EQ(IEUtils::TrimLeft(" a "), "a ");
    EXPECT_EQ(IEUtils::TrimRight(" a "), " a");
}

TEST(UtilsText, ACutNeverSplitsACharacter)
{
    const std::string_view text = "abcdefgh\u00E4\u20AC\U0001F600xyz";
    EXPECT_EQ(IEUtils::Length(text), 14);
    EXPECT_EQ(IEUtils::Left(text, 9), "abcdefgh\u00E4");
    EXPECT_EQ(IEUtils::Left(text, -1), "");
    EXPECT_EQ(IEUtils::Right(text, 4), "\U0001F600xyz");
    EXPECT_EQ(IEUtils::Right(text, 99), text);
    EXPECT_EQ(IEUtils::Mid(text, 9, 2), "\u20AC\U0001F600");
    EXPECT_EQ(IEUtils::Mid(text, 13, 5), "z");
    EXPECT_EQ(IEUtils::Mid(text, 14, 5), "");
    EXPECT_EQ(IEUtils::Mid(text, -2, 3), "a");
    EXPECT_EQ(IEUtils::Mid(text, -5, INT32_MIN), "");
    EXPECT_EQ(IEUtils::Column("name      12.5 ", 8, 20), "12.5");

    // each cut of a text and its rest make the text again, stray bytes in it or not
    std::minstd_rand random(3);
    for (int i = 0; i < 300; ++i) {
        CString made;
        for (unsigned n = static_cast<unsigned>(random() % 40); n > 0; --n)
            made += random() % 3 != 0 ? CString(1, static_cast<char>('a' + n % 26)) : i % 2 ? "\u20AC" : "\x82";
        const int nLength = IEUtils::Length(made);
        for (int n = 0; n <= nLength; ++n) {
            EXPECT_EQ(IEUtils::Length(IEUtils::Left(made, n)), n);
            EXPECT_EQ(CString(IEUtils::Left(made, n)) + CString(IEUtils::Mid(made, n, nLength)), made);
        }
        // from the right, stray bytes at the front of the text belong to no other character either
        EXPECT_EQ(IEUtils::Right(made, nLength), made);
    }
}

TEST(UtilsText, FieldsOfAReportCountCharacters)
{
    EXPECT_EQ(IEUtils::GetReportString(' ', 6, true, "4.50"), "  4.50");
    EXPECT_EQ(IEUtils::GetReportString('#', 5, false, "\u00E4\u20AC"), "\u00E4\u20AC###");
    EXPECT_EQ(IEUtils::GetReportString(' ', 2, true, "long"), "long");
    EXPECT_EQ(IEUtils::GetReportString(' ', -3, false, ""), "");
    EXPECT_EQ(IEUtils::GetStringOfSpaces(3), "   ");
    EXPECT_EQ(IEUtils::GetStringOfSpaces(-1), "");
}

TEST(UtilsText, SixteenBitCharactersGoThereAndBack)
{
    for (unsigned c = 0; c <= 0xFFFF; ++c) {
        const bool bSurrogate = c >= 0xD800 && c <= 0xDFFF;
        const CString text = IEUtils::CharToString(static_cast<char16_t>(c));
        ASSERT_TRUE(IEUtils::IsValidUtf8(text)) << c;
        ASSERT_EQ(IEUtils::StringToChar(text + "x"), bSurrogate ? 0xFFFD : c);
    }
    const std::pair<char32_t, const char*> rows[] = {
        {0x10000, "\U00010000"}, {0x1F600, "\U0001F600"}, {0x10FFFF, "\U0010FFFF"}, {0x110000, "\uFFFD"}};
    for (const auto& [c, pText] : rows) {
        CString text = "x";
        IEUtils::AppendCharacter(text, c);
        EXPECT_EQ(text, CString("x") + pText);
    }
    for (std::string_view text : {"", "\U0001F600", "\xC3", "\x80", "\xC0\x80", "\xED\xA0\x80"})
        EXPECT_EQ(IEUtils::StringToChar(text), 0) << text;
}

TEST(UtilsText, Utf8IsCheckedWhereverItStands)
{
    const std::pair<std::string_view, bool> kRows[] = {
        {"\xC2\x80", true},
        {"\xDF\xBF", true},
        {"\xE0\xA0\x80", true},
        {"\xEF\xBF\xBF", true},
        {"\xF0\x90\x80\x80", true},
        {"\xF4\x8F\xBF\xBF", true},
        {"\xED\x9F\xBF", true},
        {"\xEE\x80\x80", true},
        {"\xC1\xBF", false},
        {"\xE0\x9F\xBF", false},
        {"\xF0\x8F\xBF\xBF", false},
        {"\xED\xA0\x80", false},
        {"\xF4\x90\x80\x80", false},
        {"\xF8\x88\x80\x80", false},
        {"\x80", false},
        {"\xFF", false},
        {"\xC2", false},
        {"\xE2\x82", false},
        {"\xF0\x9F\x98", false},
        {"\xE2\x28\xA1", false},
    };
    // the check runs over rows of 64 and 8 bytes; the end of the text cuts the rows too
    for (const auto& [bytes, bValid] : kRows) {
        for (std::size_t nAhead = 0; nAhead < 140; ++nAhead) {
            const CString front = CString(nAhead, 'a') + CString(bytes);
            EXPECT_EQ(IEUtils::IsValidUtf8(front), bValid) << nAhead;
            EXPECT_EQ(IEUtils::IsValidUtf8(front + CString(70, 'z')), bValid) << nAhead;
        }
    }
    EXPECT_EQ(IEUtils::ToLower("ABC-\u00C4xYZ@["), "abc-\u00C4xyz@[");
    EXPECT_EQ(IEUtils::ToUpper("`{az-\u00E4XyZ"), "`{AZ-\u00E4XYZ");
}

} // namespace
