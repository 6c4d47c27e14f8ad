#include "formats/points/delimited.h"

#include "alidade/frame/format_row.h"
#include "alidade/vellumlib/utils.h"
#include "frame/delimited_text.h"
#include "frame/losses.h"
#include "frame/point_importer.h"

#include <algorithm>

namespace {

bool IsPlainText(std::string_view text)
{
    for (const char c : text) {
        const bool bPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                            static_cast<unsigned char>(c) >= 0x80;
        if (!bPlain)
            return false;
    }
    return true;
}

/// Whether plain texts come back by the layout: names have a field, codes have one at the most, and the delimiter
/// is no character of theirs and keeps empty fields.
bool IsPlainLayout(const TIEAsciiFormat& format)
{
    constexpr std::u16string_view kPlainDelimiters = u",;\t|";
    const IEAsciiFields::TFields& layout = format.m_Fields;
    return kPlainDelimiters.find(format.m_cDelimiter) != std::u16string_view::npos &&
           IEAsciiFields::FindTypeInArray(IEAsciiFields::Name, layout) >= 0 &&
           std::count_if(layout.begin(), layout.end(), IEAsciiFields::IsCodes) <= 1;
}

/// Whether two codes of different dictionaries say the same.
bool AreEqual(const CIECodeValues& left, const CIECodeValues& right, bool bTypes)
{
    const CIECodeDescription& leftCode = *left.GetDescription();
    const CIECodeDescription& rightCode = *right.GetDescription();
    if (leftCode.GetName() != rightCode.GetName() || leftCode.GetSize() != rightCode.GetSize() ||
        left.GetNumberOfAttrs() != right.GetNumberOfAttrs() ||
        left.GetNumberOfCodeStrings() != right.GetNumberOfCodeStrings())
        return false;
    for (int i = 0; i < leftCode.GetSize(); ++i) {
        const CIEAttrDescription& leftAttr = *leftCode.GetAttrDescriptionAt(i);
        const CIEAttrDescription& rightAttr = *rightCode.GetAttrDescriptionAt(i);
        if (bTypes ? !(leftAttr == rightAttr) : leftAttr.GetName() != rightAttr.GetName())
            return false;
    }
    for (int i = 0; i < left.GetNumberOfAttrs(); ++i) {
        if (left.GetAttrAt(i) != right.GetAttrAt(i))
            return false;
    }
    for (int i = 0; i < left.GetNumberOfCodeStrings(); ++i) {
        if (left.GetCodeStringAt(i) != right.GetCodeStringAt(i))
            return false;
    }
    return left.GetControlCode(0) == right.GetControlCode(0) && left.GetControlCode(1) == right.GetControlCode(1);
}

bool HaveEqualCodes(const CIEObject& left, const CIEObject& right, bool bNamesOnly, bool bTypes)
{
    if (left.GetNumberOfCodes() != right.GetNumberOfCodes())
        return false;
    for (int i = 0; i < left.GetNumberOfCodes(); ++i) {
        if (bNamesOnly ? left.GetCode(i)->GetDescription()->GetName() != right.GetCode(i)->GetDescription()->GetName()
                       : !AreEqual(*left.GetCode(i), *right.GetCode(i), bTypes))
            return false;
    }
    return true;
}

bool HasTypedAttributes(const CIEDataDictionary& dictionary)
{
    for (int i = 0; const CIECodeDescription* const pCode = dictionary.GetCodeDescriptionAt(i); ++i) {
        for (int j = 0; const CIEAttrDescription* const pAttr = pCode->GetAttrDescriptionAt(j); ++j) {
            if (pAttr->GetType() != CIEAttrDescription::TEXT)
                return true;
        }
    }
    return false;
}

} // namespace

/// Reads one line as an import of the written file would, into a job of its own.
class CIEDelimitedExporter::CReader {
public:
    explicit CReader(const CIEData& job) : m_Importer(&m_Job, {})
    {
        m_Job.SetSettings(job.GetCopyOfSettings());
        *m_Job.GetJobInfo() = *job.GetJobInfo();
    }

    std::unique_ptr<CIEObject> Read(std::string_view line)
    {
        std::unique_ptr<CIEObject> pObject;
        const EIEResult eResult = m_Importer.ParseLine(line, pObject);
        return eResult == IE_OK ? std::move(pObject) : nullptr;
    }

private:
    CIEData m_Job;
    CIEPointImporter m_Importer;
};

CIEDelimitedExporter::CIEDelimitedExporter(CIEData* pData, const CString& strFileName)
    : CIEPointExporter(pData, strFileName)
{
}

CIEDelimitedExporter::~CIEDelimitedExporter() = default;

bool CIEDelimitedExporter::OpenFile()
{
    const TIECarries nCarries = CarriedByLayout();
    SetCarries(nCarries);
    if (m_pData->GetObserver()) {
        m_pReader = std::make_shared<CReader>(*m_pData);
        const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
        m_bNameField = IEAsciiFields::FindTypeInArray(IEAsciiFields::Name, format.m_Fields) >= 0;
        m_bPlainLayout = IsPlainLayout(format);
        if ((nCarries & CARRIES_ATTRIBUTES) && !m_pData->GetSettings().m_bAttrTypes &&
            HasTypedAttributes(*m_pData->GetIEDataDictionary()))
            Note(TIENote::Changed, EIENote::JobAttributeTypes, {},
                 "without type words, every attribute reads back as text; the settings can ask for them");
        Losses::NoteCoarseDegrees(*m_pData, m_strFileName);
    }
    return CIEPointExporter::OpenFile();
}

unsigned CIEDelimitedExporter::CarriedByLayout() const
{
    TIECarries nCarries = CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS;
    for (const IEAsciiFields::EType field : m_pData->GetSettings().GetAsciiFormat().m_Fields) {
        if (IEAsciiFields::IsCodes(field))
            nCarries |= CARRIES_CODES;
        // what a field of attributes or of strings alone leaves out shows when the line is read back
        if (IEAsciiFields::IsCodes(field) && field != IEAsciiFields::Codes)
            nCarries |= CARRIES_ATTRIBUTES | CARRIES_CODE_STRINGS | CARRIES_CONTROL_CODES;
        if (field == IEAsciiFields::Notes)
            nCarries |= CARRIES_NOTES;
        if (field == IEAsciiFields::GeoidHeight)
            nCarries |= CARRIES_GEOID_HEIGHTS;
    }
    return nCarries;
}

bool CIEDelimitedExporter::ExportObject(int nIndex)
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    if (const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(nIndex) : nullptr; pObject && m_pReader)
        NoteObject(*pObject);
    return CIEPointExporter::ExportObject(nIndex);
}

void CIEDelimitedExporter::NoteObject(const CIEObject& object)
{
    NoteShape(object);
    const IEAsciiFields::TFields& layout = m_pData->GetSettings().GetAsciiFormat().m_Fields;
    const auto lacks = [&layout](IEAsciiFields::EType type) {
        return IEAsciiFields::FindTypeInArray(type, layout) < 0;
    };
    const bool bNoNorth = lacks(IEAsciiFields::North), bNoEast = lacks(IEAsciiFields::East);
    const bool bNoHeight = lacks(IEAsciiFields::Height);
    if (!bNoNorth && !bNoEast && !bNoHeight)
        return;
    bool bPlaceLost = false, bHeightLost = false;
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        bPlaceLost = bPlaceLost || (bNoNorth && pStation->m_dNorth != 0.0) || (bNoEast && pStation->m_dEast != 0.0);
        bHeightLost = bHeightLost || (bNoHeight && pStation->GetHeight() != 0.0);
    }
    if (bPlaceLost)
        Note(TIENote::LeftOut, EIENote::ObjectCoordinates, object.GetName(),
             "the layout has no field for north or for east");
    if (bHeightLost)
        Note(TIENote::LeftOut, EIENote::ObjectHeight, object.GetName(), "the layout has no field for heights");
}

void CIEDelimitedExporter::NoteShape(const CIEObject& object)
{
    if (object.GetGroupType() != CIEObject::LineLike)
        return;
    const CString& strName = object.GetName();
    const int nStations = object.GetNumberOfStations();
    if (nStations == 0) {
        Note(TIENote::LeftOut, EIENote::ObjectNoStation, strName,
             "a line without stations leaves no trace in the file");
    } else if (nStations == 1 || strName.empty() || !m_bNameField) {
        Note(TIENote::Changed, EIENote::ObjectLineAsPoints, strName,
             "without a name, or with a single station, it reads back as points");
    } else {
        const bool bCloses = ClosesInFile(object);
        if ((object.GetType() == EIEObjectsType::Polygon) != bCloses)
            Note(TIENote::Changed, EIENote::ObjectRing, strName,
                 bCloses ? "a line that ends where it starts reads back as a polygon"
                         : "a polygon whose last station isn't its first reads back as a line");
    }
}

/// Whether the ends of a line meet for the reader: decimals that aren't written may have kept them apart.
bool CIEDelimitedExporter::ClosesInFile(const CIEObject& object)
{
    MakeLine(*object.GetStation(0), object);
    const std::unique_ptr<CIEObject> pFirst = m_pReader->Read(m_Line.GetText());
    MakeLine(*object.GetStation(object.GetNumberOfStations() - 1), object);
    const std::unique_ptr<CIEObject> pLast = m_pReader->Read(m_Line.GetText());
    return pFirst && pLast && *pFirst->GetStation(0) == *pLast->GetStation(0);
}

/// `strRead`: the name that the reader sees on the line of this object.
void CIEDelimitedExporter::NoteJoin(const CIEObject& object, const CString& strRead)
{
    const bool bSameName = strRead == m_strLastRead;
    if (&object == m_pLastObject) {
        // a line without a name was told of as a whole
        if (!bSameName || (strRead.empty() && m_bNameField && !object.GetName().empty()))
            Note(TIENote::Changed, EIENote::ObjectLineSplit, object.GetName(),
                 "the reader sees no name on its stations, or different ones, and makes no single line of them");
    } else if (bSameName && !strRead.empty()) {
        constexpr const char* kReason =
            "the reader sees the same name on it and on its neighbour, and makes one line of both";
        Note(TIENote::Changed, EIENote::ObjectJoined, object.GetName(), kReason);
        if (m_strLastName != object.GetName())
            Note(TIENote::Changed, EIENote::ObjectJoined, m_strLastName, kReason);
    }
    m_pLastObject = &object;
    m_strLastName = object.GetName();
    m_strLastRead = strRead;
}

bool CIEDelimitedExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pObject || !pStation)
        return true;
    if (!m_pFile)
        return false;
    MakeLine(*pStation, *pObject);
    if (m_pReader) {
        NoteStart(pObject->GetName());
        if (IsPlain(*pStation, *pObject))
            NoteJoin(*pObject, pObject->GetName());
        else
            NoteLine(*pStation, *pObject);
    }
    return m_Line.EndTo(*m_pFile);
}

/// Tells of a line that has a meaning for the file as a whole.
void CIEDelimitedExporter::NoteStart(const CString& strName)
{
    const std::string_view line = m_Line.GetText();
    const bool bStart = m_bFirstLine && !m_pData->GetSettings().GetAsciiFormat().m_bWriteHeader;
    m_bFirstLine = false;
    NoteBytes(line, bStart, strName);
    if (bStart && line.find(DelimitedText::kHeaderStart) != std::string_view::npos)
        Note(TIENote::Changed, EIENote::LineFileStart, strName,
             "at the start of the file, its text is a header line to the reader");
}

bool CIEDelimitedExporter::IsPlain(const CIEStation& station, const CIEObject& object) const
{
    if (!m_bPlainLayout || object.GetType() == EIEObjectsType::PTLPoint || object.GetName().empty() ||
        !IsPlainText(object.GetName()) || !IsPlainText(station.GetNotes()))
        return false;
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        const bool bBare = pCode->GetNumberOfAttrs() == 0 && pCode->GetDescription()->GetSize() == 0 &&
                           pCode->GetNumberOfCodeStrings() == 0 && pCode->GetControlCode(0).empty() &&
                           pCode->GetControlCode(1).empty();
        if (!bBare || pCode->GetDescription()->GetName().empty() || !IsPlainText(pCode->GetDescription()->GetName()))
            return false;
    }
    return true;
}

void CIEDelimitedExporter::NoteLine(const CIEStation& station, const CIEObject& object)
{
    const IEAsciiFields::TFields& layout = m_pData->GetSettings().GetAsciiFormat().m_Fields;
    const auto has = [&layout](IEAsciiFields::EType type) { return IEAsciiFields::FindTypeInArray(type, layout) >= 0; };
    const CString& strName = object.GetName();
    if (m_Line.IsEmpty()) {
        Note(TIENote::Changed, EIENote::LineBlank, strName,
             "its line is blank, and a blank line ends the data for the reader");
        return;
    }
    const std::unique_ptr<CIEObject> pRead = m_pReader->Read(m_Line.GetText());
    if (!pRead) {
        Note(TIENote::Changed, EIENote::LineUnreadable, strName, "the reader will refuse its line");
        return;
    }
    NoteJoin(object, pRead->GetName());
    if (pRead->GetType() == EIEObjectsType::PTLPoint && object.GetType() == EIEObjectsType::DesignPoint)
        Note(TIENote::Changed, EIENote::ObjectPointKind, strName,
             "its name makes it a point-to-line point for the reader");
    if (has(IEAsciiFields::Name) ? pRead->GetName() != strName : !strName.empty())
        Note(TIENote::Changed, EIENote::ObjectName, strName, "its name doesn't come back as it is");
    if (has(IEAsciiFields::Notes) && pRead->GetStation(0)->GetNotes() != station.GetNotes())
        Note(TIENote::Changed, EIENote::ObjectNotes, strName, "its notes don't come back as they are");
    const TIECarries nCarries = CarriedByLayout();
    if ((nCarries & CARRIES_CODES) &&
        !HaveEqualCodes(*pRead, object, !(nCarries & CARRIES_ATTRIBUTES), m_pData->GetSettings().m_bAttrTypes))
        Note(TIENote::Changed, EIENote::ObjectCodes, strName, "its codes don't come back as they are");
}
