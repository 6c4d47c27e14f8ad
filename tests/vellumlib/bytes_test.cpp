// Texts of 8 bits: code pages, and strings that go out in blocks.

#include "vellumlib/code_page.h"
#include "vellumlib/string_a.h"

#include <gtest/gtest.h>

namespace {

TEST(CodePage, TakesTextToBytesAndBack)
{
    struct TRow {
        const char* m_pPage;
        std::string m_Text;
        std::string m_Bytes;
        int m_nReplaced;
        std::string m_Back;
    };
    const TRow kRows[] = {
        {"CP1252", "Stra\u00DFe 7 \u20AC",
         "Stra\xDF"
         "e 7 \x80",
         0, "Stra\u00DFe 7 \u20AC"},
        {"CP1252", "a\u0416b\u0416", "a?b?", 2, "a?b?"},
        {"SHIFT_JIS", "A\u6E2C\u70B9", "A\x91\xAA\x93\x5F", 0, "A\u6E2C\u70B9"},
        {"UTF-8", "\u6E2C\u00E4", "\u6E2C\u00E4", 0, "\u6E2C\u00E4"},
        {"no such page", "\u00FC", "\xFC", 0, "\u00FC"}, // CP1252
        {"UTF-16LE", "\u00FC", "\xFC", 0, "\u00FC"},     // its ASCII isn't ASCII
        {"ASCII", "\u00FCu", "?u", 1, "?u"},
    };
    for (const TRow& row : kRows) {
        CIECodePage page(row.m_pPage);
        EXPECT_EQ(page.ToBytes(row.m_Text), row.m_Bytes) << row.m_pPage;
        EXPECT_EQ(page.GetReplacedCharacters(), row.m_nReplaced) << row.m_pPage;
        EXPECT_EQ(page.ToText(row.m_Bytes), row.m_Back) << row.m_pPage;
    }
    CIECodePage utf8("UTF-8");
    EXPECT_EQ(utf8.ToText("a\xFF"
                          "b\xE2\x82"),
              "a\uFFFD"
              "b\uFFFD\uFFFD");
    EXPECT_EQ(utf8.ToText("\xF7\xBF\xBF\xBF!"), "\uFFFD\uFFFD\uFFFD\uFFFD!");
    CIECodePage western("CP1252");
    EXPECT_EQ(western.ToText("\x81x"), "\uFFFDx"); // no character in this page
}

TEST(StringA, GivesItsStartAway)
{
    IEUtils::TStringA all, part;
    for (int i = 0; i < 50; ++i)
        all.Add("0123456789");
    std::string taken;
    for (const std::size_t nCount : {7U, 0U, 256U, 1U, 200U}) {
        all.Extract(part, nCount);
        EXPECT_EQ(part.length(), nCount);
        taken += part.data();
    }
    EXPECT_EQ(all.length(), 36U);
    all.AddLeft('<');
    all.FillWith(40, '.');
    all.FillWith(3, '!');
    EXPECT_EQ(all.data(), "<456789012345678901234567890123456789...");
    EXPECT_EQ(taken.substr(0, 10), "0123456789");
    EXPECT_EQ(taken.substr(454), "4567890123");
    all.Extract(part, 1000);
    EXPECT_EQ(part.length(), 40U);
    EXPECT_EQ(all.length(), 0U);
    all.AddLeft('a');
    EXPECT_EQ(all.data(), "a");
}

} // namespace
