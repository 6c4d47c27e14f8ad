#include "frame/block_writer.h"

#include "support/files.h"

#include <gtest/gtest.h>

namespace {

CString Block(const CString& text, std::size_t nBlanks, const char* pDigitAndCheck)
{
    return "\x02" + text + CString(nBlanks, ' ') + pDigitAndCheck + "\x03\r\n";
}

TEST(BlockFramer, CutsAtEachHundredAndTwentyEighthCharacter)
{
    const CString a127(127, 'A'), a128(128, 'A'), euro = "\u20AC", smile = "\U0001F600", umlaut = "\u00E4";
    CString umlauts;
    for (int i = 0; i < 128; ++i)
        umlauts += umlaut;
    struct {
        CIEBlockFramer::EUnit m_eUnit;
        CString m_strText;
        CString m_strTaken;   ///< at once
        CString m_strFlushed; ///< at the end
    } const rows[] = {
        {CIEBlockFramer::EUnit::Byte, "", "", Block("", 128, "0048")},
        {CIEBlockFramer::EUnit::Byte, a127, "", Block(a127, 1, "0081")},
        {CIEBlockFramer::EUnit::Byte, a128, Block(a128, 0, "0048"), Block("", 128, "1049")},
        {CIEBlockFramer::EUnit::Byte, a128 + "B", Block(a128, 0, "0048"), Block("B", 127, "1083")},
        {CIEBlockFramer::EUnit::Byte, a127 + "\xFF", Block(a127 + "\xFF", 0, "0142"), Block("", 128, "1049")},
        {CIEBlockFramer::EUnit::Byte, a127 + umlaut, Block(a127 + "\xC3", 0, "0178"), Block("\xA4", 127, "1181")},
        {CIEBlockFramer::EUnit::Character, a127 + umlaut, Block(a127 + umlaut, 0, "0149"), Block("", 128, "1049")},
        {CIEBlockFramer::EUnit::Character, umlauts + "B", Block(umlauts, 0, "0048"), Block("B", 127, "1083")},
        {CIEBlockFramer::EUnit::Character, a127 + euro, Block(a127 + euro, 0, "08413"), Block("", 128, "1049")},
        {CIEBlockFramer::EUnit::Character, a127 + smile, Block(a127 + smile, 0, "01612"), Block("", 128, "1049")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.m_strText);
        CIEBlockFramer framer(row.m_eUnit);
        framer.Add(row.m_strText);
        CString taken, flushed;
        while (framer.Take(taken, false)) {
        }
        EXPECT_EQ(taken, row.m_strTaken);
        EXPECT_TRUE(framer.Take(flushed, true));
        EXPECT_EQ(flushed, row.m_strFlushed);
        EXPECT_EQ(framer.GetLength(), 0U);
    }
}

class BlockWriterTest : public testing::Test {
protected:
    CString Write(std::initializer_list<CString> texts, const CString& strCodePage = "CP1252")
    {
        CIEFileWriter file;
        EXPECT_TRUE(file.Create(m_Folder / "out"));
        CIEBlockWriter blocks(strCodePage);
        for (const CString& text : texts)
            EXPECT_TRUE(blocks.WriteBlock(file, text, false));
        EXPECT_TRUE(blocks.WriteBlock(file, "", true));
        EXPECT_TRUE(file.Close());
        return ReadFile(m_Folder / "out");
    }

    CTempFolder m_Folder;
};

TEST_F(BlockWriterTest, EndsEveryStreamWithABlockAndTheEndMark)
{
    const CString a64(64, 'A');
    EXPECT_EQ(Write({}), Block("", 128, "0048") + "\x04\r\n");
    EXPECT_EQ(Write({"A", "B"}), Block("AB", 126, "0051") + "\x04\r\n");
    EXPECT_EQ(Write({a64, a64}), Block(a64 + a64, 0, "0048") + Block("", 128, "1049") + "\x04\r\n");
    EXPECT_EQ(Write({"\u00E4"}), Block("\xE4", 127, "0244") + "\x04\r\n");

    CIEFileWriter file;
    ASSERT_TRUE(file.Create(m_Folder / "full"));
    CIEBlockWriter blocks("CP1252");
    blocks.WriteBlock(file, CString(127, 'A'), false);
    blocks.Add("A"); // the block is full, and the last one
    blocks.WriteBlock(file, "", true);
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(m_Folder / "full"), Block(CString(128, 'A'), 0, "0048") + "\x04\r\n");
}

TEST_F(BlockWriterTest, BlockDigitsRunFromNineToZero)
{
    const CString bytes = Write({CString(std::size_t{128} * 12, 'A')});
    CString digits;
    for (std::size_t n = 129; n < bytes.size(); n += 136)
        digits += bytes[n];
    EXPECT_EQ(digits, "0123456789012");
}

} // namespace
