#include "frame/exporter.h"

EIEResult CIEExporter::Export()
{
    constexpr int kStepsBetweenReports = 1000;
    IIETransferObserver* const pObserver = m_pData->GetObserver();
    int nSteps = 0;
    while (SingleStep() && !CIEData::m_bStopProcess) {
        if (pObserver && ++nSteps % kStepsBetweenReports == 0)
            pObserver->OnProgress(nSteps, GetNumberOfSteps());
    }
    if (CIEData::m_bStopProcess)
        return IE_STOPPED;
    if (m_nStep < 0)
        return IE_CANNOT_OPEN_FILE;
    if (pObserver) {
        NoteJobLosses();
        pObserver->OnProgress(GetNumberOfSteps(), GetNumberOfSteps());
    }
    return GetResult();
}
