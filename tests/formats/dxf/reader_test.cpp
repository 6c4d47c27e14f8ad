// Groups of drawing files, and the words among them.
#include "drawing.h"

#include "alidade/formats/dxf/import/dxf_reader.h"

#include <cmath>

namespace {

constexpr std::size_t kLongest = CDXFReader::kLongestLine;

/// How the values of a code are read.
enum EKind : char { None = 'n', Word = 'w', Text = 't', Double = 'd', Int = 'i' };

struct TCodes {
    int m_nFirst;
    int m_nLast;
    EKind m_eKind;
};
constexpr TCodes kTextForm[] = {{0, 9, Word},       {10, 59, Double},     {60, 79, Int},      {90, 99, Int},
                                {100, 100, Word},   {102, 102, Word},     {105, 105, Word},   {110, 149, Double},
                                {170, 179, Int},    {210, 210, Double},   {220, 220, Double}, {230, 230, Double},
                                {250, 259, Int},    {270, 299, Int},      {300, 309, Word},   {310, 369, Text},
                                {370, 389, Int},    {390, 399, Word},     {400, 409, Int},    {410, 419, Word},
                                {420, 429, Int},    {430, 439, Word},     {450, 459, Int},    {460, 469, Double},
                                {470, 479, Word},   {760, 769, Int},      {780, 789, Int},    {999, 999, Word},
                                {1000, 1009, Word}, {1010, 1059, Double}, {1060, 1071, Int},  {1100, 99999, Word}};
constexpr TCodes kBinaryForm[] = {{0, 9, Word}, {10, 59, Double}, {60, 78, Int}};

template <std::size_t nCodes>
EKind KindOf(int nCode, const TCodes (&codes)[nCodes])
{
    for (const TCodes& range : codes) {
        if (nCode >= range.m_nFirst && nCode <= range.m_nLast)
            return range.m_eKind;
    }
    return None;
}

CString Describe(const TToken& token, EKind eKind)
{
    CString text = std::to_string(token.m_nCode);
    if (token.m_eToken != TToken::NONE)
        text += "#" + std::to_string(token.m_eToken);
    if (eKind == Double)
        return text + "=" + IEUtils::DoubleToString(token.m_Value.m_dValue, -1);
    if (eKind == Int)
        return text + "=" + std::to_string(token.m_Value.m_nValue);
    return text + (token.m_Value.m_pText ? "'" + CString(token.GetText()) + "'" : CString());
}

class DxfReaderTest : public testing::Test {
protected:
    /// All groups of a file, with a blank behind each; the end of the file isn't told unless it isn't as it should be.
    CString Read(std::string_view bytes)
    {
        WriteFile(m_strFile, bytes);
        CDXFReader reader;
        EXPECT_TRUE(reader.Open(m_strFile));
        CString text;
        for (;;) {
            const TToken token = reader.ReadToken();
            if (token.m_nCode == -1 && token.m_eToken == TToken::END_OF_FILE)
                break;
            const EKind eKind =
                !reader.HasAllValues() ? KindOf(token.m_nCode, kBinaryForm) : KindOf(token.m_nCode, kTextForm);
            text += Describe(token, eKind) + " ";
        }
        EXPECT_EQ(reader.ReadToken().m_eToken, TToken::END_OF_FILE) << "it stays at the end";
        EXPECT_EQ(reader.GetPosition(), reader.GetLength());
        return text;
    }

    CTempFolder m_Folder;
    CString m_strFile = m_Folder / "drawing";
};

TEST_F(DxfReaderTest, EveryCodeHasItsKindOfValue)
{
    CString text, expected;
    for (int nCode = 0; nCode < 1200; ++nCode) {
        for (const char* const pValue : {"Line", "-2.5x"}) {
            text += std::to_string(nCode) + "\n" + pValue + "\n";
            const bool bLine = *pValue == 'L';
            expected += std::to_string(nCode);
            switch (KindOf(nCode, kTextForm)) {
            case Word:
                expected += bLine ? "#23'LINE'" : "'-2.5X'";
                break;
            case Text:
                expected += bLine ? "'Line'" : "'-2.5x'";
                break;
            case Double:
                expected += bLine ? "=0" : "=-2.5";
                break;
            case Int:
                expected += bLine ? "=0" : "=-2";
                break;
            case None:
                break;
            }
            expected += " ";
        }
    }
    EXPECT_EQ(Read(text), expected);
}

TEST_F(DxfReaderTest, TextForm)
{
    const CString strLong(kLongest, 'a'), strUpper(kLongest, 'A');
    const struct {
        const char* m_pWhat;
        CString m_strBytes;
        const char* m_pGroups;
    } rows[] = {
        {"line ends of all kinds", "0\r\nPOINT\n  8\nRoads\r 10\r1.5\r\n 20\n2", "0#28'POINT' 8'ROADS' 10=1.5 20=2 "},
        {"CR alone", "0\rSECTION\r2\rENTITIES\r", "0#31'SECTION' 2#15'ENTITIES' "},
        {"a negative code", "-5\nx\n-1\ny\n", "5'X' 1'Y' "},
        {"codes beyond 32 bits", "99999999999\nx\n-99999999999\ny\n", "2147483647'X' 2147483647'Y' "},
        {"a code that is no number", "abc\nline\n\nx\n 7 7\ny\n", "0#23'LINE' 0'X' 7'Y' "},
        {"an empty value", "8\n\n8\r\n\r\n", "8'' 8'' "},
        {"an end behind a code", "0\nLINE\n8\n", "0#23'LINE' "},
        {"a value without an end", "0\nEOF", "0#16'EOF' "},
        {"nothing", "", ""},
        {"a mark", "\xEF\xBB\xBF  0\nEOF\n", "0#16'EOF' "},
        {"letters beyond ASCII", "8\n\xC3\xA4z\xE4\n", "8'\xC3\xA4Z\xE4' "},
        {"blanks stay", "8\n  Road 1 \n", "8'  ROAD 1 ' "},
        {"a word with a blank is none", "0\nLINE \n0\n3dFace\n9\n$AcadVer\n", "0'LINE ' 0#19'3DFACE' 9#1'$ACADVER' "},
        {"a zero ends a text", CString("8\nLINE\0X\n0\nEOF\n", 16), "8#23'LINE' 0#16'EOF' "},
        {"the longest value", "7\n" + strLong + "\n8\nx\n", nullptr},
        {"numbers", "40\n +1.5 m\n40\n-.25e2\n40\n1e\n40\n.\n40\n\n40\n1e-999\n", "40=1.5 40=-25 40=1 40=0 40=0 40=0 "},
        {"numbers that aren't finite", "40\nnan\n40\n-INF\n40\n1e999\n40\n-1e400x\n", "40=0 40=0 40=0 40=0 "},
        {"whole numbers", "70\n +12 \n70\n-3.9\n70\n99999999999\n70\n-99999999999\n70\n+-1\n",
         "70=12 70=-3 70=2147483647 70=-2147483648 70=0 "},
    };
    for (const auto& row : rows) {
        const CString expected = row.m_pGroups ? row.m_pGroups : "7'" + strUpper + "' 8'X' ";
        EXPECT_EQ(Read(row.m_strBytes), expected) << row.m_pWhat;
    }
}

TEST_F(DxfReaderTest, TheRestOfALongLineIsTheNextLine)
{
    const CString strStart(kLongest, 'A');
    EXPECT_EQ(Read("1\n" + CString(kLongest + 45, 'a') + "\nLINE\n0\nEOF\n"),
              "1'" + strStart + "' 0#23'LINE' 0#16'EOF' ");
    EXPECT_EQ(Read("1\n" + CString(kLongest, 'a') + "8\nLINE\n"), "1'" + strStart + "' 8#23'LINE' ");
    EXPECT_EQ(Read(CString(kLongest + 1, '1') + "\nx\n"), "2147483647'1' ") << "a code is read in pieces too";
}

TEST_F(DxfReaderTest, TheRestOfALongLineMayBePassedOver)
{
    // with the line's end wherever it may lie among the bytes that are at hand
    for (const std::size_t nLength :
         {kLongest + 1, 4000UL, (1UL << 20U) - 12, (1UL << 20U) - 11, (1UL << 20U) - 10, 3UL << 20U}) {
        WriteFile(m_strFile,
                  "0\r\nLINE\r\n1\r\n" + CString(nLength, 'a') + "\r\n" + CString(3000, '8') + "\r\nx\r\n8\r\ny");
        CDXFReader reader;
        ASSERT_TRUE(reader.Open(m_strFile));
        reader.PassOverLongLines();
        EXPECT_EQ(reader.ReadToken().m_eToken, TToken::LINE);
        EXPECT_FALSE(reader.WasCut());
        EXPECT_EQ(reader.ReadToken().GetText(), CString(kLongest, 'A'));
        EXPECT_TRUE(reader.WasCut());
        EXPECT_EQ(reader.ReadToken().GetText(), "X") << nLength;
        EXPECT_EQ(reader.ReadToken().GetText(), "Y") << nLength;
        EXPECT_EQ(reader.GetLineNumber(), 7);
        EXPECT_EQ(reader.ReadToken().m_eToken, TToken::END_OF_FILE);
    }
}

TEST_F(DxfReaderTest, TellsHowNumbersStood)
{
    using enum CDXFReader::ENumber;
    const CString strZeros(400, '0');
    const std::pair<CString, CDXFReader::ENumber> rows[] = {
        {"1", Read},
        {" -2.5e3", Read},
        {"12 m", InPart},
        {"12 ", Read},
        {"", NoNumber},
        {"-", NoNumber},
        {".", NoNumber},
        {"nan", NotFinite},
        {"-Infinity", NotFinite},
        {"1e309", NotFinite},
        {"1" + strZeros, NotFinite},
        {"1" + strZeros + ".5 m", NotFinite},
        {"0." + strZeros + "1e800", NotFinite},
        // the nearest number is 0
        {"1e-400", Read},
        {"-0." + strZeros + "1", Read},
        {"1" + strZeros + "e-800", Read},
        {"1e-99999999999999", Read},
    };
    for (const auto& [strValue, eState] : rows) {
        WriteFile(m_strFile, "40\n" + strValue + "\n");
        CDXFReader reader;
        ASSERT_TRUE(reader.Open(m_strFile));
        reader.ReadToken();
        EXPECT_EQ(reader.GetNumberState(), eState) << strValue;
    }
}

TEST_F(DxfReaderTest, BinaryForm)
{
    const CString strGroups = "0 Section|2 x|10 1.5|59 -2.25|60 7|78 -8|79 |100 |370 |1000 |9 ";
    EXPECT_EQ(Read(Drawing::ToBinary(strGroups)), "0#31'SECTION' 2'X' 10=1.5 59=-2.25 60=7 78=-8 79 100 370 1000 9'' ");

    CString bytes(Drawing::kSentinel);
    LittleEndian::AppendInt32(bytes, -5);
    LittleEndian::AppendInt32(bytes, 1);
    bytes += CString(3000, 'a') + '\0';
    EXPECT_EQ(Read(bytes).substr(0, 6 + kLongest), "-5 1'" + CString(kLongest, 'A') + "'") << "a code has its sign";
    LittleEndian::AppendInt32(bytes = Drawing::kSentinel, 40);
    LittleEndian::AppendDouble(bytes, std::nan(""));
    LittleEndian::AppendInt32(bytes, 41);
    LittleEndian::AppendDouble(bytes, -HUGE_VAL);
    EXPECT_EQ(Read(bytes), "40=0 41=0 ");

    // wherever it is cut, the groups that are whole come, and no more
    bytes = Drawing::ToBinary("0 LINE|10 1|70 2|79 |8 x");
    const std::size_t ends[] = {22, 31, 43, 51, 55, 61};
    const CString groups[] = {"", "0#23'LINE' ", "10=1 ", "70=2 ", "79 ", "8'X' "};
    ASSERT_EQ(bytes.size(), ends[5]);
    CString expected;
    for (std::size_t i = 0, nCut = 22; nCut <= bytes.size(); ++nCut) {
        if (i < 6 && nCut == ends[i])
            expected += groups[i++];
        EXPECT_EQ(Read(bytes.substr(0, nCut)), expected) << nCut;
    }
}

/// Each code has the value that it has in text form, and each cut ends with the last whole group.
TEST_F(DxfReaderTest, TheBinaryFormOfOthers)
{
    const CString groups = "999 Made|0 Line|8 a|10 1.5|62 -3|70 258|90 70000|160 5|210 2.5|290 1|310 \x01\x02|330 1F|"
                           "370 -2|420 65280|1000 Note|1004 xyz|1010 3|1071 -9|1 End";
    const CString expected = "999'MADE' 0#23'LINE' 8'A' 10=1.5 62=-3 70=258 90=70000 160 210=2.5 290=1 310'' 330'1F' "
                             "370=-2 420=65280 1000'NOTE' 1004'' 1010=3 1071=-9 1'END' ";
    for (const bool bNarrow : {false, true}) {
        const CString bytes = Drawing::ToOtherBinary(groups, bNarrow);
        EXPECT_EQ(Read(bytes), expected) << bNarrow;
        for (std::size_t nCut = 22; nCut < bytes.size(); ++nCut)
            EXPECT_TRUE(expected.starts_with(Read(bytes.substr(0, nCut)))) << nCut;
    }
    CString bytes = Drawing::ToBinary("0 LINE");
    bytes[20] = '\x17';
    WriteFile(m_strFile, bytes);
    CDXFReader reader;
    ASSERT_TRUE(reader.Open(m_strFile));
    EXPECT_FALSE(reader.IsBinary());
    EXPECT_TRUE(reader.IsForeignBinary());
}

TEST_F(DxfReaderTest, LivesThroughClosingAndCopying)
{
    CDXFReader reader;
    EXPECT_FALSE(reader.Open(m_Folder / "none"));
    const TToken fresh = reader.ReadToken();
    EXPECT_EQ(fresh.m_nCode, -1);
    EXPECT_EQ(fresh.m_eToken, TToken::NONE) << "not the end of a file: there is none";
    EXPECT_TRUE(reader.Close());

    WriteFile(m_strFile, "0\nPOINT\n8\nA\n8\nB\n8\nC\n");
    ASSERT_TRUE(reader.Open(m_strFile));
    const TToken point = reader.ReadToken();
    CDXFReader copy(reader);
    EXPECT_EQ(copy.ReadToken().GetText(), "A");
    EXPECT_EQ(reader.ReadToken().GetText(), "B") << "both read on in one file";
    EXPECT_EQ(reader.GetLineNumber(), 5);
    EXPECT_EQ(reader.GetOffset(), 12);
    copy.Close();
    EXPECT_EQ(reader.ReadToken().m_eToken, TToken::NONE);
    EXPECT_EQ(point.m_eToken, TToken::POINT);
    ASSERT_TRUE(reader.Open(m_strFile)) << "again from the start";
    EXPECT_EQ(reader.ReadToken().m_eToken, TToken::POINT);
}

TEST(DxfTokenTest, WordsAreFoundByTheirText)
{
    char text[] = "seqend";
    TToken token;
    EXPECT_EQ(token.GetStringToken(), TToken::NONE);
    token.m_Value.m_pText = text;
    EXPECT_EQ(token.GetStringToken(), TToken::SEQEND);
    EXPECT_STREQ(text, "SEQEND") << "in place";
    const struct {
        const char* m_pWord;
        int m_nNumber;
    } rows[] = {{"$ACADVER", 1}, {"$DIMENSION", 10}, {"EOF", 16},   {"$EXTMIN", 18},    {"3DFACE", 19},
                {"3DLINE", 24},  {"$LIMMAX", 26},    {"LTYPE", 27}, {"LWPOLYLINE", 30}, {"VIEW", 38},
                {"", 0},         {"$", 0},           {"VIEWS", 0},  {"\xFFOINT", 0},    {"LWPOLYLINELWPOLYLINE", 0}};
    for (const auto& row : rows)
        EXPECT_EQ(TToken::m_Table.Find(row.m_pWord), row.m_nNumber) << row.m_pWord;

    TTokenTable table;
    table.AddItem({"OWN", TToken::TEXT});
    table.AddItem({"OWN", TToken::ARC});
    EXPECT_EQ(table.Find("OWN"), TToken::TEXT);
    EXPECT_EQ(table.Find("TEXT"), TToken::NONE);
}

} // namespace
