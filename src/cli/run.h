// One import or export through the library's entries, on a thread of its own.
#pragma once

#include "alidade/vellumlib/data.h"
#include "cli/forms.h"
#include "cli/staging.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace Cli {

/// Listens to a run: counts its notes, and knows how far it is.
class CWatch : public IIETransferObserver {
public:
    /// Paths in the staging folder (not owned) are told as the places where the files will be.
    explicit CWatch(const CStaging* pStaging = nullptr) : m_pStaging(pStaging) {}

    void OnProgress(std::int64_t nDone, std::int64_t nTotal) override;
    void OnNote(const TIENote& note) override;

    /// While the run goes, from any thread: 0 to 100, or -1 if it isn't known.
    [[nodiscard]] int GetPercent() const;
    /// Only when the run has ended.
    [[nodiscard]] const CIELedger& GetLedger() const { return m_Ledger; }

private:
    const CStaging* m_pStaging;
    CIELedger m_Ledger;
    std::atomic<std::int64_t> m_nDone{0};
    std::atomic<std::int64_t> m_nTotal{0};
};

/// Reads a file into the job. With `bProgress` a bar is drawn on standard error, if that is a terminal. `strProblem`
/// tells what is wrong with a job document.
EIEResult RunImport(CIEData& job, const std::string& strFile, const TForm& form, CWatch& watch, bool bProgress,
                    std::string& strProblem);

/// Writes a job to a file in the staging folder, or to one for each dataset, as the job's settings tell. The job is
/// gone afterwards.
EIEResult RunExport(std::unique_ptr<CIEData> pJob, const std::string& strFile, const TForm& form, CWatch& watch,
                    bool bProgress);

} // namespace Cli
