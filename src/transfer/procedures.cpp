#include "transfer/procedures.h"

#include "alidade/frame/exporter.h"
#include "alidade/frame/importer.h"
#include "alidade/platform/file.h"
#include "alidade/platform/messages.h"
#include "alidade/transfer/format_table.h"
#include "alidade/vellumlib/utils.h"
#include "frame/losses.h"
#include "transfer/factory.h"

#include <unordered_set>

namespace {

/// Runs a piece of work whose exceptions must not leave the library; only want of memory throws here.
template <class TWork>
EIEResult WithoutExceptions(TWork work)
{
    try {
        return work();
    } catch (...) {
        return IE_OUT_OF_MEMORY;
    }
}

void PostFinished(const CIEData& job, const char* pMessage, EIEResult eResult)
{
    try {
        const HWND hWnd = job.GetSettings().m_hWnd;
        Platform::PostToWindow(hWnd ? hWnd : Platform::BroadcastWindow(),
                               {Platform::RegisterMessage(pMessage), 0, static_cast<std::int64_t>(eResult)});
    } catch (...) {
        // what a host's callback throws must not keep the run from its end
    }
}

EIEResult ExportOne(CIEData& job, const CString& strFileName, int nCode)
{
    return WithoutExceptions([&] {
        const std::unique_ptr<CIEExporter> pExporter = CreateExporter(&job, strFileName, nCode);
        return pExporter ? pExporter->Export() : IE_NOT_SUPPORTED;
    });
}

/// One file for each dataset, unless the host wants one file, or the first dataset has nothing to name files for, or
/// neither points nor lines are asked for.
bool IsPerDataset(const CIEData& job)
{
    const TIESettings& settings = job.GetSettings();
    const CIEDataset* const pFirst = job.GetDatasetAt(0);
    return !settings.m_bSingleFile && pFirst && pFirst->GetNumberOfElements(-1, 2, false, false) > 0 &&
           (settings.HasDataType(EIEDataType::Points) || settings.HasDataType(EIEDataType::Lines));
}

void NoteDataset(const CIEData& job, const CString& strFile, const CString& strDataset, CString strReason)
{
    job.Note(TIENote::LeftOut, EIENote::DatasetLeftOut, strFile, {}, strDataset, std::move(strReason));
}

EIEResult ExportDatasets(CIEData& job, const CString& strFileName, int nCode)
{
    EIEResult eAggregate = IE_NOTHING_DONE;
    std::unordered_set<CString> files;
    for (int i = 0; i < job.GetNumberOfDatasets(); ++i) {
        const CIEDataset* const pDataset = job.GetDatasetAt(i);
        if (!pDataset)
            continue;
        if (!IEUtils::IsValidFileName(pDataset->GetName())) {
            NoteDataset(job, strFileName, pDataset->GetName(), "the dataset's name can't name a file");
            eAggregate = IE_BAD_DATASET_NAME;
            continue;
        }
        const CString strFile =
            IEUtils::CreateFileName(strFileName, pDataset->GetName(), true) + CIEData::GetExtForExportType(nCode);
        if (!files.insert(strFile).second)
            NoteDataset(job, strFile, pDataset->GetName(),
                        "a dataset ahead has the same name, and this one's file replaces its file");
        job.SetCurDataset(i);
        const EIEResult eResult = ExportOne(job, strFile, nCode);
        if (eResult == IE_STOPPED && eAggregate > 0)
            NoteDataset(job, strFile, pDataset->GetName(), "the run was stopped ahead of the dataset's end");
        else if (eResult < 0 && eResult != IE_STOPPED)
            NoteDataset(job, strFile, pDataset->GetName(), "the dataset's file could not be written");
        if (eAggregate < 0 && (eResult > 0 || eResult == IE_STOPPED))
            eAggregate = eResult;
        if (eAggregate == IE_STOPPED)
            break;
    }
    return eAggregate;
}

/// One run for the whole job. Unless it writes all datasets into one file, it writes the current one.
EIEResult ExportWhole(CIEData& job, const CString& strFileName, int nCode)
{
    const EIEResult eResult = ExportOne(job, strFileName, nCode);
    if (eResult < 0 || job.GetSettings().m_bSingleFile)
        return eResult;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        if (i != job.GetCurDatasetID())
            Losses::NoteUnreached(job, strFileName, *pDataset,
                                  "the run wrote the current dataset alone, and not \"" + pDataset->GetName() + "\"");
    }
    return eResult;
}

EIEResult Export(CIEData& job, const CString& strFileName, int nCode)
{
    const EIEResult eResult =
        IsPerDataset(job) ? ExportDatasets(job, strFileName, nCode) : ExportWhole(job, strFileName, nCode);
    if (const TIEFormatRow* const pRow = CIEFormatTable::Find(EIEDirection::Export, nCode); pRow && eResult > 0)
        Losses::NoteJob(job, strFileName, pRow->m_nCarries);
    return eResult;
}

} // namespace

EIEResult ImportProc(std::unique_ptr<TIEThreadContext> pContext)
{
    if (!pContext || !pContext->m_pData)
        return IE_NO_JOB;
    CIEData& job = *pContext->m_pData;
    EIEResult eResult = WithoutExceptions([&] {
        const std::unique_ptr<CIEImporter> pImporter = CreateImporter(&job, pContext->m_strFileName, pContext->m_nCode);
        return pImporter ? pImporter->Import() : IE_NOT_SUPPORTED;
    });
    const EIEResult eNamed = WithoutExceptions([&] {
        job.SetObjectNamesFromCodes();
        return IE_OK;
    });
    if (eNamed != IE_OK)
        eResult = eNamed;
    PostFinished(job, "IMPORT_DATA_FINISHED", eResult);
    return eResult;
}

EIEResult ExportProc(std::unique_ptr<TIEThreadContext> pContext)
{
    if (!pContext || !pContext->m_pData)
        return IE_NO_JOB;
    const std::unique_ptr<CIEData> pJob(pContext->m_pData);
    const EIEResult eResult =
        WithoutExceptions([&] { return Export(*pJob, pContext->m_strFileName, pContext->m_nCode); });
    if (eResult == IE_STOPPED) {
        // a file that can't be deleted stays, and the next one is tried
        for (const CString& strFile : pJob->GetCreatedFileNames()) {
            if (!strFile.empty())
                (void)Platform::RemoveFile(strFile);
        }
    }
    PostFinished(*pJob, "EXPORT_DATA_FINISHED", eResult);
    return eResult;
}
