#include "formats/row_fixture.h"

#include <thread>

namespace {

class FaultsTest : public CRowTest {
protected:
    EIEResult Import(CIEData& job, const TIEFormatRow& row, const CString& strFile)
    {
        m_Ledger.Clear();
        job.SetObserver(&m_Ledger);
        const EIEResult eResult = ImportInTheSameThread(&job, strFile, row.m_nCode);
        EXPECT_TRUE(IsKnownResult(eResult)) << eResult;
        EXPECT_EQ(FindFault(job), "");
        job.SetObserver(nullptr);
        return eResult;
    }
};

TEST_F(FaultsTest, WhatCannotBeOpened)
{
    for (const TIEFormatRow* const pRow : BuiltRows(EIEDirection::Import)) {
        SCOPED_TRACE(pRow->m_pKey);
        const CString strFile = FileOf(*pRow);
        CIEData job;
        EXPECT_EQ(Import(job, *pRow, m_Folder / "missing"), IE_CANNOT_OPEN_FILE);
        EXPECT_EQ(Import(job, *pRow, m_Folder / "."), IE_CANNOT_OPEN_FILE);
        EXPECT_EQ(Import(job, *pRow, CString()), IE_CANNOT_OPEN_FILE);
        WriteFile(strFile, "x");
        {
            CIEFileWriter writer;
            ASSERT_TRUE(writer.Create(strFile));
            EXPECT_EQ(Import(job, *pRow, strFile), IE_CANNOT_OPEN_FILE) << "somebody writes it";
        }
        CFileFaults faults;
        faults.m_AllowOpen = [](const std::string&, bool bWrite) { return bWrite; };
        EXPECT_EQ(Import(job, *pRow, strFile), IE_CANNOT_OPEN_FILE);
        EXPECT_EQ(job.GetNumberOfDatasets(), 0);
    }
}

TEST_F(FaultsTest, FilesWithoutSense)
{
    const CString files[] = {"",
                             "\n",
                             "\r\n\r\n",
                             "\xEF\xBB\xBF",
                             "\xFF\xFE",
                             "\xFE\xFF\n",
                             CString(5000, '\0'),
                             CString(5000, ','),
                             CString(5000, '"'),
                             "A,1,2,3,\xC3\n\x80\x80",
                             CString("A\0B,1,2,3\nC,1", 13)};
    for (const TIEFormatRow* const pRow : BuiltRows(EIEDirection::Import)) {
        for (std::size_t i = 0; i < std::size(files); ++i) {
            SCOPED_TRACE(CString(pRow->m_pKey) + " " + std::to_string(i));
            CIEData job;
            WriteFile(FileOf(*pRow), files[i]);
            const EIEResult eResult = Import(job, *pRow, FileOf(*pRow));
            // readers that end with their first bad record keep what stands ahead of it, and some count lines alone
            if (HidesAStop(*pRow))
                EXPECT_TRUE(IsKnownResult(eResult)) << eResult;
            else
                EXPECT_EQ(eResult > 0, job.GetNumberOfObjectsInAllDatasets() > 0) << eResult;
        }
    }
}

CString ToUtf16(std::string_view ascii, bool bBig, bool bMark)
{
    CString bytes = !bMark ? "" : bBig ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) {
        bytes += bBig ? '\0' : c;
        bytes += bBig ? c : '\0';
    }
    return bytes;
}

CString Replace(CString text, std::string_view from, std::initializer_list<std::string_view> to)
{
    auto next = to.begin();
    for (std::size_t n = text.find(from); n != CString::npos; n = text.find(from, n)) {
        text.replace(n, from.size(), *next);
        n += next->size();
        next = std::next(next) == to.end() ? to.begin() : std::next(next);
    }
    return text;
}

TEST_F(FaultsTest, ATextIsReadInAnyEncodingAndWithAnyLineEnds)
{
    int nTexts = 0;
    for (const auto& [pOut, pIn] : BuiltPairs()) {
        SCOPED_TRACE(pOut->m_pKey);
        const CString strFile = FilesOf(*pOut, FileOf(*pOut))[0];
        ASSERT_EQ(Export(MakePlainJob(), *pOut, FileOf(*pOut)), IE_OK);
        const CString bytes = ReadFile(strFile);
        if (bytes.find('\0') != CString::npos || !IEUtils::IsValidUtf8(bytes))
            continue; // a binary form
        ++nTexts;
        CIEData plain;
        ASSERT_EQ(Import(plain, *pIn, strFile), IE_OK);
        CStringArray forms = {"\xEF\xBB\xBF" + bytes, Replace(bytes, "\r\n", {"\n", "\r\n"})};
        for (const bool bBig : {false, true}) {
            for (const bool bMark : {false, true}) {
                if (!IsDrawing(*pIn))
                    forms.push_back(ToUtf16(bytes, bBig, bMark));
            }
        }
        if (!IsStreamOfBlocks(*pIn)) {
            forms.push_back(Replace(bytes, "\r\n", {"\n", "\r", "\r\n"}));
            forms.push_back(bytes.ends_with("\r\n") ? bytes.substr(0, bytes.size() - 2) : bytes);
        }
        for (const CString& form : forms) {
            CIEData job;
            WriteFile(strFile, form);
            EXPECT_EQ(Import(job, *pIn, strFile), IE_OK);
            EXPECT_EQ(Describe(job), Describe(plain)) << &form - forms.data();
        }
    }
    EXPECT_GT(nTexts, 0);
}

TEST_F(FaultsTest, TextThatIsNoUtf8IsReadInTheCodePage)
{
    const std::pair<int, const char*> rows[] = {{0, "M\xFCller,1,2,3"}, {49, "G00\nA00,\nA01,1,M\xFCller,1,2,3"}};
    for (const auto& [nCode, pText] : rows) {
        CIEData job;
        WriteFile(m_Folder / "in", pText);
        EXPECT_EQ(ImportInTheSameThread(&job, m_Folder / "in", nCode), IE_OK);
        EXPECT_EQ(Describe(job), "point Müller 1 2 3\n");
    }
}

TEST_F(FaultsTest, AnEndlessLineIsARefusedRecord)
{
    constexpr std::size_t kLength = 100 << 20;
    WriteFile(m_Folder / "in", "A,1,2,3\n" + CString(kLength, 'x') + "\nB,1,2,3\n");
    CIEData job;
    EXPECT_EQ(Import(job, *CIEFormatTable::Find(EIEDirection::Import, 0), m_Folder / "in"), IE_PARTIAL);
    EXPECT_EQ(Describe(job), "point A 1 2 3\npoint B 1 2 3\n");
    ASSERT_EQ(m_Ledger.GetNotes().size(), 1U);
    EXPECT_LT(m_Ledger.GetNotes()[0].m_strRecord.size(), 1000U);
}

TEST_F(FaultsTest, WhatCannotBeCreated)
{
    for (const TIEFormatRow* const pRow : BuiltRows(EIEDirection::Export)) {
        SCOPED_TRACE(pRow->m_pKey);
        EXPECT_EQ(Export(MakePlainJob(), *pRow, m_Folder / "missing/file"), IE_CANNOT_OPEN_FILE);
        std::filesystem::create_directories(FilesOf(*pRow, m_Folder / "folder")[0]);
        EXPECT_EQ(Export(MakePlainJob(), *pRow, m_Folder / "folder"), IE_CANNOT_OPEN_FILE);
        const CString strFile = FilesOf(*pRow, FileOf(*pRow))[0];
        WriteFile(strFile, "held");
        {
            CIEFileReader reader;
            ASSERT_TRUE(reader.Open(strFile));
            EXPECT_EQ(Export(MakePlainJob(), *pRow, FileOf(*pRow)), IE_CANNOT_OPEN_FILE) << "somebody reads it";
        }
        CFileFaults faults;
        faults.m_AllowOpen = [](const std::string&, bool bWrite) { return !bWrite; };
        EXPECT_EQ(Export(MakePlainJob(), *pRow, FileOf(*pRow)), IE_CANNOT_OPEN_FILE);
        EXPECT_EQ(ReadFile(strFile), "held");
    }
}

/// A full disk ends a run without changing its result, and the observer learns of it, whether the disk fills with the
/// first byte, with the last, or in the midst of a file larger than any buffer.
TEST_F(FaultsTest, AFullDiskIsTold)
{
    for (const TIEFormatRow* const pRow : BuiltRows(EIEDirection::Export)) {
        SCOPED_TRACE(pRow->m_pKey);
        const auto exportLarge = [&](std::size_t nSpace) {
            constexpr int kCount = 30000;
            auto pJob = MakePlainJob();
            CIEDataset& dataset = *pJob->GetDatasetAt(0);
            // objects that the form has lines for; GPS positions are points for all others
            if (pRow->m_nCarries & CARRIES_SHEET_POINTS)
                SetLayout(*pJob, "sheet-name,design-north,measured-north,measured-east");
            for (int i = 0; i < kCount; ++i) {
                const CString strName = "P" + std::to_string(i);
                if (!(pRow->m_nCarries & CARRIES_SHEET_POINTS)) {
                    AddPoint<CIEGPSPosition>(dataset, strName, i);
                    continue;
                }
                auto& sheet = static_cast<CIESheetPoint&>(*dataset.Add(std::make_unique<CIESheetPoint>()));
                sheet.SetName(strName);
                sheet.SetDesignStation(CIEStation(i, 2, 3));
                (void)sheet.AddOffsetStation(CIEOffsetStation(CIEStation(i, 2, 3)));
            }
            dataset.SetJobHistory(MakeHistory(kCount));
            CFileFaults faults;
            faults.m_nDiskSpace = nSpace;
            EXPECT_EQ(Export(std::move(pJob), *pRow, FileOf(*pRow)), IE_OK) << nSpace;
            return ReadFiles(*pRow, FileOf(*pRow)).size();
        };
        const std::size_t nWhole = exportLarge(~std::size_t{0});
        EXPECT_EQ(m_Ledger.GetCount(EIENote::FileWriteFailed), 0);
        ASSERT_GT(nWhole, 400000U);
        for (const std::size_t nSpace : {std::size_t{0}, std::size_t{1}, std::size_t{300000}, nWhole - 1}) {
            EXPECT_EQ(exportLarge(nSpace), nSpace);
            EXPECT_GE(m_Ledger.GetCount(EIENote::FileWriteFailed), 1) << nSpace;
            EXPECT_LE(m_Ledger.GetCount(EIENote::FileWriteFailed), std::ssize(FilesOf(*pRow, {}))) << nSpace;
        }
        EXPECT_EQ(exportLarge(nWhole), nWhole);
        EXPECT_EQ(m_Ledger.GetCount(EIENote::FileWriteFailed), 0);
    }
}

} // namespace
