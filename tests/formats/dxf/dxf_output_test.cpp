#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "formats/dxf/export/dxf_output.h"
#include "support/files.h"

#include <limits>

namespace {

struct TText {
    CString m_strText;
    const char* m_pWritten;
    const char* m_pRead; ///< null: the text itself
};

TEST(DxfOutput, TextsGoOutInAsciiOfOneLine)
{
    const CTempFolder folder;
    const TText rows[] = {
        {"", "", nullptr},
        {" two  blanks ", " two  blanks ", nullptr},
        {"~\"%%d^J", "~\"%%d^J", nullptr},
        {"Stra\u00DFe", "Stra\\U+00DFe", nullptr},
        {"\u70B9", "\\U+70B9", nullptr},
        {"\U0001F333", "\\U+D83C\\U+DF33", nullptr},
        {"\u0085", "\\U+0085", nullptr},
        {"a\r\nb\tc", "a  b c", "a  b c"},
        {CString("a\0b\x7F\x1F", 5), "a b  ", "a b  "},
        {"\xFF!", "\\U+FFFD!", "\uFFFD!"},
        // a backslash stays, unless a reader would take it for the start of a character
        {"a\\b\\\\U", "a\\b\\\\U", nullptr},
        {"\\U+0041", "\\U+005CU+0041", nullptr},
        {"\\m+1", "\\U+005Cm+1", nullptr},
    };
    for (const TText& row : rows) {
        for (const char* const pName : {"out.dxf", "out.DxB"}) {
            TDXFOutput out;
            ASSERT_TRUE(out.Create(folder / pName));
            EXPECT_TRUE(out.WriteString(1, row.m_strText));
            EXPECT_TRUE(out.Close());
        }
        EXPECT_EQ(ReadFile(folder / "out.dxf"), "1\r\n" + CString(row.m_pWritten) + "\r\n");
        EXPECT_EQ(ReadFile(folder / "out.DxB"), CString("\1\0\0\0", 4) + row.m_pWritten + CString(1, '\0'));
        EXPECT_EQ(TDXFOutput::AsRead(row.m_strText), row.m_pRead ? CString(row.m_pRead) : row.m_strText);
    }
}

TEST(DxfOutput, ALongTextIsCutBetweenCharacters)
{
    const CString strMost(TDXFOutput::kLongestText, 'x');
    EXPECT_EQ(TDXFOutput::AsRead(strMost), strMost);
    EXPECT_EQ(TDXFOutput::AsRead(strMost + "x"), strMost);
    // 2047 bytes are 292 characters of seven and three of one
    CString strWide;
    for (int i = 0; i < 300; ++i)
        strWide += "\u00E4";
    EXPECT_EQ(TDXFOutput::AsRead(strWide).size(), 292U * 2);
    EXPECT_EQ(TDXFOutput::AsRead("xxx" + strWide).size(), 3 + 292U * 2);
    EXPECT_EQ(TDXFOutput::AsRead("xxxx" + strWide).size(), 4 + 291U * 2);
}

TEST(DxfOutput, Numbers)
{
    const CTempFolder folder;
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::pair<double, CString> rows[] = {
        {0, "0.000000"},
        {-0.0000004, "0.000000"},
        {-1.0000005, "-1.000001"},
        {123456789.1234564, "123456789.123456"},
        {1e30, "0 NAN"},
        {-1e30, "0 NAN"},
        {kInfinity, "0 NAN"},
        {std::nan(""), "0 NAN"},
        {9e29, "900000000000000046043660025856.000000"},
    };
    for (const auto& [dValue, strText] : rows) {
        TDXFOutput out;
        ASSERT_TRUE(out.Create(folder / "out.dxf"));
        EXPECT_TRUE(out.WriteDouble(10, dValue) && out.WriteInt(-5, -70) && out.Close());
        EXPECT_EQ(ReadFile(folder / "out.dxf"), "10\r\n" + strText + "\r\n-5\r\n-70\r\n");
    }
    TDXFOutput out;
    ASSERT_TRUE(out.Create(folder / "out.dxb"));
    EXPECT_TRUE(out.WriteDouble(10, -2.5) && out.WriteInt(70, -2) && out.WriteCode(1000) && out.Close());
    EXPECT_EQ(ReadFile(folder / "out.dxb"),
              CString("\x0A\0\0\0\0\0\0\0\0\0\x04\xC0\x46\0\0\0\xFE\xFF\xFF\xFF\xE8\x03\0\0", 24));
}

TEST(DxfOutput, AFailureStays)
{
    const CTempFolder folder;
    CFileFaults faults;
    faults.m_nDiskSpace = 100000;
    TDXFOutput out;
    ASSERT_TRUE(out.Create(folder / "out.dxf"));
    int nGroups = 0;
    while (nGroups < 100000 && out.WriteString(1, "text"))
        ++nGroups;
    EXPECT_LT(nGroups, 100000);
    EXPECT_FALSE(out.WriteString(1, "text") || out.WriteInt(1, 1) || out.WriteDouble(1, 1) || out.WriteCode(1));
    EXPECT_FALSE(out.Close());
}

TEST(DxfOutput, NamesOfDrawings)
{
    constexpr std::string_view kForbidden = " \t\r\n!.,?%*@#$^&'\"\\/|~;[]{}()<>`+=";
    for (int i = 0; i < 256; ++i) {
        const char c = static_cast<char>(i);
        const CString strName = CString("a") + c + c + "b";
        EXPECT_EQ(CCoreDXFExporter::CreateCorrectDXFName(strName, true),
                  kForbidden.find(c) == std::string_view::npos ? strName : "a__b")
            << i;
        EXPECT_EQ(CCoreDXFExporter::CreateCorrectDXFName(strName, false), strName);
    }
    EXPECT_EQ(CCoreDXFExporter::CreateCorrectDXFName("", true), "0");
    EXPECT_EQ(CCoreDXFExporter::CreateCorrectDXFName("", false), "");
}

} // namespace
