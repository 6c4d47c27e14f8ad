#include "alidade/platform/messages.h"
#include "alidade/transfer/entries.h"
#include "alidade/transfer/format_table.h"
#include "support/files.h"
#include "support/jobs.h"

#include <gmock/gmock.h>

#include <optional>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kDelimited = 0;
constexpr int kWriteSima = 63;
constexpr int kReadSima = 49;
constexpr int kNoFormat = 6;

/// A window that keeps what comes in, and looks around at that moment.
class CListener {
public:
    std::function<CString()> m_Look;
    CStringArray m_Seen; ///< "EXPORT_DATA_FINISHED 0 13 what-was-seen"

    HWND Get() { return &m_Window; }

private:
    CIEMessageWindow m_Window{[this](const TIEMessage& message) {
        m_Seen.push_back(Platform::GetMessageName(message.m_nMessage) + " " + std::to_string(message.m_nWParam) + " " +
                         std::to_string(message.m_nLParam) + (m_Look ? " " + m_Look() : CString()));
    }};
};

/// Both forms of each entry.
EIEResult Import(bool bThread, CIEData* pJob, const CString& strFile, int nCode)
{
    if (!bThread)
        return ImportInTheSameThread(pJob, strFile, nCode);
    const std::unique_ptr<CIEThread> pThread(StartImportInSeparateThread(pJob, strFile, nCode));
    return pThread && pThread->Wait() ? static_cast<EIEResult>(pThread->GetExitCode()) : IE_OUT_OF_MEMORY;
}

EIEResult Export(bool bThread, std::unique_ptr<CIEData> pJob, const CString& strFile, int nCode)
{
    if (!bThread)
        return ExportInTheSameThread(pJob.release(), strFile, EExportType(nCode));
    const std::unique_ptr<CIEThread> pThread(StartExportInSeparateThread(pJob.release(), strFile, EExportType(nCode)));
    return pThread && pThread->Wait() ? static_cast<EIEResult>(pThread->GetExitCode()) : IE_OUT_OF_MEMORY;
}

class DriverTest : public testing::Test {
protected:
    /// A job whose finishing message goes to the listener and whose only object counts in m_nDeleted.
    std::unique_ptr<CIEData> MakeJob(std::function<void()> onLook = {})
    {
        auto pJob = std::make_unique<CIEData>();
        SetLayout(*pJob, "east,north,codes");
        ChangeSettings(*pJob, [this](TIESettings& settings) { settings.m_hWnd = m_Listener.Get(); });
        pJob->AddDataset(std::make_unique<CIEDataset>("Site"))
            ->Add(std::make_unique<CProbePoint>(MakeStation("A", 1, 2, 3), &m_nDeleted, std::move(onLook)));
        return pJob;
    }

    TStopGuard m_Guard;
    CTempFolder m_Folder;
    CListener m_Listener;
    int m_nDeleted = 0;
};

class ProceduresTest : public DriverTest, public testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(SameThreadAndOwnThread, ProceduresTest, testing::Bool());

TEST_P(ProceduresTest, AnImportNamesObjectsFromCodesAndThenTells)
{
    const auto pJob = MakeJob();
    m_Listener.m_Look = [&] { return Describe(*pJob); };
    WriteFile(m_Folder / "in", "1,2,ROAD\n");
    EXPECT_EQ(Import(GetParam(), pJob.get(), m_Folder / "in", kDelimited), IE_OK);
    EXPECT_THAT(m_Listener.m_Seen, ElementsAre("IMPORT_DATA_FINISHED 0 13 point A 1 2 3\npoint ROAD 2 1 0 ROAD()\n"));
}

TEST_P(ProceduresTest, AFailedOrStoppedImportNamesAndTellsToo)
{
    const auto pJob = MakeJob();
    pJob->GetDatasetAt(0)->GetObjectAt(0)->SetName("");
    GiveCode(*pJob->GetDatasetAt(0)->GetObjectAt(0), AddCode(*pJob, "TREE"));
    m_Listener.m_Look = [&] { return pJob->GetDatasetAt(0)->GetObjectAt(0)->GetName(); };
    EXPECT_EQ(Import(GetParam(), pJob.get(), m_Folder / "in", kNoFormat), IE_NOT_SUPPORTED);
    pJob->GetDatasetAt(0)->GetObjectAt(0)->SetName("");
    EXPECT_EQ(Import(GetParam(), pJob.get(), m_Folder / "missing", kDelimited), IE_CANNOT_OPEN_FILE);
    WriteFile(m_Folder / "in", "1,2,ROAD\n");
    CIEData::m_bStopProcess = true;
    EXPECT_EQ(Import(GetParam(), pJob.get(), m_Folder / "in", kDelimited), IE_STOPPED);
    EXPECT_TRUE(CIEData::m_bStopProcess);
    EXPECT_THAT(m_Listener.m_Seen, ElementsAre("IMPORT_DATA_FINISHED 0 -13 TREE", "IMPORT_DATA_FINISHED 0 -12 TREE",
                                               "IMPORT_DATA_FINISHED 0 -16 TREE"));
    EXPECT_EQ(pJob->GetNumberOfObjectsInAllDatasets(), 1);
}

TEST_P(ProceduresTest, AnExportTellsWithTheFileClosedAndTheJobAlive)
{
    m_Listener.m_Look = [&] { return ReadFile(m_Folder / "Site.txt") + std::to_string(m_nDeleted); };
    EXPECT_EQ(Export(GetParam(), MakeJob(), m_Folder / "out", kDelimited), IE_OK);
    EXPECT_THAT(m_Listener.m_Seen, ElementsAre("EXPORT_DATA_FINISHED 0 13 2.000,1.000,\r\n0"));
    EXPECT_EQ(m_nDeleted, 1);
}

TEST_P(ProceduresTest, AStoppedExportHasTakenItsFilesAwayWhenItTells)
{
    m_Listener.m_Look = [&] { return m_Folder.List() + std::to_string(m_nDeleted); };
    EXPECT_EQ(Export(GetParam(), MakeJob([] { CIEData::m_bStopProcess = true; }), m_Folder / "out", kDelimited),
              IE_STOPPED);
    EXPECT_THAT(m_Listener.m_Seen, ElementsAre("EXPORT_DATA_FINISHED 0 -16 0"));
    EXPECT_EQ(m_nDeleted, 1);
}

TEST_P(ProceduresTest, AnExportCodeWithoutAClassTellsAndTakesTheJob)
{
    auto pJob = MakeJob();
    ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
    EXPECT_EQ(Export(GetParam(), std::move(pJob), m_Folder / "out", kNoFormat), IE_NOT_SUPPORTED);
    EXPECT_EQ(Export(GetParam(), MakeJob(), m_Folder / "out", kNoFormat), IE_NOTHING_DONE); // a file for each dataset
    EXPECT_THAT(m_Listener.m_Seen, ElementsAre("EXPORT_DATA_FINISHED 0 -13", "EXPORT_DATA_FINISHED 0 -2"));
    EXPECT_EQ(m_nDeleted, 2);
    EXPECT_EQ(m_Folder.List(), "");
}

TEST_P(ProceduresTest, WithoutAWindowAllAreTold)
{
    const auto pJob = MakeJob();
    ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_hWnd = nullptr; });
    CListener other;
    EXPECT_EQ(Import(GetParam(), pJob.get(), m_Folder / "missing", kDelimited), IE_CANNOT_OPEN_FILE);
    EXPECT_THAT(m_Listener.m_Seen, ElementsAre("IMPORT_DATA_FINISHED 0 -12"));
    EXPECT_EQ(other.m_Seen, m_Listener.m_Seen);
}

TEST_P(ProceduresTest, AWindowThatIsGoneDoesNoHarm)
{
    auto pGone = std::make_unique<CListener>();
    const auto pJob = MakeJob();
    ChangeSettings(*pJob, [&](TIESettings& settings) { settings.m_hWnd = pGone->Get(); });
    pGone.reset();
    EXPECT_EQ(Import(GetParam(), pJob.get(), m_Folder / "missing", kDelimited), IE_CANNOT_OPEN_FILE);
    EXPECT_THAT(m_Listener.m_Seen, IsEmpty());
}

TEST_P(ProceduresTest, WithoutAJobNothingIsTold)
{
    EXPECT_EQ(Import(GetParam(), nullptr, m_Folder / "in", kDelimited), IE_NO_JOB);
    EXPECT_EQ(Export(GetParam(), nullptr, m_Folder / "out", kDelimited), IE_NO_JOB);
    EXPECT_THAT(m_Listener.m_Seen, IsEmpty());
}

TEST_F(DriverTest, ARefusedThreadLeavesAllAsItWas)
{
    const auto pJob = MakeJob();
    CIEThread::RefuseNext(2);
    EXPECT_EQ(StartExportInSeparateThread(pJob.get(), m_Folder / "out", EExportType(kDelimited)), nullptr);
    EXPECT_EQ(StartImportInSeparateThread(pJob.get(), m_Folder / "in", kDelimited), nullptr);
    EXPECT_THAT(m_Listener.m_Seen, IsEmpty());
    EXPECT_EQ(m_nDeleted, 0);
    EXPECT_EQ(Describe(*pJob), "point A 1 2 3\n");
    EXPECT_EQ(m_Folder.List(), "");
}

/// A job with datasets of these names. A digit behind a name is the number of points, one if there is none; "!" sets
/// the stop when the first of them is looked at.
std::unique_ptr<CIEData> MakeJobOf(const CStringArray& datasets)
{
    auto pJob = std::make_unique<CIEData>();
    SetLayout(*pJob, "name");
    for (CString strName : datasets) {
        const bool bStop = strName.ends_with('!');
        if (bStop)
            strName.pop_back();
        int nPoints = 1;
        if (!strName.empty() && strName.back() >= '0' && strName.back() <= '9') {
            nPoints = strName.back() - '0';
            strName.pop_back();
        }
        CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>(strName));
        for (int i = 0; i < nPoints; ++i) {
            const CIEStation station = MakeStation(strName + std::to_string(i), 0, 0, 0);
            dataset.Add(std::make_unique<CProbePoint>(station, nullptr, [bStop] {
                if (bStop)
                    CIEData::m_bStopProcess = true;
            }));
        }
    }
    pJob->SetCurDataset(0);
    return pJob;
}

enum ESet : unsigned { Usual = 0, SingleFile = 1, NoPoints = 2, NoLines = 4 };

struct TDriverCase {
    const char* m_pWhat;
    CStringArray m_Datasets;
    EIEResult m_eResult;
    const char* m_pFiles; ///< "name:content " for each, line ends as "/"
    unsigned m_nSet = Usual;
    const char* m_pNotes = "";
    const char* m_pRefused = nullptr; ///< part of the names of the files that can't be created
};

// clang-format off
#define OUT "dataset.left-out:"
const TDriverCase kDriver[] = {
    {"a file for each",             {"A", "B2"}, IE_OK, "A.txt:A0/ B.txt:B0/B1/ "},
    {"an empty one among them",     {"A", "B0", "C"}, IE_OK, "A.txt:A0/ B.txt: C.txt:C0/ "},
    {"the first is empty",          {"A0", "B"}, IE_OK, "out.x: ", Usual, "dataset.unreached:B0 "},
    {"no dataset",                  {}, IE_OK, "out.x: "},
    {"points alone",                {"A", "B"}, IE_OK, "A.txt:A0/ B.txt:B0/ ", NoLines},
    {"lines alone",                 {"A", "B"}, IE_OK, "A.txt:A0/ B.txt:B0/ ", NoPoints},
    {"neither points nor lines",    {"A", "B"}, IE_OK, "out.x:A0/ ", NoPoints | NoLines, "dataset.unreached:B0 "},
    {"a name that is no file name", {"A/B", "C"}, IE_BAD_DATASET_NAME, "C.txt:C0/ ", Usual, OUT "A/B "},
    {"the last name is none",       {"A", "NUL"}, IE_BAD_DATASET_NAME, "A.txt:A0/ ", Usual, OUT "NUL "},
    {"no name is one",              {"", ".."}, IE_BAD_DATASET_NAME, "", Usual, OUT " " OUT ".. "},
    {"one can't be created",        {"A", "B", "C"}, IE_OK, "B.txt:B0/ C.txt:C0/ ", Usual, OUT "A ", "/A."},
    {"the last can't be created",   {"A", "B"}, IE_OK, "A.txt:A0/ ", Usual, OUT "B ", "/B."},
    {"none can be created",         {"A", "B"}, IE_NOTHING_DONE, "", Usual, OUT "A " OUT "B ", ".txt"},
    {"none created, one bad name",  {"A", "?"}, IE_BAD_DATASET_NAME, "", Usual, OUT "A " OUT "? ", ".txt"},
    {"a stop in the first",         {"A2!", "B"}, IE_STOPPED, ""},
    {"a stop behind a failure",     {"A", "B2!", "C"}, IE_STOPPED, "", Usual, OUT "A ", "/A."},
    {"a stop behind a success",     {"A", "B2!", "C"}, IE_OK, "A.txt:A0/ B.txt:B0/ C.txt: ", Usual, OUT "B " OUT "C "},
    {"a stop behind a bad name",    {"?", "B2!", "C"}, IE_BAD_DATASET_NAME, "B.txt:B0/ C.txt: ", Usual, OUT "? " OUT "B " OUT "C "},
    {"one file for all",            {"A", "B2"}, IE_OK, "out.x:A0/B0/B1/ ", SingleFile, "job.datasets: "},
    {"an empty one in front",       {"A0", "B"}, IE_OK, "out.x:B0/ ", SingleFile, "job.datasets: "},
    {"an empty one in the middle",  {"A", "B0", "C2"}, IE_OK, "out.x:A0/ ", SingleFile, "job.datasets: dataset.unreached:C0 dataset.unreached:C1 "},
    {"an empty one at the end",     {"A", "B0"}, IE_OK, "out.x:A0/ ", SingleFile, "job.datasets: "},
    {"one file that can't be made", {"A", "B"}, IE_CANNOT_OPEN_FILE, "", SingleFile, "", "out"},
    {"one file, stopped",           {"A", "B2!"}, IE_STOPPED, "", SingleFile},
};
#undef OUT
// clang-format on

TEST_F(DriverTest, OneFileOrOneForEachDataset)
{
    for (const TDriverCase& row : kDriver) {
        SCOPED_TRACE(row.m_pWhat);
        const CTempFolder folder;
        CFileFaults faults;
        faults.m_AllowOpen = [&](const std::string& path, bool /*bWrite*/) {
            return !row.m_pRefused || path.find(row.m_pRefused) == std::string::npos;
        };
        CIELedger ledger;
        auto pJob = MakeJobOf(row.m_Datasets);
        pJob->SetObserver(&ledger);
        ChangeSettings(*pJob, [&](TIESettings& settings) {
            settings.m_bSingleFile = row.m_nSet & SingleFile;
            settings.SetDataType(EIEDataType::Points, !(row.m_nSet & NoPoints));
            settings.SetDataType(EIEDataType::Lines, !(row.m_nSet & NoLines));
        });
        EXPECT_EQ(ExportInTheSameThread(pJob.release(), folder / "out.x", EExportType(kDelimited)), row.m_eResult);
        CIEData::m_bStopProcess = false;

        CString strFiles, strNotes;
        CStringArray names;
        IEUtils::ParseValuesInQuotes(folder.List(), names, u' ');
        for (const CString& name : names) {
            strFiles += name + ":";
            for (const char c : ReadFile(folder / name))
                strFiles += c == '\r' ? CString() : CString(1, c == '\n' ? '/' : c);
            strFiles += " ";
        }
        EXPECT_EQ(strFiles, row.m_pFiles);
        for (const TIENote& note : ledger.GetNotes())
            strNotes += CString(note.GetWord()) + ":" + note.m_strRecord + " ";
        EXPECT_EQ(strNotes, row.m_pNotes);
    }
}

TEST_F(DriverTest, FilesOfDatasetsAreNamedInTheFolderOfTheGivenName)
{
    std::filesystem::create_directory(m_Folder / "sub.d");
    EXPECT_EQ(Export(false, MakeJobOf({"Übersicht Nord"}), m_Folder / "sub.d/base.csv", kWriteSima), IE_OK);
    EXPECT_TRUE(std::filesystem::exists(m_Folder / "sub.d/Übersicht Nord.sim"));
}

/// Two hundred ways out and back in both forms, eight at a time, on jobs of their own.
TEST_F(DriverTest, ManyRunsSideBySide)
{
    const auto worker = [this](int nWorker) {
        for (int i = 0; i < 25; ++i) {
            const int nRun = nWorker * 25 + i;
            const CString strFile = m_Folder / ("file" + std::to_string(nRun));
            const bool bSima = nRun % 3 == 0;
            CIEMessageWindow window;
            CIELedger ledger;
            auto pJob = MakeJobOf({"A9", "B5"});
            SetLayout(*pJob, "name,north,east,height,codes", u',', true);
            pJob->SetObserver(&ledger);
            ChangeSettings(*pJob, [&](TIESettings& settings) {
                settings.m_hWnd = &window;
                settings.m_bSingleFile = true;
            });
            EXPECT_EQ(Export(nRun % 2 == 0, std::move(pJob), strFile, bSima ? kWriteSima : kDelimited), IE_OK);
            CIEData read;
            ChangeSettings(read, [&](TIESettings& settings) { settings.m_hWnd = &window; });
            EXPECT_EQ(Import(nRun % 2 != 0, &read, strFile, bSima ? kReadSima : kDelimited), IE_OK);
            EXPECT_EQ(read.GetNumberOfObjectsInAllDatasets(), 14);
            for (const char* pName : {"EXPORT_DATA_FINISHED", "IMPORT_DATA_FINISHED"}) {
                const std::optional<TIEMessage> message = window.Get();
                ASSERT_TRUE(message);
                EXPECT_EQ(Platform::GetMessageName(message->m_nMessage), pName);
                EXPECT_EQ(message->m_nLParam, IE_OK);
            }
        }
    };
    std::vector<std::thread> workers;
    for (int i = 0; i < 8; ++i)
        workers.emplace_back(worker, i);
    for (std::thread& thread : workers)
        thread.join();
}

} // namespace

TEST(Exports, ACodeWithoutADescriptionIsOneWithoutAName)
{
    int nWritten = 0;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (!row.IsBuilt() || row.m_eDirection != EIEDirection::Export)
            continue;
        const CTempFolder folder;
        auto pJob = std::make_unique<CIEData>();
        CIELedger ledger;
        pJob->SetObserver(&ledger); // notes look at codes too
        ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
        CIECodeValues code(nullptr);
        code.AddAttr("value");
        code.AddCodeString("1");
        CIEDataset& dataset = *pJob->GetCurDataset(true);
        AddPoint(dataset, "P1").AddCode(code);
        AddLine<CIEPolyLine>(dataset, "L1", {{1, 2, 3}, {4, 5, 6}}).AddCode(code);
        nWritten +=
            ExportInTheSameThread(pJob.release(), folder / "out", static_cast<EExportType>(row.m_nCode)) == IE_OK;
    }
    EXPECT_GT(nWritten, 15); // not those that want other objects
}
