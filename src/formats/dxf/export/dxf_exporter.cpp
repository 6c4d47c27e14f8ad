#include "alidade/formats/dxf/export/dxf_exporter.h"

CDXFExporter::CDXFExporter(CIEData* pData, const CString& strFileName) : CCoreDXFExporter(pData, strFileName)
{
    SetCarries(kDxfWriteCarries); // for a host that makes it without the factory
}

int CDXFExporter::GetNumberOfSteps()
{
    constexpr int kFramingSteps = 2;
    return GetNumberObjectsInTheDataset() * (HasCodes() ? 2 : 1) + kFramingSteps;
}

bool CDXFExporter::SingleStep()
{
    ++m_nStep;
    if (m_nStep < 0)
        return StartExport();
    const bool bMore = m_pOut && (HasCodes() ? StepWithCodes(m_nStep) : StepWithoutCodes(m_nStep));
    if (!bMore)
        CloseOutput();
    return bMore;
}

bool CDXFExporter::StepWithoutCodes(int nStep)
{
    const CIEDataset* const pDataset = GetDataset();
    const int nSurfaces = pDataset && WantsSurfaces() ? pDataset->GetNumberOfSurfaces() : 0;
    if (nStep < nSurfaces)
        return ExportObject(nStep, EIEDataType::Surfaces);
    const int nObjects = pDataset && WantsObjects() ? pDataset->GetNumberOfElements(-1, 2, false, false) : 0;
    return nStep - nSurfaces < nObjects ? ExportObject(nStep - nSurfaces, EIEDataType::Points) : Finish();
}

bool CDXFExporter::StepWithCodes(int nStep)
{
    const CIEDataset& dataset = *GetDataset();
    const int nObjects = dataset.GetNumberOfElements(-1, 2, false, false);
    if (nStep == nObjects && !MiddleOfExport())
        return false;
    if (nStep < 2 * nObjects)
        return !WantsObjects() || ExportObject(nStep % nObjects, EIEDataType::Points);
    const int nSurface = nStep - 2 * nObjects;
    return WantsSurfaces() && nSurface < dataset.GetNumberOfSurfaces() ? ExportObject(nSurface, EIEDataType::Surfaces)
                                                                       : Finish();
}

bool CDXFExporter::Finish()
{
    EndExport();
    return false;
}

bool CDXFExporter::ExportObject(int nIndex, EIEDataType eType)
{
    const CIEDataset* const pDataset = GetDataset();
    if (!pDataset)
        return true;
    if (eType != EIEDataType::Surfaces) {
        CIEObject* const pObject = pDataset->GetObjectAt(nIndex);
        return !pObject || ExportEntitiy(pObject);
    }
    const CIESurface* const pSurface = pDataset->GetSurfaceAt(nIndex);
    bool bWritten = true;
    for (int i = 0; pSurface && bWritten && i < pSurface->GetNumberOfTriangles(); ++i)
        bWritten = ExportSurface(pSurface, pSurface->GetTriangleAt(i));
    return bWritten;
}
