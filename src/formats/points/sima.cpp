#include "alidade/formats/points/sima.h"

#include "formats/points/sima.h"

#include "alidade/vellumlib/utils.h"

namespace {

constexpr std::string_view kJobTag = "G00";
constexpr std::string_view kJobLine = "G00,03,";
constexpr std::string_view kDataStart = "A00,";
constexpr std::string_view kPointRecord = "A01,";
constexpr std::string_view kDataEnd = "A99,";
constexpr int kDecimals = 3;
/// Bytes; a name has at most 64 characters, and no reader needs more fields than six.
constexpr std::size_t kLongestRecord = 65536;

// fields of a point record
constexpr std::size_t kNumberField = 1;
constexpr std::size_t kNameField = 2;
constexpr std::size_t kNorthField = 3;
constexpr std::size_t kEastField = 4;
constexpr std::size_t kHeightField = 5;

} // namespace

EIEResult CIESimaImporter::Import()
{
    CIETextFile file;
    if (!file.Open(m_strFileName, m_pData->GetSettings().m_strCodePage))
        return IE_CANNOT_OPEN_FILE;
    m_nFileLength = file.GetLength();
    CIEDataset* const pDataset = m_pData->AddDataset(std::make_unique<CIEDataset>("Import dataset"));
    const EIEResult eResult = ReadRecords(file, *pDataset);
    if (file.HasFailed())
        Note(TIENote::Refused, EIENote::FileReadFailed, file.GetLineNumber() + 1, {},
             "the rest of the file can't be read");
    Progress(file);
    return eResult;
}

EIEResult CIESimaImporter::ReadRecords(CIETextFile& file, CIEDataset& dataset)
{
    constexpr std::int64_t kLinesBetweenReports = 1000;
    EIEResult eResult = IE_NOTHING_DONE;
    CString line;
    while (!CIEData::m_bStopProcess) {
        IEUtils::Read1Line(file, line);
        if (IsEnd(file, line))
            break;
        if (m_bFirstLine) {
            if (!ReadHead(file, line))
                break;
            m_bFirstLine = false;
            continue;
        }
        if (line == kDataEnd) {
            NoteRest(file);
            return IE_OK;
        }
        std::unique_ptr<CIEDesignPoint> pPoint;
        if (file.WasCut() || line.size() > kLongestRecord)
            return Refuse(file.GetLineNumber(), {}, EIENote::LineTooLong, "the line is longer than any record can be");
        if (ParseRecord(line, file.GetLineNumber(), pPoint) == IE_BAD_CONTENT)
            return IE_BAD_CONTENT;
        if (file.WasMended())
            Note(TIENote::Changed, EIENote::LineBadCharacters, file.GetLineNumber(), m_pStation->GetName(),
                 "bytes without a meaning in " + file.GetEncoding() + " became U+FFFD");
        pPoint->SetStation(*m_pStation);
        dataset.Add(std::move(pPoint));
        eResult = IE_OK;
        if (file.GetLineNumber() % kLinesBetweenReports == 0)
            Progress(file);
    }
    return eResult;
}

void CIESimaImporter::NoteRest(CIETextFile& file) const
{
    CString line;
    while (m_pData->GetObserver() && IEUtils::Read1Line(file, line)) {
        if (!IEUtils::Trim(line).empty()) {
            Note(TIENote::LeftOut, EIENote::LineBehindEnd, file.GetLineNumber(), {},
                 "the data ended ahead of this line; nothing from here on was read");
            return;
        }
    }
}

bool CIESimaImporter::IsEnd(const CIETextFile& file, std::string_view line) const
{
    return line.empty() && file.GetPosition() == m_nFileLength;
}

bool CIESimaImporter::ReadHead(CIETextFile& file, CString& line)
{
    IEUtils::ParseValuesForSIMAFormat(line, m_Fields, u',', {});
    if (m_Fields.empty() || m_Fields[0] != kJobTag) {
        Refuse(file.GetLineNumber(), {}, EIENote::SimaNoJobLine, "the first line isn't a \"G00\" line");
        return false;
    }
    IEUtils::Read1Line(file, line);
    if (IsEnd(file, line) || line != kDataStart) {
        Refuse(file.GetLineNumber(), {}, EIENote::SimaNoDataStart, "the second line isn't \"A00,\"");
        return false;
    }
    return true;
}

EIEResult CIESimaImporter::ParseRecord(std::string_view line, std::int64_t nLine,
                                       std::unique_ptr<CIEDesignPoint>& pPoint)
{
    IEUtils::ParseValuesForSIMAFormat(line, m_Fields, u',', {});
    if (m_Fields.empty())
        return Refuse(nLine, {}, EIENote::LineEmpty, "the line is empty ahead of the end of the data");
    m_Fields.resize(std::max(m_Fields.size(), kHeightField + 1)); // what a short record lacks reads as empty

    pPoint = std::make_unique<CIEDesignPoint>();
    if (!m_pStation)
        m_pStation = std::make_unique<CIEStation>();
    m_pStation->SetStationType(0);
    const CString& strName = m_Fields[m_bNumbersOnly ? kNumberField : kNameField];
    if (!IEUtils::IsValidName(strName))
        return Refuse(nLine, strName, EIENote::LineName, "\"" + strName + "\" can't name a point");
    m_pStation->SetName(strName);
    if (!IEUtils::StringToDouble(m_Fields[kEastField], m_pStation->m_dEast, false))
        return Refuse(nLine, strName, EIENote::LineNumber, "its east \"" + m_Fields[kEastField] + "\" can't be read");
    if (!IEUtils::StringToDouble(m_Fields[kNorthField], m_pStation->m_dNorth, false))
        return Refuse(nLine, strName, EIENote::LineNumber, "its north \"" + m_Fields[kNorthField] + "\" can't be read");
    double dHeight = 0.0;
    if (!IEUtils::StringToDouble(m_Fields[kHeightField], dHeight, false)) {
        dHeight = 0.0;
        if (!m_Fields[kHeightField].empty())
            Note(TIENote::Changed, EIENote::LineHeight, nLine, strName,
                 "its height \"" + m_Fields[kHeightField] + "\" can't be read and is 0");
    }
    m_pStation->SetHeight(dHeight);
    return IE_OK;
}

EIEResult CIESimaImporter::Refuse(std::int64_t nLine, const CString& strName, EIENote eCode, CString strReason) const
{
    Note(TIENote::Refused, eCode, nLine, strName, std::move(strReason));
    return IE_BAD_CONTENT;
}

CSimaPtExporterJ::CSimaPtExporterJ(CIEData* pData, const CString& strFileName, bool bNumbersOnly)
    : CIEPointExporter(pData, strFileName), m_bNumbersOnly(bNumbersOnly)
{
    SetCarries(kSimaCarries); // for a host that makes it without the factory
}

CSimaPtExporterJ::CSimaPtExporterJ(const CSimaPtExporterJ& other) = default;
CSimaPtExporterJ& CSimaPtExporterJ::operator=(const CSimaPtExporterJ& other) = default;
CSimaPtExporterJ::~CSimaPtExporterJ() = default;

bool CSimaPtExporterJ::WriteHeader()
{
    if (!m_pFile)
        return false;
    m_Line.Clear();
    m_Line.Add(kJobLine);
    AddText(m_pData->GetJobInfo()->m_strJobName);
    m_Line.Add(',').EndTo(*m_pFile);
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    if (info.GetCSType() == TIEJobInfo::Geographic)
        Note(TIENote::Changed, EIENote::JobGeographic, {},
             "the form has three decimals for latitude and longitude, which is some hundred metres");
    if (info.GetDistUnits() != EDIST_UNITS::Meters && info.GetDistUnits() != EDIST_UNITS::None)
        Note(TIENote::Changed, EIENote::JobUnits, {},
             "the form states no unit, and a reader takes its lengths as metres");
    m_nPointNumber = 1;
    return m_Line.Add(kDataStart).EndTo(*m_pFile);
}

bool CSimaPtExporterJ::WriteFooter()
{
    if (!m_pFile)
        return false;
    m_Line.Clear();
    return m_Line.Add(kDataEnd).EndTo(*m_pFile);
}

bool CSimaPtExporterJ::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pObject || !pStation || pObject->GetGroupType() != CIEObject::PointLike)
        return true;
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const EDIST_UNITS plane = info.GetCSType() != TIEJobInfo::Geographic ? info.GetDistUnits() : EDIST_UNITS::None;
    const double values[] = {
        IEUtils::FromMetersFactor(pStation->m_dNorth, plane),
        IEUtils::FromMetersFactor(pStation->m_dEast, plane),
        IEUtils::FromMetersFactor(pStation->GetHeight(), info.GetDistUnits()),
    };
    NoteName(pStation->GetName());
    Write1Line(pStation->GetName(), values);
    ++m_nPointNumber;
    return true;
}

void CSimaPtExporterJ::NoteName(const CString& strName) const
{
    if (!m_pData->GetObserver())
        return;
    if (m_bNumbersOnly) {
        if (strName != IEUtils::IntToString(m_nPointNumber))
            Note(TIENote::LeftOut, EIENote::ObjectName, strName,
                 "the form holds no name; the point's number is " + IEUtils::IntToString(m_nPointNumber));
    } else if (!IEUtils::IsValidName(strName) || strName.find(',') != CString::npos) {
        Note(TIENote::Changed, EIENote::LineUnreadable, strName,
             "a reader of the form can't take this name, and may end here");
    }
}

bool CSimaPtExporterJ::Write1Line(const CString& name, const double* values)
{
    if (!m_pFile)
        return false;
    m_Line.Clear();
    m_Line.Add(kPointRecord).AddInt(m_nPointNumber).Add(',');
    if (!m_bNumbersOnly)
        AddText(name);
    m_Line.Add(',');
    for (int i = 0; i < 3; ++i)
        m_Line.AddFixed(IEUtils::CheckZeroVal(values[i]), kDecimals).Add(',');
    return m_Line.EndTo(*m_pFile);
}
