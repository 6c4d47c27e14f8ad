#include "alidade/platform/file.h"
#include "alidade/vellumlib/text_file.h"
#include "alidade/vellumlib/utils.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

constexpr std::size_t kReadBuffer = 1 << 20;

class TextFile : public testing::Test {
protected:
    TextFile() : m_strPath(testing::TempDir() + "text_file_test.txt") {}
    ~TextFile() override { std::filesystem::remove(m_strPath); }

    void Put(const CString& bytes) const { std::ofstream(m_strPath, std::ios::binary) << bytes; }

    CString Slurp() const
    {
        std::ifstream file(m_strPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// All lines; on the way line numbers and positions must grow, up to the file's end.
    CStringArray Lines(const CString& codePage = "CP1252")
    {
        CIETextFile file;
        EXPECT_TRUE(file.Open(m_strPath, codePage));
        CStringArray lines;
        std::string_view line;
        m_nMended = 0;
        for (std::uint64_t nPosition = file.GetPosition(); file.ReadLine(line); nPosition = file.GetPosition()) {
            lines.emplace_back(line);
            m_nMended += file.WasMended();
            EXPECT_EQ(file.GetLineNumber(), static_cast<std::int64_t>(lines.size()));
            EXPECT_GT(file.GetPosition(), nPosition);
            EXPECT_FALSE(file.WasCut());
        }
        EXPECT_EQ(file.GetPosition(), file.GetLength());
        EXPECT_FALSE(file.ReadLine(line));
        EXPECT_EQ(line, "");
        EXPECT_FALSE(file.HasFailed());
        m_strEncoding = file.GetEncoding();
        EXPECT_EQ(file.IsUnicode(), m_strEncoding.starts_with("UTF-16"));
        return lines;
    }

    CString m_strPath;
    CString m_strEncoding;
    int m_nMended = 0;
};

/// UTF-16 of an ASCII text, the byte order by `bBig`.
CString Units(std::string_view text, bool bBig)
{
    CString units;
    for (char c : text)
        units.append(bBig ? CString{'\0', c} : CString{c, '\0'});
    return units;
}

TEST_F(TextFile, EncodingAndLinesOfAFile)
{
    const struct {
        CString m_strBytes;
        std::string_view m_Encoding;
        CStringArray m_Lines;
        int m_nMended = 0;
    } kRows[] = {
        {"", "UTF-8", {}},
        {"\xEF\xBB\xBF", "UTF-8", {}},
        {"\n", "UTF-8", {""}},
        {"\r\r\n\n\n\r", "UTF-8", {"", "", "", "", ""}},
        {"a\nb\r\nc\rd", "UTF-8", {"a", "b", "c", "d"}},
        {"a\r\n\r\nb\r\n", "UTF-8", {"a", "", "b"}},
        {"\xEF\xBB\xBFM\u00E4rz\n", "UTF-8", {"M\u00E4rz"}},
        {"\xEF\xBB\xBFM\xE4rz\xE2\x82\nok\n", "UTF-8", {"M\uFFFDrz\uFFFD\uFFFD", "ok"}, 1},
        {"M\u00E4rz \u20AC", "UTF-8", {"M\u00E4rz \u20AC"}},
        {"plain\nM\xE4rz \x80\r\nplain", "CP1252", {"plain", "M\u00E4rz \u20AC", "plain"}},
        {"M\xE4rz\x81!\n", "CP1252", {"M\u00E4rz\uFFFD!"}, 1},
        {"\u00E4 cut \xE2\x82", "CP1252", {"\u00C3\u00A4 cut \u00E2\u201A"}},
        {"nul\0in\n\0\n"s, "UTF-8", {"nul\0in"s, "\0"s}},
        {"\xFF\xFE" + Units("a\r\nb\rc\n\nd", false), "UTF-16LE", {"a", "b", "c", "", "d"}},
        {"\xFE\xFF" + Units("a\r\nb\rc\n\nd", true), "UTF-16BE", {"a", "b", "c", "", "d"}},
        {Units("P1,2.5\r\n", false), "UTF-16LE", {"P1,2.5"}},
        {Units("P1,2.5\r\n", true), "UTF-16BE", {"P1,2.5"}},
        {Units("P1,2.5\r\n", false) + "x", "UTF-16LE", {"P1,2.5", "\uFFFD"}, 1},
        {"\xFF\xFEx", "UTF-16LE", {"\uFFFD"}, 1},
        {"\xFF\xFE\xAC\x20\x3D\xD8\x00\xDE\n\0"s, "UTF-16LE", {"\u20AC\U0001F600"}},
        {"\xFE\xFF\xD8\x3D\0A\xDE\x00\xD8\x3D\xD8\x3D\xDE\x00\xD8\x3D\0\n"s,
         "UTF-16BE",
         {"\uFFFDA\uFFFD\uFFFD\U0001F600\uFFFD"},
         1},
        {CString(40, '\0'), "UTF-8", {CString(40, '\0')}},
        {"a\0b\0"s, "UTF-8", {"a\0b\0"s}},
        {"12\0\0\0\0\0\0name\0\0\0\0\r\n"s, "UTF-8", {"12\0\0\0\0\0\0name\0\0\0\0"s}},
    };
    for (const auto& row : kRows) {
        Put(row.m_strBytes);
        EXPECT_EQ(Lines(), row.m_Lines) << row.m_strBytes;
        EXPECT_EQ(m_strEncoding, row.m_Encoding) << row.m_strBytes;
        EXPECT_EQ(m_nMended, row.m_nMended) << row.m_strBytes;
    }
}

TEST_F(TextFile, CodePagesAreThoseOfIconv)
{
    const struct {
        CString m_strCodePage;
        CString m_strBytes;
        CString m_strLine;
        std::string_view m_Encoding;
    } kRows[] = {
        {"CP1251", "\xCF\xF0", "\u041F\u0440", "CP1251"},
        {"CP932", "\x83\x5C\\", "\u30BD\\", "CP932"},
        {"SHIFT_JIS", "\x83\x5C", "\u30BD", "SHIFT_JIS"},
        {"EUC-KR", "\xB0\xA1!", "\uAC00!", "EUC-KR"},
        {"no such page", "\xE4", "\u00E4", "CP1252"},
        {"", "\xE4", "\u00E4", "CP1252"},
        {"CP1251//IGNORE", "\xE4", "\u00E4", "CP1252"},
        {"UTF-16LE", "\xE4!", "\u00E4!", "CP1252"}, // its lines can't be cut at bytes
        {"IBM037", "\xE4", "\u00E4", "CP1252"},
    };
    for (const auto& row : kRows) {
        Put("ascii\n" + row.m_strBytes + "\n");
        EXPECT_EQ(Lines(row.m_strCodePage), (CStringArray{"ascii", row.m_strLine})) << row.m_strCodePage;
        EXPECT_EQ(m_strEncoding, row.m_Encoding);
        EXPECT_EQ(m_nMended, 0);
    }
    // a page that has other characters in the places of ASCII changes every line
    Put("\\\n\x83\x5C\n");
    EXPECT_EQ(Lines("SHIFT_JIS"), (CStringArray{"\u00A5", "\u30BD"}));
    // a switch to another set lasts to the end of its line
    Put("\x1B$B$\"\nabc\xFF\n");
    EXPECT_EQ(Lines("ISO-2022-JP"), (CStringArray{"\u3042", "abc\uFFFD"}));
    // a character that the end of the line cuts leaves the next line whole
    Put("\x83\n\x83\x5C\n");
    EXPECT_EQ(Lines("CP932"), (CStringArray{"\uFFFD", "\u30BD"}));
}

TEST_F(TextFile, LineEndsAndCharactersMayLieAcrossTheBuffersEnd)
{
    for (std::string_view end : {"\r\n", "\n", "\r"}) {
        for (std::size_t nLength = kReadBuffer - 4; nLength <= kReadBuffer + 1; ++nLength) {
            const CString longLine(nLength - 3, 'x');
            const CStringArray lines = {longLine + "\u20AC", "", "last \u00E4"};
            Put(lines[0] + CString(end) + CString(end) + lines[2]);
            EXPECT_TRUE(Lines() == lines) << nLength;
            EXPECT_EQ(m_strEncoding, "UTF-8");
        }
        for (std::size_t nUnits = kReadBuffer / 2 - 3; nUnits <= kReadBuffer / 2 + 1; ++nUnits) {
            Put("\xFF\xFE" + Units(CString(nUnits, 'x') + CString(end), false) + "\x3D\xD8\x00\xDE"s);
            EXPECT_TRUE(Lines() == (CStringArray{CString(nUnits, 'x'), "\U0001F600"})) << nUnits;
        }
    }
}

TEST_F(TextFile, ABadByteAnywhereMakesTheFileACodePageOne)
{
    for (std::size_t nAt : {std::size_t{0}, kReadBuffer - 1, kReadBuffer, 2 * kReadBuffer + 7}) {
        CString bytes(2 * kReadBuffer + 8, 'x');
        bytes[nAt] = '\xE4';
        Put(bytes);
        EXPECT_EQ(Lines().size(), 1U);
        EXPECT_EQ(m_strEncoding, "CP1252") << nAt;
    }
}

TEST_F(TextFile, RewindGoesBehindTheMark)
{
    for (const CString& bytes : {"\xEF\xBB\xBF"s + "one\ntwo", "\xFF\xFE"s + Units("one\ntwo", false)}) {
        Put(bytes);
        CIETextFile file;
        std::string_view line;
        ASSERT_TRUE(file.Open(m_strPath));
        while (file.ReadLine(line)) {
        }
        file.Rewind();
        EXPECT_EQ(file.GetLineNumber(), 0);
        EXPECT_TRUE(file.ReadLine(line));
        EXPECT_EQ(line, "one");
        file.Close();
        EXPECT_FALSE(file.ReadLine(line));
    }
    CIETextFile file;
    std::string_view line;
    EXPECT_FALSE(file.ReadLine(line));
    EXPECT_FALSE(file.Open(m_strPath + ".none"));
    EXPECT_FALSE(file.ReadLine(line));
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST_F(TextFile, ALineBeyondAllMeasureIsCut)
{
    // a hole of zeros costs no disk; the limit falls into a character
    constexpr std::size_t nLimit = CIETextFile::kLongestLine;
    for (const CString& end : {"\r\n"s, ""s}) {
        {
            std::ofstream file(m_strPath, std::ios::binary);
            file.seekp(nLimit - 1);
            file << "\u20AC tail" << end << "next";
        }
        CIETextFile file;
        std::string_view line;
        ASSERT_TRUE(file.Open(m_strPath));
        ASSERT_TRUE(file.ReadLine(line));
        EXPECT_EQ(line.size(), nLimit - 1);
        EXPECT_TRUE(file.WasCut());
        EXPECT_EQ(file.ReadLine(line), !end.empty());
        EXPECT_EQ(line, end.empty() ? "" : "next");
        EXPECT_FALSE(file.WasCut());
        EXPECT_EQ(file.GetPosition(), file.GetLength());
    }
}

TEST_F(TextFile, WrittenTextHasItsEncoding)
{
    const CString text = "A\u00E4\u20AC\U0001F600\u3042z";
    const struct {
        CString m_strEncoding;
        CString m_strBytes;
        int m_nReplaced;
    } kRows[] = {
        {"UTF-8", text, 0},
        {"utf8", text, 0},
        {"CP1252", "A\xE4\x80??z", 2},
        {"ASCII", "A????z", 4},
        {"UTF-16",
         "\xFF\xFE"
         "A\0\xE4\0\xAC\x20\x3D\xD8\x00\xDE\x42\x30z\0"s,
         0},
        {"utf-16be", "\xFE\xFF\0A\0\xE4\x20\xAC\xD8\x3D\xDE\x00\x30\x42\0z"s, 0},
        {"ISO-2022-JP", "A???\x1B$B$\"\x1B(Bz", 3},
    };
    for (const auto& row : kRows) {
        // in one piece and byte by byte
        for (std::size_t nPiece : {text.size(), std::size_t{1}}) {
            CIETextWriter file;
            ASSERT_TRUE(file.Create(m_strPath, row.m_strEncoding));
            for (std::size_t i = 0; i < text.size(); i += nPiece)
                EXPECT_TRUE(file.Write(std::string_view(text).substr(i, nPiece)));
            EXPECT_TRUE(file.Close());
            EXPECT_TRUE(file.Close());
            EXPECT_EQ(Slurp(), row.m_strBytes) << row.m_strEncoding;
            EXPECT_EQ(file.GetReplacedCharacters(), row.m_nReplaced) << row.m_strEncoding;
        }
    }
}

TEST_F(TextFile, AnEncodingThatSwitchesIsBroughtBackAtTheEnd)
{
    CIETextWriter file;
    ASSERT_TRUE(file.Create(m_strPath, "ISO-2022-JP"));
    EXPECT_TRUE(file.Write("\u3042"));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(Slurp(), "\x1B$B$\"\x1B(B");

    ASSERT_TRUE(file.Create(m_strPath, "CP1252"));
    EXPECT_TRUE(file.Write("a\xE2\x82"));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(Slurp(), "a?") << "text that ends within a character";
    EXPECT_EQ(file.GetReplacedCharacters(), 1);
}

TEST_F(TextFile, AnUnknownEncodingLeavesTheFileAlone)
{
    Put("kept");
    for (const CString& encoding : {"no such encoding"s, ""s, "ASCII//TRANSLIT"s, "CP1252\0x"s}) {
        CIETextWriter file;
        EXPECT_FALSE(file.Create(m_strPath, encoding)) << encoding;
        EXPECT_FALSE(file.IsOpen());
        EXPECT_FALSE(file.Write("x"));
    }
    EXPECT_EQ(Slurp(), "kept");
}

TEST_F(TextFile, LinesBuiltFromValues)
{
    CIETextWriter file;
    ASSERT_TRUE(file.Create(m_strPath));
    CIETextLine line;
    EXPECT_TRUE(line.Add("A01,").AddInt(-7).Add(',').AddFixed(-0.0001, 3).Add(',').AddFixed(2.5, 0).EndTo(file));
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_TRUE(line.EndTo(file));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(Slurp(), "A01,-7,0.000,2\r\n\r\n");
}

class CFullDisk : public IIEFileFaults {
public:
    bool AllowOpen(const std::string&, bool) override { return true; }
    std::size_t AllowWrite(std::size_t) override { return 0; }
};

TEST_F(TextFile, AFullDiskIsSeenAtTheLatestByClose)
{
    CFullDisk faults;
    Platform::SetFileFaults(&faults);
    for (const CString& encoding : {"UTF-8"s, "UTF-16"s, "ISO-2022-JP"s}) {
        CIETextWriter file;
        ASSERT_TRUE(file.Create(m_strPath, encoding));
        file.Write("\u3042");
        EXPECT_FALSE(file.Close()) << encoding;
        EXPECT_FALSE(file.Close()) << encoding;
    }
    Platform::SetFileFaults(nullptr);
}

TEST_F(TextFile, WhatIsWrittenIsReadBack)
{
    const std::string_view kCharacters[] = {"a", "1", ",", " ", "\u00E4", "\u20AC", "\u3042", "\U0001F600"};
    std::minstd_rand random(13);
    for (const CString& encoding : {"UTF-8"s, "UTF-16LE"s, "UTF-16BE"s, "GB18030"s}) {
        for (int i = 0; i < 30; ++i) {
            CStringArray lines = {"\u00E4\u20AC"}; // ASCII alone would hide the encoding
            for (unsigned n = static_cast<unsigned>(random() % 20); n > 0; --n) {
                CString line;
                for (unsigned m = static_cast<unsigned>(random() % 30); m > 0; --m)
                    line += kCharacters[random() % std::size(kCharacters)];
                lines.push_back(line);
            }
            CIETextWriter file;
            ASSERT_TRUE(file.Create(m_strPath, encoding));
            for (const CString& line : lines)
                file.Write(line + (i % 3 == 0 ? "\n" : i % 3 == 1 ? "\r" : "\r\n"));
            ASSERT_TRUE(file.Close());
            EXPECT_EQ(Lines("GB18030"), lines) << encoding;
        }
    }
}

} // namespace
