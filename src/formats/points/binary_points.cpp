#include "formats/points/binary_points.h"

#include "alidade/vellumlib/utils.h"
#include "vellumlib/little_endian.h"

#include <algorithm>

namespace {

constexpr std::string_view kMark = "Fieldra";
constexpr std::size_t kMarkSize = 30;
constexpr std::size_t kHighestNumber = 30; ///< offsets in the header ...
constexpr std::size_t kDeletedNumber = 34;
constexpr std::size_t kHeaderSize = 38;
constexpr std::size_t kNorth = 4; ///< ... and in a record, whose number is at 0
constexpr std::size_t kEast = 12;
constexpr std::size_t kHeight = 20;
constexpr std::size_t kCode = 28;
constexpr std::size_t kRecordSize = 45;
constexpr std::size_t kCodeSize = 17; ///< a writer leaves a zero behind the text

constexpr int kMostNumber = 100000;
constexpr double kMostCoordinate = 1e9;
constexpr int kDeleted = -1;

bool IsNumber(std::int64_t nNumber, int nLeast = -kMostNumber)
{
    return nNumber >= nLeast && nNumber <= kMostNumber;
}

bool IsCoordinate(double dValue)
{
    return IEUtils::IsInBorders(dValue, -kMostCoordinate, kMostCoordinate);
}

/// Units of north and east.
EDIST_UNITS PlaneUnits(const TIEJobInfo& info)
{
    return info.GetCSType() != TIEJobInfo::Geographic ? info.GetDistUnits() : EDIST_UNITS::None;
}

} // namespace

EIERecognition RecognizeBinaryPoints(std::string_view head)
{
    if (head.size() < kHeaderSize)
        return EIERecognition::No;
    if (head.starts_with(kMark) && head[kMark.size()] == '\0')
        return EIERecognition::Surely;
    const bool bFits = IsNumber(LittleEndian::ReadInt32(head, kHighestNumber), 0) &&
                       IsNumber(LittleEndian::ReadInt32(head, kDeletedNumber)) &&
                       (head.size() < kHeaderSize + kRecordSize ||
                        (IsNumber(LittleEndian::ReadInt32(head, kHeaderSize)) &&
                         IsCoordinate(LittleEndian::ReadDouble(head, kHeaderSize + kNorth))));
    return bFits ? EIERecognition::Perhaps : EIERecognition::No;
}

CIEBinaryPointImporter::CIEBinaryPointImporter(CIEData* pData, CString strFileName)
    : CIEImporter(pData, std::move(strFileName)), m_CodePage(pData->GetSettings().m_strCodePage)
{
}

EIEResult CIEBinaryPointImporter::Import()
{
    CIEFileReader file;
    if (!file.Open(m_strFileName))
        return IE_CANNOT_OPEN_FILE;
    if (!ReadHeader(file))
        return IE_BAD_CONTENT;
    auto pDataset = std::make_unique<CIEDataset>("Import dataset");
    EIEResult eResult = ReadRecords(file, *pDataset);
    if (eResult == IE_OK)
        m_pData->AddDataset(std::move(pDataset));
    return CIEData::m_bStopProcess ? IE_STOPPED : eResult;
}

bool CIEBinaryPointImporter::ReadHeader(CIEFileReader& file)
{
    const std::string_view header = file.Peek(kHeaderSize);
    if (header.size() < kHeaderSize)
        return Refuse(EIENote::FileHeader, 0, {}, "the file is too short for the header of a point list");
    const int nHighest = LittleEndian::ReadInt32(header, kHighestNumber);
    const int nDeleted = LittleEndian::ReadInt32(header, kDeletedNumber);
    if (!IsNumber(nHighest, 0))
        return Refuse(EIENote::FileHeader, kHighestNumber, {},
                      "the highest number of a point, " + IEUtils::IntToString(nHighest) + ", isn't from 0 to 100000");
    if (!IsNumber(nDeleted))
        return Refuse(EIENote::FileHeader, kDeletedNumber, {},
                      IEUtils::IntToString(nDeleted) + " isn't from -100000 to 100000");
    m_bSkipDeleted = nDeleted != kDeleted;
    file.Skip(kHeaderSize);
    return true;
}

EIEResult CIEBinaryPointImporter::ReadRecords(CIEFileReader& file, CIEDataset& dataset)
{
    constexpr int kRecordsBetweenReports = 1000;
    IIETransferObserver* const pObserver = m_pData->GetObserver();
    const auto report = [&] {
        if (pObserver)
            pObserver->OnProgress(static_cast<std::int64_t>(file.GetPosition()),
                                  static_cast<std::int64_t>(file.GetLength()));
    };
    for (int n = 1; file.GetPosition() != file.GetLength() && !CIEData::m_bStopProcess; ++n) {
        if (!ReadRecord(file, dataset))
            return IE_BAD_CONTENT;
        if (n % kRecordsBetweenReports == 0)
            report();
    }
    report();
    return dataset.GetNumberOfElements(-1, 2, false, false) > 0 ? IE_OK : IE_NOTHING_DONE;
}

bool CIEBinaryPointImporter::ReadRecord(CIEFileReader& file, CIEDataset& dataset)
{
    const std::uint64_t nOffset = file.GetPosition();
    const std::string_view bytes = file.Peek(kRecordSize).substr(0, kRecordSize);
    if (bytes.size() < kRecordSize)
        return file.HasFailed() ? Refuse(EIENote::FileReadFailed, nOffset, {}, "the rest of the file can't be read")
                                : Refuse(EIENote::RecordShort, nOffset, {}, "the file ends within this record");
    const int nNumber = LittleEndian::ReadInt32(bytes, 0);
    const CString strName = IEUtils::IntToString(nNumber);
    if (!IsNumber(nNumber))
        return Refuse(EIENote::RecordNumber, nOffset, strName, "its number isn't from -100000 to 100000");
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    CIEStation station(IEUtils::ToMetersFactor(LittleEndian::ReadDouble(bytes, kNorth), PlaneUnits(info)),
                       IEUtils::ToMetersFactor(LittleEndian::ReadDouble(bytes, kEast), PlaneUnits(info)),
                       IEUtils::ToMetersFactor(LittleEndian::ReadDouble(bytes, kHeight), info.GetDistUnits()));
    for (const double dValue : {station.m_dNorth, station.m_dEast, station.m_dHeight}) {
        if (!IsCoordinate(dValue))
            return Refuse(EIENote::RecordCoordinates, nOffset, strName,
                          "its coordinates are beyond a million kilometres");
    }
    if (m_bSkipDeleted && nNumber == kDeleted) {
        Note(TIENote::LeftOut, EIENote::RecordDeleted, {0, static_cast<std::int64_t>(nOffset)}, strName,
             "it is marked as deleted");
    } else {
        station.SetName(strName);
        auto pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
        AddCode(*pPoint, bytes.substr(kCode, kCodeSize), nOffset);
        dataset.Add(std::move(pPoint));
    }
    file.Skip(kRecordSize);
    return true;
}

void CIEBinaryPointImporter::AddCode(CIEObject& point, std::string_view bytes, std::uint64_t nOffset)
{
    const CString strCode = m_CodePage.ToText(bytes.substr(0, bytes.find('\0')));
    if (strCode.empty())
        return;
    if (strCode.find("\uFFFD") != CString::npos)
        Note(TIENote::Changed, EIENote::RecordBadCharacters, {0, static_cast<std::int64_t>(nOffset)}, point.GetName(),
             "bytes of its code without a meaning in " + m_CodePage.GetName() + " became U+FFFD");
    point.AddCode(CIECodeValues(m_pData->TakeCode(strCode)));
}

bool CIEBinaryPointImporter::Refuse(EIENote eCode, std::uint64_t nOffset, CString strRecord, CString strReason) const
{
    Note(TIENote::Refused, eCode, {0, static_cast<std::int64_t>(nOffset)}, std::move(strRecord), std::move(strReason));
    return false;
}

CIEBinaryPointExporter::CIEBinaryPointExporter(CIEData* pData, const CString& strFileName)
    : CIEPointExporter(pData, strFileName), m_CodePage(pData->GetSettings().m_strCodePage)
{
}

bool CIEBinaryPointExporter::OpenFile()
{
    auto pFile = std::make_shared<CIETextWriter>();
    if (!pFile->Create(m_strFileName)) // bytes go past the encoding
        return false;
    m_pFile = std::move(pFile);
    return true;
}

bool CIEBinaryPointExporter::WriteHeader()
{
    if (!m_pFile)
        return false;
    std::int64_t nNamed = 0;
    m_nLastNumber = 0;
    // all datasets that the run comes to
    const bool bAll = m_pData->GetSettings().m_bSingleFile;
    for (int i = m_pData->GetCurDatasetID(); const CIEDataset* const pDataset = m_pData->GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            int nNumber = 0;
            if (pObject->GetGroupType() != CIEObject::PointLike)
                continue;
            if (IEUtils::StringToInt(pObject->GetName(), nNumber))
                m_nLastNumber = std::max<std::int64_t>(m_nLastNumber, nNumber);
            else
                ++nNamed;
        }
        if (!bAll)
            break;
    }
    const std::int64_t nHighest = m_nLastNumber + nNamed;
    if (!IsNumber(nHighest))
        Note(TIENote::Changed, EIENote::JobPointNumbers, {},
             "its points have numbers up to " + IEUtils::IntToString(nHighest) +
                 ", and a reader refuses a file with one beyond 100000");
    CString strHeader(kMark);
    strHeader.resize(kMarkSize);
    LittleEndian::AppendInt32(strHeader, static_cast<std::int32_t>(nHighest));
    LittleEndian::AppendInt32(strHeader, kDeleted);
    return m_pFile->GetFile().Write(strHeader);
}

bool CIEBinaryPointExporter::ExportObject(int nIndex)
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(nIndex) : nullptr;
    if (!pObject)
        return true;
    NoteLosses(*pObject);
    if (pObject->GetGroupType() != CIEObject::PointLike)
        return true;
    int nNumber = 0;
    if (!IEUtils::StringToInt(pObject->GetName(), nNumber))
        nNumber = static_cast<std::int32_t>(++m_nLastNumber);
    m_strRecord.clear();
    LittleEndian::AppendInt32(m_strRecord, nNumber);
    WriteStation(pObject->GetStation(0), pObject);
    return true;
}

bool CIEBinaryPointExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pStation || !pObject || !m_pFile)
        return true;
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const double values[] = {
        IEUtils::FromMetersFactor(pStation->m_dNorth, PlaneUnits(info)),
        IEUtils::FromMetersFactor(pStation->m_dEast, PlaneUnits(info)),
        IEUtils::FromMetersFactor(pStation->GetHeight(), info.GetDistUnits()),
    };
    for (const double dValue : values)
        LittleEndian::AppendDouble(m_strRecord, dValue);
    CString strCode = MakeCode(*pObject);
    if (m_pData->GetObserver()) {
        NoteNumber(pObject->GetName());
        NoteCode(*pObject, strCode);
        if (!IsCoordinate(pStation->m_dNorth) || !IsCoordinate(pStation->m_dEast) ||
            !IsCoordinate(pStation->GetHeight()))
            Note(TIENote::Changed, EIENote::LineUnreadable, pObject->GetName(),
                 "a reader refuses a file with coordinates beyond a million kilometres");
    }
    strCode.resize(kCodeSize);
    m_strRecord += strCode;
    (void)m_pFile->GetFile().Write(m_strRecord);
    return true;
}

/// The first code as at most 16 bytes; no character is cut in two.
CString CIEBinaryPointExporter::MakeCode(const CIEObject& object)
{
    const CIECodeValues* const pCode = object.GetCode(0);
    if (!pCode)
        return {};
    constexpr int kMost = static_cast<int>(kCodeSize) - 1;
    std::string_view text = IEUtils::Left(pCode->GetDescription()->GetName(), kMost);
    text = text.substr(0, text.find('\0')); // which would end it for a reader
    CString bytes = m_CodePage.ToBytes(text);
    while (bytes.size() >= kCodeSize) {
        text = IEUtils::Left(text, IEUtils::Length(text) - 1);
        bytes = m_CodePage.ToBytes(text);
    }
    return bytes;
}

/// m_strRecord begins with the number that the point got.
void CIEBinaryPointExporter::NoteNumber(const CString& strName) const
{
    const int nNumber = LittleEndian::ReadInt32(m_strRecord, 0);
    const CString strNumber = IEUtils::IntToString(nNumber);
    if (strName != strNumber)
        Note(TIENote::Changed, EIENote::ObjectName, strName,
             "the form has numbers for names; the point's is " + strNumber);
    if (!IsNumber(nNumber))
        Note(TIENote::Changed, EIENote::LineUnreadable, strName,
             "a reader refuses a file with a point whose number isn't from -100000 to 100000");
}

void CIEBinaryPointExporter::NoteCode(const CIEObject& object, std::string_view bytes)
{
    if (object.GetNumberOfCodes() > 1)
        Note(TIENote::LeftOut, EIENote::ObjectCodes, object.GetName(), "the form holds the first of its codes alone");
    const CIECodeValues* const pCode = object.GetCode(0);
    const CString strRead = m_CodePage.ToText(bytes);
    if (pCode && (strRead.empty() || strRead != pCode->GetDescription()->GetName()))
        Note(TIENote::Changed, EIENote::ObjectCodes, object.GetName(),
             strRead.empty() ? "its code has no name, and doesn't come back"
                             : "its code comes back as \"" + strRead + "\": 16 bytes in " + m_CodePage.GetName());
}
