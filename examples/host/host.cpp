// A small host: it makes a job, writes it on a thread of its own, stops a second run, and prints the finishing
// messages.
//
//   host [FOLDER]
//
// The files go into FOLDER, or into the current folder. Exit status 0 if both runs ended as they should.

#include "alidade/platform/file.h"
#include "alidade/transfer/entries.h"
#include "alidade/transfer/format_table.h"

#include <cstdio>
#include <memory>
#include <string>

namespace {

/// A ring of points around a pond, and the pond's edge as a line. Coordinates are metres.
std::unique_ptr<CIEData> MakeJob(CIEMessageWindow& window, int nPoints)
{
    auto pJob = std::make_unique<CIEData>();
    pJob->GetJobInfo()->m_strJobName = "Pond";
    TIESettings settings;
    settings.m_bSingleFile = true;
    settings.m_hWnd = &window;
    pJob->SetSettings(std::move(settings));

    CIECodeDescription* const pTree = pJob->AddCodeToIEDataDictionary(std::make_unique<CIECodeDescription>("TREE"));
    CIEDataset* const pDataset = pJob->AddDataset(std::make_unique<CIEDataset>("Survey"));
    auto pEdge = std::make_unique<CIEPolyLine>();
    pEdge->SetName("EDGE");
    for (int i = 0; i < nPoints; ++i) {
        CIEStation station(5000.0 + 0.5 * i, 2000.0 + 0.25 * (i % 8), 101.5);
        pEdge->AddStation(station);
        station.SetName("T" + std::to_string(i + 1));
        auto pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
        pPoint->AddCode(CIECodeValues(pTree));
        pDataset->Add(std::move(pPoint));
    }
    pDataset->Add(std::move(pEdge));
    return pJob;
}

/// Waits for the finishing message and prints it. The result that it carries.
int PrintFinish(CIEMessageWindow& window, const char* pRun)
{
    const std::optional<TIEMessage> message = window.Wait();
    const std::string strName = Platform::GetMessageName(message->m_nMessage);
    std::printf("%s: %s, result %d\n", pRun, strName.c_str(), static_cast<int>(message->m_nLParam));
    return static_cast<int>(message->m_nLParam);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string strFolder = argc > 1 ? argv[1] : ".";
    const TIEFormatRow* const pRow = CIEFormatTable::FindByKey(EIEDirection::Export, "sima");
    const auto eSima = static_cast<EExportType>(pRow->m_nCode);

    // The window and the ledger are the host's and outlive the runs; an export takes its job and deletes it.
    CIEMessageWindow window;
    CIELedger ledger;
    std::unique_ptr<CIEData> pJob = MakeJob(window, 12);
    pJob->SetObserver(&ledger);
    std::unique_ptr<CIEThread> pThread(StartExportInSeparateThread(pJob.get(), strFolder + "/pond.sim", eSima));
    if (!pThread)
        return 1; // no thread, and the job is still ours
    (void)pJob.release();
    const int nFirst = PrintFinish(window, "first run");
    pThread->Wait();
    for (const TIENote& note : ledger.GetNotes())
        std::printf("  not in the file: %s: %s\n", note.m_strRecord.c_str(), note.m_strReason.c_str());

    // A stopped run deletes the files that it has made.
    CIEData::m_bStopProcess = true;
    pJob = MakeJob(window, 100000);
    pThread.reset(StartExportInSeparateThread(pJob.get(), strFolder + "/stopped.sim", eSima));
    if (!pThread)
        return 1;
    (void)pJob.release();
    const int nSecond = PrintFinish(window, "second run");
    pThread->Wait();
    CIEData::m_bStopProcess = false;
    return nFirst == IE_OK && nSecond == IE_STOPPED && !Platform::FileExists(strFolder + "/stopped.sim") ? 0 : 1;
}
