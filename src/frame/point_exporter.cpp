#include "alidade/frame/point_exporter.h"

#include "alidade/vellumlib/utils.h"

CIEPointExporter::~CIEPointExporter()
{
    // a copy of this exporter may still be writing
    if (m_pFile.use_count() == 1)
        Close();
}

int CIEPointExporter::CountObjects() const
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    return pDataset ? pDataset->GetNumberOfElements(-1, 2, false, false) : 0;
}

int CIEPointExporter::GetNumberOfSteps()
{
    constexpr int kFramingSteps = 2;
    const bool bAll = m_pData->GetSettings().m_bSingleFile;
    return (bAll ? m_pData->GetNumberOfObjectsInAllDatasets() : CountObjects()) + kFramingSteps;
}

bool CIEPointExporter::SingleStep()
{
    if (m_nStep == -1)
        WriteHeader();
    ++m_nStep;
    if (m_nStep < 0)
        return OpenFile();
    const bool bAll = m_pData->GetSettings().m_bSingleFile;
    const int nCurrent = m_pData->GetCurDatasetID();
    if (bAll && m_nStep == CountObjects() && nCurrent != m_pData->GetNumberOfDatasets() - 1) {
        m_nStep = 0;
        m_pData->SetCurDataset(nCurrent + 1);
    }
    if (m_nStep >= CountObjects()) {
        WriteFooter();
        return CloseFile();
    }
    return ExportObject(m_nStep);
}

bool CIEPointExporter::OpenFile()
{
    auto pFile = std::make_shared<CIETextWriter>();
    if (!pFile->Create(m_strFileName, m_pData->GetSettings().m_strWriteEncoding))
        return false;
    m_pFile = std::move(pFile);
    m_pData->AddFileNameToExported(m_strFileName);
    return true;
}

bool CIEPointExporter::ExportObject(int nIndex)
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(nIndex) : nullptr;
    if (!pObject)
        return true;
    NoteLosses(*pObject);
    switch (pObject->GetType()) {
    case EIEObjectsType::DesignPoint:
    case EIEObjectsType::PTLPoint:
    case EIEObjectsType::GPSPosition:
        return WriteStation(pObject->GetStation(0), pObject);
    case EIEObjectsType::PolyLine:
        return WriteAllStations(*pObject);
    case EIEObjectsType::Polygon:
        return WriteAllStations(*pObject) && WriteStation(pObject->GetStation(0), nullptr);
    case EIEObjectsType::SheetPoint:
    case EIEObjectsType::Arc:
    case EIEObjectsType::Composite:
        break;
    }
    return true;
}

bool CIEPointExporter::WriteAllStations(const CIEObject& object)
{
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (!WriteStation(pStation, &object))
            return false;
    }
    return true;
}

void CIEPointExporter::NoteBytes(std::string_view line, bool bStart, const CString& strName) const
{
    constexpr std::string_view kMark = "\uFEFF";
    if (line.find('\0') != std::string_view::npos)
        Note(TIENote::Changed, EIENote::LineZeroByte, strName,
             "it holds a zero byte, by which a reader may take the file for 16-bit text");
    if (bStart && line.starts_with(kMark))
        Note(TIENote::Changed, EIENote::LineFileStart, strName,
             "at the start of the file, its text is a byte order mark to the reader");
}

bool CIEPointExporter::CloseFile()
{
    Close();
    return false;
}

void CIEPointExporter::Close()
{
    if (!m_pFile)
        return;
    if (!m_pFile->Close())
        Note(TIENote::LeftOut, EIENote::FileWriteFailed, {}, "the file could not be written to its end");
    if (const std::int64_t nReplaced = m_pFile->GetReplacedCharacters())
        Note(TIENote::Changed, EIENote::FileEncoding, {},
             IEUtils::IntToString(nReplaced) + " characters aren't in " + m_pData->GetSettings().m_strWriteEncoding +
                 " and became \"?\"");
    m_pFile.reset();
}

bool CIEPointExporter::WriteFooter()
{
    return true;
}
