#include "cli/run.h"

#include "alidade/jobfile/job_file.h"
#include "alidade/platform/messages.h"
#include "alidade/transfer/entries.h"
#include "cli/stop.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <unistd.h>

namespace {

using namespace Cli;

/// A line on the terminal that is drawn over and over, and wiped at the end.
class CProgressBar {
public:
    CProgressBar(std::string strTitle, bool bWanted)
        : m_strTitle(std::move(strTitle)), m_bShown(bWanted && isatty(STDERR_FILENO) == 1)
    {
    }
    ~CProgressBar()
    {
        if (m_bShown)
            (void)std::fputs("\r\033[K", stderr); // past the filter
    }
    CProgressBar(const CProgressBar&) = delete;
    CProgressBar& operator=(const CProgressBar&) = delete;

    void Draw(int nPercent) const
    {
        constexpr int kWidth = 40;
        if (!m_bShown || nPercent < 0)
            return;
        const int nFilled = nPercent * kWidth / 100;
        (void)std::fputs(
            fmt::format("\r{} [{:#<{}}{:.<{}}] {:3} %", m_strTitle, "", nFilled, "", kWidth - nFilled, nPercent)
                .c_str(),
            stderr);
    }

private:
    std::string m_strTitle;
    bool m_bShown;
};

/// Waits for the finishing message, which carries the result, and for the thread behind it.
EIEResult WaitForEnd(const std::unique_ptr<CIEThread>& pThread, CIEMessageWindow& window, const char* pMessage,
                     const CWatch& watch, const CProgressBar& bar)
{
    constexpr std::int64_t kLookEvery = 100; // milliseconds
    const std::uint32_t nFinished = Platform::RegisterMessage(pMessage);
    std::optional<EIEResult> result;
    while (!result) {
        // looked at ahead of the wait: what a thread that has ended posted is there by now
        const bool bRunning = pThread->IsRunning();
        const std::optional<TIEMessage> message = window.Wait(bRunning ? kLookEvery : 0);
        if (message && message->m_nMessage == nFinished)
            result = static_cast<EIEResult>(message->m_nLParam);
        else if (!message && !bRunning)
            result = static_cast<EIEResult>(pThread->GetExitCode());
        bar.Draw(watch.GetPercent());
    }
    (void)pThread->Wait();
    return *result;
}

void SetWindow(CIEData& job, HWND hWnd)
{
    TIESettings settings = job.GetCopyOfSettings();
    settings.m_hWnd = hWnd;
    job.SetSettings(std::move(settings));
}

EIEResult ReadJob(CIEData& job, const std::string& strFile, std::string& strProblem)
{
    TIEJobFileError error;
    const EIEResult eResult = CIEJobFile::Read(job, strFile, &error);
    if (eResult != IE_OK && eResult != IE_STOPPED)
        strProblem = error.m_strPlace.empty() ? error.m_strReason : error.m_strPlace + ": " + error.m_strReason;
    return eResult == IE_OK && IsStopAsked() ? IE_STOPPED : eResult;
}

} // namespace

namespace Cli {

void CWatch::OnProgress(std::int64_t nDone, std::int64_t nTotal)
{
    m_nTotal = nTotal;
    m_nDone = nDone;
}

void CWatch::OnNote(const TIENote& note)
{
    if (!m_pStaging) {
        m_Ledger.OnNote(note);
        return;
    }
    TIENote moved = note;
    moved.m_strFile = m_pStaging->ToTarget(note.m_strFile);
    m_Ledger.OnNote(moved);
}

int CWatch::GetPercent() const
{
    const std::int64_t nTotal = m_nTotal;
    const std::int64_t nDone = m_nDone;
    if (nTotal <= 0)
        return -1;
    return static_cast<int>(100.0 * static_cast<double>(std::clamp<std::int64_t>(nDone, 0, nTotal)) /
                            static_cast<double>(nTotal));
}

EIEResult RunImport(CIEData& job, const std::string& strFile, const TForm& form, CWatch& watch, bool bProgress,
                    std::string& strProblem)
{
    job.SetObserver(&watch);
    EIEResult eResult = IE_NO_JOB;
    if (form.IsJob()) {
        eResult = ReadJob(job, strFile, strProblem);
    } else {
        const CProgressBar bar("reading", bProgress);
        CIEMessageWindow window;
        SetWindow(job, &window);
        const std::unique_ptr<CIEThread> pThread(StartImportInSeparateThread(&job, strFile, form.m_pRow->m_nCode));
        eResult = pThread ? WaitForEnd(pThread, window, "IMPORT_DATA_FINISHED", watch, bar)
                          : ImportInTheSameThread(&job, strFile, form.m_pRow->m_nCode);
        SetWindow(job, nullptr);
    }
    job.SetObserver(nullptr);
    return eResult;
}

EIEResult RunExport(std::unique_ptr<CIEData> pJob, const std::string& strFile, const TForm& form, CWatch& watch,
                    bool bProgress)
{
    pJob->SetObserver(&watch);
    if (form.IsJob()) {
        const EIEResult eResult = CIEJobFile::Write(*pJob, strFile);
        return eResult == IE_OK && IsStopAsked() ? IE_STOPPED : eResult;
    }
    const CProgressBar bar("writing", bProgress);
    CIEMessageWindow window;
    SetWindow(*pJob, &window);
    const auto eCode = static_cast<EExportType>(form.m_pRow->m_nCode);
    CIEData* const pRaw = pJob.get();
    const std::unique_ptr<CIEThread> pThread(StartExportInSeparateThread(pRaw, strFile, eCode));
    (void)pJob.release(); // the run deletes it, whichever thread it is on
    return pThread ? WaitForEnd(pThread, window, "EXPORT_DATA_FINISHED", watch, bar)
                   : ExportInTheSameThread(pRaw, strFile, eCode);
}

} // namespace Cli
