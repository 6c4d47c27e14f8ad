#include "alidade/frame/exporter.h"

#include "alidade/frame/format_row.h"
#include "frame/losses.h"

#include <algorithm>

EIEResult CIEExporter::Export()
{
    constexpr int kStepsBetweenReports = 1000;
    IIETransferObserver* const pObserver = m_pData->GetObserver();
    const int nFirst = m_pData->GetCurDatasetID();
    int nSteps = 0;
    while (SingleStep() && !CIEData::m_bStopProcess) {
        if (pObserver && ++nSteps % kStepsBetweenReports == 0)
            pObserver->OnProgress(std::min(nSteps, GetNumberOfSteps()), GetNumberOfSteps());
    }
    if (CIEData::m_bStopProcess)
        return IE_STOPPED;
    if (m_nStep < 0)
        return IE_CANNOT_OPEN_FILE;
    if (pObserver) {
        NoteDatasets(nFirst);
        pObserver->OnProgress(GetNumberOfSteps(), GetNumberOfSteps());
    }
    return GetResult();
}

/// A run over all datasets goes from the one that was current on, and may end ahead of the last.
void CIEExporter::NoteDatasets(int nFirst) const
{
    const bool bAll = m_pData->GetSettings().m_bSingleFile;
    const int nLast = m_pData->GetCurDatasetID();
    if (bAll && nLast > nFirst && !(m_nCarries & CARRIES_DATASETS))
        Note(TIENote::Changed, EIENote::JobDatasets, {}, "the form has no datasets; all of them read back as one");
    for (int i = 0; const CIEDataset* const pDataset = m_pData->GetDatasetAt(i); ++i) {
        if (bAll ? i >= nFirst && i <= nLast : i == nLast)
            Losses::NoteDataset(*m_pData, m_strFileName, *pDataset, m_nCarries);
        else if (bAll)
            Losses::NoteUnreached(*m_pData, m_strFileName, *pDataset,
                                  i < nFirst ? "the run began behind its dataset \"" + pDataset->GetName() + "\""
                                             : "the file ended ahead of its dataset \"" + pDataset->GetName() + "\"");
    }
}

void CIEExporter::NoteLosses(const CIEObject& object) const
{
    Losses::NoteObject(*m_pData, m_strFileName, object, m_nCarries);
}
