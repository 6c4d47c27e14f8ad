#include "cli/delivery.h"

#include "alidade/vellumlib/utils.h"
#include "cli/report.h"
#include "cli/stop.h"

#include <filesystem>
#include <unordered_map>
#include <unordered_set>

namespace {

using namespace Cli;

bool IsEmpty(const CIEDataset& dataset)
{
    return dataset.GetNumberOfElements(-1, 2, false, false) == 0 && dataset.GetNumberOfSurfaces() == 0 &&
           dataset.GetNumberOfAlignments() == 0;
}

/// Two datasets of one name would write one file, and the second would replace the first. Gives up when a stop is asked
/// for; the run then ends ahead of its first file.
void MakeNamesUnique(CIEData& job, const CMessages& messages)
{
    std::unordered_set<CString> names;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i)
        names.insert(pDataset->GetName());
    std::unordered_map<CString, int> next; // the number to try for a name that was met already
    std::int64_t nChanged = 0;
    std::string first;
    for (int i = 0; CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        if (IsStopAsked())
            return;
        const CString strName = pDataset->GetName();
        const auto [place, bNew] = next.try_emplace(strName, 2);
        if (bNew)
            continue;
        CString strNew;
        do
            strNew = fmt::format("{} ({})", strName, place->second++);
        while (!names.insert(strNew).second);
        next.try_emplace(strNew, 2);
        if (++nChanged == 1)
            first = fmt::format("two datasets are named \"{}\"; the second one goes out as \"{}\"", strName, strNew);
        pDataset->SetName(strNew);
    }
    if (nChanged > 0)
        messages.Warn(nChanged == 1 ? first : fmt::format("{}; {} more get such names", first, nChanged - 1));
}

/// Datasets whose name can't name a file; they are skipped, and the result tells so.
int CountBadNames(const CIEData& job)
{
    int nCount = 0;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i)
        nCount += IEUtils::IsValidFileName(pDataset->GetName()) ? 0 : 1;
    return nCount;
}

/// Whether an export would make a file for each dataset, as it was asked to.
bool CanSplit(const CIEData& job)
{
    const CIEDataset* const pFirst = job.GetDatasetAt(0);
    return pFirst && pFirst->GetNumberOfElements(-1, 2, false, false) > 0;
}

void SetSingleFile(CIEData& job, bool bSingle)
{
    TIESettings settings = job.GetCopyOfSettings();
    settings.m_bSingleFile = bSingle;
    // what isn't wanted has been taken out of the job by now, and without points or lines nothing would be split
    if (!bSingle)
        settings.SetDataType(EIEDataType::Points, true);
    settings.m_pMessageBox = nullptr;
    job.SetSettings(std::move(settings));
}

std::string FindDatasetObstacle(const CIEData& job, const std::string& strFolder, const TForm& form, bool bOverwrite)
{
    const CString extension = CIEData::GetExtForExportType(form.m_pRow->m_nCode);
    std::string obstacle;
    for (int i = 0; obstacle.empty(); ++i) {
        const CIEDataset* const pDataset = job.GetDatasetAt(i);
        if (!pDataset)
            break;
        if (IEUtils::IsValidFileName(pDataset->GetName()))
            obstacle = FindObstacle(fmt::format("{}{}{}", strFolder, pDataset->GetName(), extension), bOverwrite);
    }
    return obstacle;
}

/// The result alone tells neither of a full disk nor of one file among several that couldn't be made.
EExit Judge(EIEResult eResult, const CIELedger& ledger, int nBadNames)
{
    if (IsStopAsked())
        return EExit::Stopped;
    if (ledger.GetCount(EIENote::FileWriteFailed) > 0 || ledger.GetCount(EIENote::DatasetLeftOut) > nBadNames)
        return EExit::OutputFailed;
    return ExitOfExport(eResult);
}

EExit Explain(EExit eExit, const std::string& strOut, const TForm& form, EIEResult eResult, CMessages& messages)
{
    // the folder took a new file a moment ago, so a document that couldn't be written lacked room
    if (eExit == EExit::OutputFailed && (eResult > 0 || form.IsJob()))
        return messages.Fail(eExit, strOut + ": couldn't be written to its end; nothing was left behind");
    return messages.Fail(eExit,
                         fmt::format("{} {}", strOut, ExplainExport(eExit == EExit::Stopped ? IE_STOPPED : eResult)));
}

} // namespace

namespace Cli {

void DropBlocks(CIEData& job, const std::string& strOut, CWatch& watch)
{
    const auto isInBlock = [](const CIEObject& object) { return object.GetStateType() == CIEObject::InBlock; };
    int nObjects = 0;
    for (int i = 0; CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        const int nBefore = pDataset->GetNumberOfElements(-1, 2, false, false);
        pDataset->RemoveObjectsIf(isInBlock);
        nObjects += nBefore - pDataset->GetNumberOfElements(-1, 2, false, false);
    }
    if (nObjects == 0)
        return;
    watch.OnNote({TIENote::LeftOut,
                  EIENote::JobBlocks,
                  strOut,
                  {},
                  {},
                  fmt::format("{} object{} within blocks, which show in the drawing only where a reference puts "
                              "them; those are written as objects of their own",
                              nObjects, nObjects == 1 ? "" : "s"),
                  nObjects});
}

void DropEmptyDatasets(CIEData& job, const TForm& form, const std::string& strOut, CWatch& watch,
                       const CMessages& messages)
{
    const bool bHistory = form.m_pRow && (form.m_pRow->m_nCarries & CARRIES_JOB_HISTORY);
    for (int i = job.GetNumberOfDatasets() - 1; i >= 0; --i) {
        const CIEDataset& dataset = *job.GetDatasetAt(i);
        if (!IsEmpty(dataset) || (bHistory && dataset.GetJobHistory()))
            continue;
        if (dataset.GetJobHistory()) {
            watch.OnNote({TIENote::LeftOut,
                          EIENote::DatasetJobHistory,
                          strOut,
                          {},
                          dataset.GetName(),
                          "the form doesn't hold the job history of this dataset, which has nothing else"});
        } else if (job.GetNumberOfDatasets() > 1) {
            messages.Say(fmt::format("the dataset \"{}\" is empty, and isn't written", dataset.GetName()));
        }
        job.RemoveDataset(i);
    }
    job.SetCurDataset(0);
}

std::string TargetFolder(const TConvertArguments& arguments)
{
    std::error_code ignored;
    if (arguments.m_bPerDataset && std::filesystem::is_directory(arguments.m_strOut, ignored))
        return arguments.m_strOut.ends_with('/') ? arguments.m_strOut : arguments.m_strOut + "/";
    return FolderOf(arguments.m_bPerDataset ? arguments.m_strOut : FollowLink(arguments.m_strOut));
}

TDelivery Deliver(std::unique_ptr<CIEData> pJob, const TConvertArguments& arguments, const TForm& form,
                  CStaging& staging, CWatch& watch, CMessages& messages)
{
    TDelivery delivery;
    const auto fail = [&](EExit eExit, std::string text) {
        delivery.m_eExit = messages.Fail(eExit, std::move(text));
        return delivery;
    };

    std::string strName = "dataset"; // exchanged for the names of the datasets
    int nBadNames = 0;
    if (!form.IsJob())
        SetSingleFile(*pJob, !arguments.m_bPerDataset);
    if (arguments.m_bPerDataset) {
        if (!CanSplit(*pJob))
            return fail(EExit::NotSupported, "--per-dataset needs points, lines or other objects in the first dataset");
        MakeNamesUnique(*pJob, messages);
        nBadNames = CountBadNames(*pJob);
        const std::string obstacle = FindDatasetObstacle(*pJob, TargetFolder(arguments), form, arguments.m_bOverwrite);
        if (!obstacle.empty())
            return fail(EExit::OutputFailed, obstacle);
    } else {
        const std::string target = FollowLink(arguments.m_strOut);
        strName = target.substr(FolderOf(target).size());
    }

    std::string error;
    if (!staging.Make(TargetFolder(arguments), error))
        return fail(EExit::OutputFailed, error);
    delivery.m_eResult = RunExport(std::move(pJob), staging.PathOf(strName), form, watch, arguments.m_bProgress);
    delivery.m_bRan = true;
    PrintNotes(watch.GetLedger(), messages);

    delivery.m_eExit = Judge(delivery.m_eResult, watch.GetLedger(), nBadNames);
    if (delivery.m_eExit != EExit::Done && delivery.m_eExit != EExit::Loss) {
        delivery.m_eExit = Explain(delivery.m_eExit, arguments.m_strOut, form, delivery.m_eResult, messages);
        return delivery;
    }
    if (arguments.m_bFailOnLoss && (HasLoss(watch.GetLedger()) || delivery.m_eExit == EExit::Loss))
        return fail(EExit::Loss, arguments.m_strOut + " wasn't written: --fail-on loss forbids what is told above");
    // a set's files, or those of its datasets, have names that weren't asked for one by one
    for (const std::string& name : staging.ListNames()) {
        if (!arguments.m_strReport.empty() && IsSameFile(arguments.m_strReport, staging.TargetOf(name)))
            return fail(EExit::Usage, fmt::format("--report names {}, which is a file of the output; nothing was "
                                                  "written",
                                                  staging.TargetOf(name)));
    }
    if (!staging.Deliver(arguments.m_bOverwrite, delivery.m_Files, error))
        return fail(EExit::OutputFailed, error);
    for (const std::string& file : delivery.m_Files)
        messages.Say(fmt::format("{}: written as {}", file, form.Describe()));
    if (delivery.m_eExit == EExit::Loss)
        messages.Fail(EExit::Loss, fmt::format("{} {}", arguments.m_strOut, ExplainExport(delivery.m_eResult)));
    return delivery;
}

} // namespace Cli
