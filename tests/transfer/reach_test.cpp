// What a run doesn't come to is told, and told once.

#include "alidade/frame/point_exporter.h"
#include "alidade/transfer/entries.h"
#include "support/files.h"
#include "support/jobs.h"
#include "transfer/factory.h"

#include <atomic>
#include <thread>

namespace {

constexpr auto kDelimited = EExportType(0);

class ReachTest : public testing::Test {
protected:
    /// Datasets of those many points, named A, B ...; the first is current.
    std::unique_ptr<CIEData> MakeJob(std::initializer_list<int> counts, bool bSingleFile)
    {
        auto pJob = std::make_unique<CIEData>();
        pJob->SetObserver(&m_Ledger);
        ChangeSettings(*pJob, [&](TIESettings& settings) { settings.m_bSingleFile = bSingleFile; });
        char cName = 'A';
        for (const int nPoints : counts) {
            CIEDataset* const pDataset = pJob->AddDataset(std::make_unique<CIEDataset>(CString(1, cName)));
            for (int i = 0; i < nPoints; ++i)
                AddPoint(*pDataset, cName + std::to_string(i));
            ++cName;
        }
        pJob->SetCurDataset(0);
        return pJob;
    }

    EIEResult Run(std::unique_ptr<CIEData> pJob)
    {
        return ExportInTheSameThread(pJob.release(), m_Folder / "out.txt", kDelimited);
    }

    CTempFolder m_Folder;
    TStopGuard m_Guard;
    CIELedger m_Ledger;
};

TEST_F(ReachTest, DatasetsThatOneFileMisses)
{
    struct {
        const char* m_pWhat;
        std::initializer_list<int> m_Counts;
        bool m_bSingleFile;
        int m_nCurrent;
        bool m_bPoints; // points and lines are asked for
        int m_nMissed;
    } const rows[] = {
        {"all are reached", {2, 3, 1}, true, 0, true, 0},
        {"an empty one ends the file", {2, 0, 3}, true, 0, true, 3},
        {"the host left the last current", {2, 1}, true, 1, true, 2},
        {"no split, because the first is empty", {0, 3, 1}, false, 0, true, 4},
        {"no split, because neither points nor lines are asked for", {2, 5}, false, 0, false, 5},
        {"a file for each", {2, 5}, false, 0, true, 0},
    };
    for (const auto& row : rows) {
        m_Ledger.Clear();
        auto pJob = MakeJob(row.m_Counts, row.m_bSingleFile);
        pJob->SetCurDataset(row.m_nCurrent);
        ChangeSettings(*pJob, [&](TIESettings& settings) {
            settings.SetDataType(EIEDataType::Points, row.m_bPoints);
            settings.SetDataType(EIEDataType::Lines, row.m_bPoints);
        });
        EXPECT_EQ(Run(std::move(pJob)), IE_OK) << row.m_pWhat;
        EXPECT_EQ(m_Ledger.GetCount(EIENote::DatasetUnreached), row.m_nMissed) << row.m_pWhat;
    }
}

TEST_F(ReachTest, ACodeThatNoObjectHasIsToldOnceForAllFiles)
{
    auto pJob = MakeJob({1, 1, 1}, false);
    AddCode(*pJob, "UNUSED");
    EXPECT_EQ(Run(std::move(pJob)), IE_OK);
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobCode), 1);
}

TEST_F(ReachTest, AFileThatCannotBeDeletedDoesntSaveTheNextOne)
{
    const CString strFolder = m_Folder / "a folder with something in it";
    std::filesystem::create_directory(strFolder);
    WriteFile(strFolder + "/something", "x");
    const CString strFile = m_Folder / "of this run.txt";
    WriteFile(strFile, "x");
    auto pJob = MakeJob({1}, true);
    for (const CString& strName : {strFolder, CString(), strFile})
        pJob->AddFileNameToExported(strName);
    CIEData::m_bStopProcess = true;
    EXPECT_EQ(Run(std::move(pJob)), IE_STOPPED);
    EXPECT_TRUE(std::filesystem::exists(strFolder));
    EXPECT_FALSE(std::filesystem::exists(strFile));
}

/// Ends with a result of its own.
class CWideExporter : public CIEPointExporter {
public:
    using CIEPointExporter::CIEPointExporter;
    [[nodiscard]] EIEResult GetResult() const override { return IE_VALUE_TOO_WIDE; }
};

TEST_F(ReachTest, AnExporterHasTheLastWordOnItsResult)
{
    auto pJob = MakeJob({1}, true);
    CWideExporter exporter(pJob.get(), m_Folder / "out.txt");
    EXPECT_EQ(exporter.Export(), IE_VALUE_TOO_WIDE);
}

TEST_F(ReachTest, StepsOfOneFileAreThoseOfAllDatasets)
{
    auto pJob = MakeJob({2, 3}, true);
    EXPECT_EQ(CreateExporter(pJob.get(), {}, 0)->GetNumberOfSteps(), 7);
    ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = false; });
    EXPECT_EQ(CreateExporter(pJob.get(), {}, 0)->GetNumberOfSteps(), 4);
}

TEST_F(ReachTest, AThreadMayBeDeletedFromItsOwnMessage)
{
    std::unique_ptr<CIEThread> pThread;
    std::atomic<bool> bGo = false;
    std::atomic<bool> bDone = false;
    CIEMessageWindow window([&](const TIEMessage&) {
        while (!bGo)
            std::this_thread::yield();
        pThread.reset();
        bDone = true;
    });
    auto pJob = MakeJob({1}, true);
    ChangeSettings(*pJob, [&](TIESettings& settings) { settings.m_hWnd = &window; });
    pThread.reset(StartExportInSeparateThread(pJob.release(), m_Folder / "out.txt", kDelimited));
    bGo = true;
    while (!bDone)
        std::this_thread::yield();
}

} // namespace
