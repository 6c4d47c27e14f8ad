#include "alidade/formats/dxf/export/core_dxf_exporter.h"

#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_notes.h"
#include "formats/dxf/export/dxf_output.h"

#include <algorithm>

CCoreDXFExporter::CCoreDXFExporter(CIEData* pData, const CString& strFileName) : CIEExporter(pData, strFileName) {}

CCoreDXFExporter::~CCoreDXFExporter() = default;

CString CCoreDXFExporter::CreateCorrectDXFName(std::string_view name, bool bCorrect)
{
    constexpr std::string_view kForbidden = " \t\r\n!.,?%*@#$^&'\"\\/|~;[]{}()<>`+=";
    if (!bCorrect)
        return CString(name);
    CString strCorrect(name.empty() ? "0" : name);
    for (std::size_t n = 0; (n = strCorrect.find_first_of(kForbidden, n)) != CString::npos; ++n)
        strCorrect[n] = '_';
    return strCorrect;
}

CIEDataset* CCoreDXFExporter::GetDataset() const
{
    return m_bStarted ? m_pDataset : m_pData->GetCurDataset(false);
}

bool CCoreDXFExporter::HasCodes() const
{
    if (m_bStarted)
        return m_bCodes;
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    return pDataset && pDataset->IsCodesExist();
}

bool CCoreDXFExporter::WantsObjects() const
{
    const TIESettings& settings = m_pData->GetSettings();
    return settings.HasDataType(EIEDataType::Points) || settings.HasDataType(EIEDataType::Lines) ||
           settings.HasDataType(EIEDataType::Polygons);
}

bool CCoreDXFExporter::WantsSurfaces() const
{
    return m_pData->GetSettings().HasDataType(EIEDataType::Surfaces);
}

int CCoreDXFExporter::GetNumberObjectsInTheDataset()
{
    const CIEDataset* const pDataset = GetDataset();
    if (!pDataset)
        return 0;
    return (WantsObjects() ? pDataset->GetNumberOfElements(-1, 2, false, false) : 0) +
           (WantsSurfaces() ? pDataset->GetNumberOfSurfaces() : 0);
}

bool CCoreDXFExporter::StartExport()
{
    auto pOut = std::make_unique<TDXFOutput>();
    if (!pOut->Create(m_strFileName))
        return false;
    m_pOut = std::move(pOut);
    m_pData->AddFileNameToExported(m_strFileName);

    m_pDataset = m_pData->GetCurDataset(false);
    m_bCodes = m_pDataset && m_pDataset->IsCodesExist();
    m_bStarted = true;
    m_Header = m_pDataset ? *m_pDataset->GetHeaderInfo() : CHeaderInfo();
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    m_eUnits = info.GetDistUnits();
    m_ePlaneUnits = info.GetCSType() != TIEJobInfo::Geographic ? m_eUnits : EDIST_UNITS::None;
    m_dAttributeHeight = ToDrawing(m_Header.CalcAutoTextSize());
    m_dTextHeight = m_Header.GetTextHeight() != 0.0 ? m_Header.GetTextHeight() : m_dAttributeHeight;
    m_dTextWidthFactor = m_Header.GetTextWidthFactor();
    BeginNotes();

    const bool bWritten = GenerateHeader(m_pDataset ? &m_Header : nullptr) && GenerateTables() &&
                          (m_bCodes ? GenerateBlocksStart() : GenerateEntitiesStart());
    if (!bWritten)
        CloseOutput();
    return bWritten;
}

double CCoreDXFExporter::ToDrawing(double dSize) const
{
    return IEUtils::FromMetersFactor(dSize, m_ePlaneUnits);
}

void CCoreDXFExporter::BeginNotes()
{
    if (!m_pData->GetObserver())
        return;
    m_pNotes = std::make_unique<CDXFNotes>(*m_pData, m_strFileName, m_bCodes);
    m_pNotes->NoteRun(m_pDataset, WantsObjects(), WantsSurfaces());
}

bool CCoreDXFExporter::MiddleOfExport()
{
    return !m_bCodes || (GenerateBlocksEnd() && GenerateEntitiesStart());
}

bool CCoreDXFExporter::EndExport()
{
    const bool bWritten = m_pOut && m_pOut->WriteString(0, "ENDSEC") && m_pOut->WriteString(0, "EOF");
    return CloseOutput() && bWritten;
}

bool CCoreDXFExporter::CloseOutput()
{
    if (!m_pOut)
        return true;
    const bool bWritten = m_pOut->Close();
    m_pOut.reset();
    if (!bWritten)
        Note(TIENote::LeftOut, EIENote::FileWriteFailed, {}, "the file could not be written to its end");
    return bWritten;
}

bool CCoreDXFExporter::GenerateBlocksStart()
{
    if (!m_bCodes)
        return true;
    m_bInBlocks = true;
    return m_pOut->WriteString(0, "SECTION") && m_pOut->WriteString(2, "BLOCKS");
}

bool CCoreDXFExporter::GenerateBlocksEnd()
{
    m_bInBlocks = false;
    return m_pOut->WriteString(0, "ENDSEC");
}

bool CCoreDXFExporter::GenerateEntitiesStart()
{
    return m_pOut->WriteString(0, "SECTION") && m_pOut->WriteString(2, "ENTITIES");
}

bool CCoreDXFExporter::ExportEntitiy(CIEObject* pObject)
{
    if (!pObject || !m_pOut)
        return pObject == nullptr;
    const CIEObject& object = *pObject;
    const bool bFirstPass = !m_bCodes || m_bInBlocks;
    if (m_pNotes && bFirstPass) {
        NoteLosses(object);
        m_pNotes->NoteObject(object);
    }
    if (!object.GetStation(0))
        return true;
    if (!m_bCodes)
        return GenerateEntity(object);
    if (m_bInBlocks)
        return GenerateBlockStart(object) && GenerateEntity(object) && GenerateAttDef(object) && GenerateBlockEnd();
    return GenerateInsert(object) && GenerateAttrib(object) && m_pOut->WriteString(0, "SEQEND");
}

int CCoreDXFExporter::GetColorIndex(TIEColor color)
{
    const auto [place, bNew] = m_ColorIndexes.try_emplace(color, 0);
    if (bNew) {
        place->second = m_AutoCADUtils.ConvertRGBTo256(color);
        if (m_pNotes)
            m_pNotes->NoteColor(color, place->second);
    }
    return place->second;
}
