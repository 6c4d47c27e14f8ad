#include "alidade/platform/file.h"
#include "alidade/vellumlib/utils.h"

#include <gtest/gtest.h>

namespace {

CString Repeat(std::string_view text, int nCount)
{
    CString all;
    for (; nCount > 0; --nCount)
        all += text;
    return all;
}

TEST(UtilsFiles, NamesOfObjectsAndFiles)
{
    const struct {
        CString m_strText;
        bool m_bName;
        bool m_bFileName;
    } kRows[] = {
        {"", false, false},
        {"P1", true, true},
        {"a b.c", true, true},
        {"Kr\u00F6te \U0001F438", true, true},
        {Repeat("x", 64), true, true},
        {Repeat("x", 65), false, false},
        {Repeat("\u20AC", 64), true, true},     // 192 bytes
        {Repeat("\U0001F438", 50), true, true}, // 200 bytes
        {Repeat("\U0001F438", 50) + "x", true, false},
        {"a\tb", false, false},
        {CString("a\0b", 3), false, false},
        {"a\x7F", false, false},
        {"a\xC2\x85", false, false}, // U+0085
        {"a\u00A0b", true, true},
        {"a\xFF", false, false},
        {"a/b", true, false},
        {"a\\b", true, false},
        {"a:b", true, false},
        {"a*", true, false},
        {"a?", true, false},
        {"\"a\"", true, false},
        {"<a>", true, false},
        {"a|b", true, false},
        {".", true, false},
        {"..", true, false},
        {"a.", true, false},
        {"a ", true, false},
        {" a", true, false},
        {".hidden", true, true},
        {"CON", true, false},
        {"nul.txt", true, false},
        {"Aux.tar.gz", true, false},
        {"prn .txt", true, false},
        {"com0", true, false},
        {"LPT9.csv", true, false},
        {"com10", true, true},
        {"comx", true, true},
        {"console", true, true},
        {"x.con", true, true},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(IEUtils::IsValidName(row.m_strText), row.m_bName) << row.m_strText;
        EXPECT_EQ(IEUtils::IsValidCodeName(row.m_strText), row.m_bName) << row.m_strText;
        EXPECT_EQ(IEUtils::IsValidFileName(row.m_strText), row.m_bFileName) << row.m_strText;
    }
}

TEST(UtilsFiles, PathsLoseOnlyTheExtensionOfTheirLastPart)
{
    const struct {
        std::string_view m_Path;
        std::string_view m_Base; ///< without extension
        std::string_view m_Name; ///< without folder and extension
        std::string_view m_Extension;
        std::string_view m_Sibling; ///< of the name "set 1.2"
    } kRows[] = {
        {"/d/job.TXT", "/d/job", "job", "txt", "/d/set 1.2"},
        {"job.tar.gz", "job.tar", "job.tar", "gz", "set 1.2"},
        {"/a.b/c", "/a.b/c", "c", "", "/a.b/set 1.2"},
        {"C:\\a.b\\c.d", "C:\\a.b\\c", "c", "d", "C:\\a.b\\set 1.2"},
        {"a/b\\c.d/e", "a/b\\c.d/e", "e", "", "a/b\\c.d/set 1.2"},
        {".hidden", ".hidden", ".hidden", "", "set 1.2"},
        {"/a/.hidden.txt", "/a/.hidden", ".hidden", "txt", "/a/set 1.2"},
        {"..", "..", "..", "", "set 1.2"},
        {"../..a", "../..a", "..a", "", "../set 1.2"},
        {"job.", "job", "job", "", "set 1.2"},
        {"/d.x/", "/d.x/", "", "", "/d.x/set 1.2"},
        {"", "", "", "", "set 1.2"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(IEUtils::CreateFileName(row.m_Path, "set 1.2", false), row.m_Base) << row.m_Path;
        EXPECT_EQ(IEUtils::CreateFileName(row.m_Path, "set 1.2", true), row.m_Sibling) << row.m_Path;
        EXPECT_EQ(IEUtils::ExtractFileNameWithoutExtFromPathName(row.m_Path), row.m_Name) << row.m_Path;
        EXPECT_EQ(IEUtils::GetExtension(row.m_Path), row.m_Extension) << row.m_Path;
    }
}

class CAnswer : public IIEMessageBox {
public:
    bool AskOverwrite(const CString& strFileName, HWND) override
    {
        m_strAsked += strFileName;
        return m_bAnswer;
    }
    bool m_bAnswer = false;
    CString m_strAsked;
};

TEST(UtilsFiles, OnlyAnExistingFileIsAskedFor)
{
    const CString path = testing::TempDir() + "asked.txt";
    CAnswer box;
    ASSERT_TRUE(Platform::RemoveFile(path));
    EXPECT_TRUE(IEUtils::IsExportFileWithSameName(path, &box, nullptr));
    EXPECT_EQ(box.m_strAsked, "");
    CIETextWriter file;
    ASSERT_TRUE(file.Create(path));
    EXPECT_TRUE(IEUtils::WriteString(file, "one\r\ntwo"));
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(IEUtils::IsExportFileWithSameName(path, nullptr, nullptr));
    EXPECT_FALSE(IEUtils::IsExportFileWithSameName(path, &box, nullptr));
    box.m_bAnswer = true;
    EXPECT_TRUE(IEUtils::IsExportFileWithSameName(path, &box, nullptr));
    EXPECT_EQ(box.m_strAsked, path + path);

    CIETextFile read;
    ASSERT_TRUE(read.Open(path));
    EXPECT_FALSE(IEUtils::IsUnicodeFile(read));
    CString line;
    EXPECT_TRUE(IEUtils::ReadLine(read, line, true, true));
    EXPECT_EQ(line, "one");
    EXPECT_TRUE(IEUtils::Read1Line(read, line));
    EXPECT_EQ(line, "two");
    EXPECT_FALSE(IEUtils::Read1Line(read, line));
    EXPECT_EQ(line, "");
    read.Close();
    Platform::RemoveFile(path);
}

} // namespace
