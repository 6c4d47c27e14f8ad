#include "formats/points/cor_lev.h"

#include "alidade/vellumlib/utils.h"

#include <array>
#include <cmath>

namespace {

constexpr const char* kCoordinates = ".cor";
constexpr const char* kLevels = ".lev";
constexpr std::array<std::string_view, 3> kExtensions = {".cor", ".lev", ".def"};
constexpr int kNameWidth = 16;
constexpr int kNameColumns = 17; ///< the name and the blank ahead of it, or behind it
constexpr int kNumberWidth = 13;
constexpr int kDecimals = 4;

CString BaseOf(CString strFileName)
{
    const std::size_t nBase = strFileName.size() < 4 ? 0 : strFileName.size() - 4;
    const CString strEnd = IEUtils::ToLower(std::string_view(strFileName).substr(nBase));
    for (const std::string_view extension : kExtensions) {
        if (strEnd == extension)
            strFileName.resize(nBase);
    }
    return strFileName;
}

CString NumberField(double dValue)
{
    return IEUtils::GetReportString(' ', kNumberWidth, true, IEUtils::DoubleToString(dValue, kDecimals));
}

/// An excerpt for notes: what should be a number may be as long as the file.
CString Excerpt(std::string_view text)
{
    constexpr int kShown = 32;
    return CString(IEUtils::Left(IEUtils::Trim(text), kShown));
}

} // namespace

CIECorLevImporter::CIECorLevImporter(CIEData* pData, CString strFileName)
    : CIEImporter(pData, std::move(strFileName)), m_strBase(BaseOf(m_strFileName))
{
}

EIEResult CIECorLevImporter::Import()
{
    CIETextFile coordinates, levels;
    const bool bCoordinates = Open(coordinates, kCoordinates);
    if (!Open(levels, kLevels) || !bCoordinates)
        return IE_CANNOT_OPEN_FILE;
    CIEDataset* const pDataset = m_pData->AddDataset(std::make_unique<CIEDataset>("Import dataset"));
    EIEResult eResult = ReadLines(coordinates, &CIECorLevImporter::ReadCoordinates);
    if (eResult == IE_OK)
        eResult = ReadLines(levels, &CIECorLevImporter::ReadLevel);
    AddPoints(*pDataset);
    return CIEData::m_bStopProcess ? IE_STOPPED : eResult;
}

/// Names of the two files may stand in capitals where the system tells these apart.
bool CIECorLevImporter::Open(CIETextFile& file, const char* pExtension)
{
    const CString& strCodePage = m_pData->GetSettings().m_strCodePage;
    const CString strUpper = IEUtils::ToUpper(pExtension);
    const CString strCapital = strUpper.substr(0, 2) + CString(pExtension).substr(2); // behind the point
    for (const CString& strExtension : {CString(pExtension), strUpper, strCapital}) {
        if (file.Open(m_strBase + strExtension, strCodePage))
            return true;
    }
    m_pData->Note(TIENote::Refused, EIENote::FileCannotOpen, m_strBase + pExtension, 0, {},
                  "this file of the pair can't be opened for reading");
    return false;
}

EIEResult CIECorLevImporter::ReadLines(CIETextFile& file, TReadLine readLine)
{
    constexpr std::int64_t kLinesBetweenReports = 1000;
    m_pFile = &file;
    EIEResult eResult = IE_OK;
    std::string_view line;
    while (file.GetPosition() != file.GetLength() && !CIEData::m_bStopProcess) {
        if (!file.ReadLine(line) || line.empty())
            break;
        if (file.WasCut() ? !Refuse(EIENote::LineTooLong, {}, "the line is longer than any record can be")
                          : !(this->*readLine)(line)) {
            eResult = IE_BAD_CONTENT;
            break;
        }
        if (file.WasMended())
            m_pData->Note(TIENote::Changed, EIENote::LineBadCharacters, file.GetFileName(), file.GetLineNumber(),
                          CString(IEUtils::Column(line, 0, kNameColumns)),
                          "bytes without a meaning in " + file.GetEncoding() + " became U+FFFD");
        if (file.GetLineNumber() % kLinesBetweenReports == 0)
            Progress(file);
    }
    while (m_pData->GetObserver() && eResult == IE_OK && !CIEData::m_bStopProcess && file.ReadLine(line)) {
        if (IEUtils::Trim(line).empty())
            continue;
        m_pData->Note(TIENote::LeftOut, EIENote::LineBehindEnd, file.GetFileName(), file.GetLineNumber(), {},
                      "a blank line ended the data ahead of this line; nothing from here on was read");
        break;
    }
    if (file.HasFailed())
        m_pData->Note(TIENote::Refused, EIENote::FileReadFailed, file.GetFileName(), file.GetLineNumber() + 1, {},
                      "the rest of the file can't be read");
    Progress(file);
    return eResult;
}

bool CIECorLevImporter::ReadCoordinates(std::string_view line)
{
    const std::string_view name = IEUtils::Column(line, 0, kNameColumns);
    const std::string_view numbers = line.substr(IEUtils::Left(line, kNameColumns).size());
    const std::size_t nPoint = numbers.find('.');
    if (nPoint == std::string_view::npos)
        return Refuse(EIENote::LineNumber, name,
                      "\"" + Excerpt(numbers) + "\" isn't an east and a north with four decimals");
    // no blank needs to stand between the two
    const std::string_view east = numbers.substr(0, nPoint + 1 + kDecimals);
    const std::string_view north = numbers.substr(east.size());
    const EDIST_UNITS units = m_pData->GetJobInfo()->GetDistUnits();
    bool bOk = true;
    CIEStation station;
    station.m_dEast = IEUtils::StringByStyleToDist(units, east, bOk);
    if (!bOk)
        return Refuse(EIENote::LineNumber, name, "its east \"" + Excerpt(east) + "\" can't be read");
    station.m_dNorth = IEUtils::StringByStyleToDist(units, north, bOk);
    if (!bOk)
        return Refuse(EIENote::LineNumber, name, "its north \"" + Excerpt(north) + "\" can't be read");
    station.SetName(CString(name));
    m_Stations.push_back(std::move(station));
    m_HasLevel.push_back(false);
    return true;
}

bool CIECorLevImporter::ReadLevel(std::string_view line)
{
    const std::string_view name = IEUtils::Column(line, 0, kNameColumns);
    const std::string_view text = line.substr(IEUtils::Left(line, kNameColumns).size());
    if (m_nLevelIndex + 1 >= static_cast<int>(m_Stations.size()))
        return Refuse(EIENote::LineBehindLast, name, "the level ahead of it belongs to the last point");
    double dLevel = 0.0;
    if (!IEUtils::StringToDouble(text, dLevel, false))
        return Refuse(EIENote::LineNumber, name, "its height \"" + Excerpt(text) + "\" can't be read");
    const int nStation = FindStation(name);
    if (nStation < 0)
        return Refuse(EIENote::LineName, name, "no point of the other file has the name \"" + CString(name) + "\"");
    m_nLevelIndex = nStation;
    const auto nIndex = static_cast<std::size_t>(nStation);
    if (m_HasLevel[nIndex])
        m_pData->Note(TIENote::Changed, EIENote::LineSecondLevel, m_pFile->GetFileName(), m_pFile->GetLineNumber(),
                      CString(name), "it replaces a height that a line ahead gave");
    m_HasLevel[nIndex] = true;
    m_Stations[nIndex].SetHeight(dLevel);
    return true;
}

/// The station behind the one of the level ahead, if it has the name, or else the first that has it; -1 if none has.
int CIECorLevImporter::FindStation(std::string_view name)
{
    const int nNext = m_nLevelIndex + 1;
    const CString strLower = IEUtils::ToLower(name);
    if (IEUtils::ToLower(m_Stations[static_cast<std::size_t>(nNext)].GetName()) == strLower)
        return nNext;
    if (m_ByName.empty()) {
        for (std::size_t i = 0; i < m_Stations.size(); ++i)
            m_ByName.try_emplace(IEUtils::ToLower(m_Stations[i].GetName()), static_cast<int>(i));
    }
    const auto found = m_ByName.find(strLower);
    return found == m_ByName.end() ? -1 : found->second;
}

void CIECorLevImporter::AddPoints(CIEDataset& dataset)
{
    for (std::size_t i = 0; i < m_Stations.size(); ++i) {
        if (!m_HasLevel[i])
            m_pData->Note(TIENote::Changed, EIENote::RecordNoLevel, m_strBase + kLevels, 0, m_Stations[i].GetName(),
                          "no line gives its height, which is 0");
        dataset.Add(std::make_unique<CIEDesignPoint>(std::move(m_Stations[i])));
    }
    m_Stations.clear();
}

bool CIECorLevImporter::Refuse(EIENote eCode, std::string_view record, CString strReason)
{
    m_pData->Note(TIENote::Refused, eCode, m_pFile->GetFileName(), m_pFile->GetLineNumber(), CString(record),
                  std::move(strReason));
    return false;
}

CIECorLevExporter::CIECorLevExporter(CIEData* pData, const CString& strFileName) : CIEPointExporter(pData, strFileName)
{
}

CIECorLevExporter::~CIECorLevExporter()
{
    CloseLevels();
}

bool CIECorLevExporter::OpenFile()
{
    m_pFile = Create(kCoordinates);
    if (!m_pFile)
        return false; // heights alone would be of no use
    m_pLevels = Create(kLevels);
    if (!m_pLevels)
        NoteLevels("the file can't be created, and all heights are lost");
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    if (info.GetCSType() == TIEJobInfo::Geographic)
        Note(TIENote::Changed, EIENote::JobGeographic, {},
             "latitude and longitude go out with four decimals, which is some ten metres");
    if (info.GetDistUnits() != EDIST_UNITS::Meters && info.GetDistUnits() != EDIST_UNITS::None)
        Note(TIENote::Changed, EIENote::JobUnits, {},
             "lengths go out in metres, and a reader takes coordinates in the units of its job");
    return true;
}

std::shared_ptr<CIETextWriter> CIECorLevExporter::Create(const char* pExtension)
{
    const CString strFile = m_strFileName + pExtension;
    auto pFile = std::make_shared<CIETextWriter>();
    if (!pFile->Create(strFile, m_pData->GetSettings().m_strWriteEncoding))
        return nullptr;
    m_pData->AddFileNameToExported(strFile);
    return pFile;
}

bool CIECorLevExporter::CloseFile()
{
    CloseLevels();
    return CIEPointExporter::CloseFile();
}

void CIECorLevExporter::CloseLevels()
{
    if (m_pLevels && m_pLevels.use_count() == 1 && !m_pLevels->Close())
        NoteLevels("the file could not be written to its end");
    m_pLevels.reset();
}

void CIECorLevExporter::NoteLevels(CString strReason) const
{
    m_pData->Note(TIENote::LeftOut, EIENote::FileWriteFailed, m_strFileName + kLevels, {}, {}, std::move(strReason));
}

bool CIECorLevExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pStation || !pObject || pObject->GetGroupType() != CIEObject::PointLike)
        return true;
    if (!m_pFile)
        return false;
    // one line for both files: the name in its columns
    const CString& strName = pObject->GetName();
    m_Line.Clear();
    AddText(IEUtils::Right(strName, kNameWidth));
    const CString strWritten = m_Line.GetText();
    NoteName(strName, strWritten);
    const CString strField = IEUtils::GetReportString(' ', kNameWidth, false, strWritten);
    m_Line.Clear();
    m_Line.Add(' ').Add(strField).Add(' ').Add(NumberField(pStation->m_dEast));
    m_Line.Add(' ').Add(NumberField(pStation->m_dNorth));
    if (!m_Line.EndTo(*m_pFile))
        return false;
    m_Line.Add(strField).Add(' ').Add(NumberField(pStation->GetHeight()));
    if (m_pData->GetObserver())
        NoteBytes(m_Line.GetText(), m_bFirstLine, strName); // the other line begins with a blank
    m_bFirstLine = false;
    if (m_pLevels)
        return m_Line.EndTo(*m_pLevels);
    m_Line.Clear();
    return true;
}

void CIECorLevExporter::NoteName(const CString& strName, std::string_view written) const
{
    if (m_pData->GetObserver() && IEUtils::Trim(written) != strName)
        Note(TIENote::Changed, EIENote::ObjectName, strName,
             "a reader takes its name as \"" + CString(IEUtils::Trim(written)) + "\"");
}
