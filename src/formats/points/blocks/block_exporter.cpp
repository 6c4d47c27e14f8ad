#include "formats/points/blocks/block_exporter.h"

#include "alidade/frame/format_row.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace Blocks;

constexpr double kThousand = 1000.0;
constexpr double kHalf = 0.5;
constexpr int kWideName = 16;
constexpr int kNarrowName = 10;
constexpr int kNine = 9; ///< digits of a coordinate
constexpr int kEleven = 11;
constexpr double kNineDigits = 1e9; ///< what they don't hold
constexpr double kElevenDigits = 1e11;

/// Thousandths without their sign; the whole part is rounded half up.
double Thousandths(double dValue)
{
    return std::fabs(dValue) * kThousand + kHalf;
}

} // namespace

bool CIEBlockStreamExporter::IsMetric() const
{
    return m_pData->GetJobInfo()->GetDistUnits() == EDIST_UNITS::Meters;
}

CIEBlockStreamExporter::TCoordinates CIEBlockStreamExporter::GetCoordinates(const CIEStation& station) const
{
    TCoordinates values = {station.m_dNorth, station.m_dEast, station.GetHeight()};
    for (double& dValue : values) {
        if (!IsMetric())
            dValue = IEUtils::FromMetersFactor(dValue, EDIST_UNITS::USSurveyFeet);
    }
    return values;
}

std::int64_t CIEBlockStreamExporter::ToThousandths(double dValue, double dModulus)
{
    const double dThousandths = Thousandths(dValue);
    return std::isfinite(dThousandths) ? static_cast<std::int64_t>(std::fmod(dThousandths, dModulus)) : 0;
}

void CIEBlockStreamExporter::AppendWhole(CString& out, std::int64_t nValue, int nWidth)
{
    // as printf does it: the sign of a negative number stands ahead of the zeros and takes a place
    CString digits = IEUtils::IntToString(nValue < 0 ? -nValue : nValue);
    if (nValue < 0) {
        out += '-';
        --nWidth;
    }
    out += IEUtils::GetReportString('0', nWidth, true, digits);
}

CString CIEBlockStreamExporter::MakePlain(std::string_view text, bool bFieldMarks)
{
    CString plain(text);
    for (char& c : plain) {
        if (static_cast<unsigned char>(c) < ' ' || (bFieldMarks && c == '_'))
            c = ' ';
    }
    return plain;
}

void CIEBlockStreamExporter::NoteJob(bool bUnitTold) const
{
    if (m_pData->GetJobInfo()->GetCSType() == TIEJobInfo::Geographic)
        Note(TIENote::Changed, EIENote::JobGeographic, {},
             IsMetric() ? "latitude and longitude go out in thousandths of a degree, which is some hundred metres"
                        : "latitude and longitude go out like lengths, turned into US survey feet");
    else if (!IsMetric() && !bUnitTold)
        Note(TIENote::Changed, EIENote::JobUnits, {},
             "lengths go out in US survey feet; the form states no unit, and a reader takes them as metres");
}

void CIEBlockStreamExporter::NoteRecord(std::string_view record, EDialect eDialect, const CIEStation& station,
                                        const CIEObject& object)
{
    const CString& strName = object.GetName();
    TRecord read;
    if (FindRecordEnd(record, eDialect) != std::string_view::npos || !Parse(record, eDialect, read, true)) {
        Note(TIENote::Changed, EIENote::LineUnreadable, strName,
             read.m_Losses.empty() ? "its name cuts the record in two, and a reader may end here"
                                   : "a reader ends here: " + read.m_Losses.back().m_strReason);
        m_strLastRead.clear();
        return;
    }
    NoteName(read.m_strName, object);
    NoteCoordinates(read, station, strName);
    if (!Carries(CARRIES_CODES))
        return; // told of with the object
    bool bSame = static_cast<std::size_t>(object.GetNumberOfCodes()) == read.m_Codes.size();
    for (int i = 0; bSame && i < object.GetNumberOfCodes(); ++i)
        bSame = object.GetCode(i)->GetDescription()->GetName() == read.m_Codes[static_cast<std::size_t>(i)];
    if (!bSame)
        Note(TIENote::Changed, EIENote::ObjectCodes, strName,
             read.m_Codes.empty() ? "a reader of the form takes no code from its record"
                                  : "its codes don't come back as they are");
}

void CIEBlockStreamExporter::NoteName(const CString& strRead, const CIEObject& object)
{
    constexpr const char* kReason =
        "a reader sees the same name on it and on its neighbour, and makes one line of both";
    const CString& strName = object.GetName();
    if (strRead != strName)
        Note(TIENote::Changed, EIENote::ObjectName, strName, "a reader takes its name as \"" + strRead + "\"");
    if (strRead == m_strLastRead) {
        Note(TIENote::Changed, EIENote::ObjectJoined, strName, kReason);
        if (m_strLastName != strName)
            Note(TIENote::Changed, EIENote::ObjectJoined, m_strLastName, kReason);
    }
    m_strLastName = strName;
    m_strLastRead = strRead;
}

/// Rounding is no loss; digits that a field lacks are.
void CIEBlockStreamExporter::NoteCoordinates(const TRecord& record, const CIEStation& station,
                                             const CString& strName) const
{
    constexpr double kRounding = 0.00051; // of the unit in the file
    const TCoordinates values = GetCoordinates(station);
    const auto isSame = [&record](double dRead, double dWritten) {
        if (record.m_bFeet)
            dRead = IEUtils::FromMetersFactor(dRead, EDIST_UNITS::USSurveyFeet);
        return std::fabs(dRead - dWritten) < kRounding; // false for what isn't finite
    };
    if (!isSame(record.m_dNorth, values[0]) || !isSame(record.m_dEast, values[1]))
        Note(TIENote::Changed, EIENote::ObjectCoordinates, strName,
             "a reader doesn't take its north and its east as they are");
    if (!isSame(record.m_dHeight, values[2]))
        Note(TIENote::Changed, EIENote::ObjectHeight, strName, "a reader doesn't take its height as it is");
}

bool CIEWideBlockPointExporter::OpenFile()
{
    auto pFile = std::make_shared<CIETextWriter>();
    if (!pFile->Create(m_strFileName)) // bytes go past the encoding
        return false;
    m_pFile = std::move(pFile);
    m_pData->AddFileNameToExported(m_strFileName);
    m_pBlocks = std::make_unique<CIEBlockWriter>(m_pData->GetSettings().m_strCodePage);
    NoteJob(false);
    return true;
}

bool CIEWideBlockPointExporter::CloseFile()
{
    if (m_pFile) {
        m_pBlocks->Add("_");
        m_pBlocks->WriteBlock(m_pFile->GetFile(), {}, true);
    }
    return CIEPointExporter::CloseFile();
}

bool CIEWideBlockPointExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!m_pFile || !pStation || !pObject || pObject->GetGroupType() != CIEObject::PointLike)
        return true;
    const CString strName = MakePlain(pObject->GetName(), false);
    m_strRecord = MarkerOf(EDialect::Wide);
    m_strRecord += IEUtils::GetReportString(' ', kWideName, false, IEUtils::Right(strName, kWideName));
    const TCoordinates values = GetCoordinates(*pStation);
    for (std::size_t i = 0; i < values.size(); ++i) {
        m_strRecord += "_ ";
        m_strRecord += "xyz"[i];
        m_strRecord += SignOf(values[i]);
        // eleven digits, of which a whole number of 32 bits keeps what it can
        AppendWhole(m_strRecord, static_cast<std::int32_t>(ToThousandths(values[i], kElevenDigits)), kNine);
    }
    if (const CString strCode = MakePlain(MakeCodeString(pObject, false, false, false), true); !strCode.empty())
        m_strRecord += "*" + strCode;
    if (m_pData->GetObserver()) {
        CIECodePage& codePage = m_pBlocks->GetCodePage();
        CString strScratch;
        NoteRecord(Decode(codePage.ToBytes(m_strRecord), codePage, strScratch), EDialect::Wide, *pStation, *pObject);
    }
    return m_pBlocks->WriteBlock(m_pFile->GetFile(), m_strRecord, false);
}

bool CIEBlockPointExporter::OpenFile()
{
    NoteJob(m_eForm == EForm::Fgh);
    return CIEPointExporter::OpenFile();
}

bool CIEBlockPointExporter::CloseFile()
{
    if (m_pFile) {
        m_strBlock.clear();
        m_Blocks.Take(m_strBlock, true);
        m_pFile->Write(m_strBlock);
    }
    return CIEPointExporter::CloseFile();
}

bool CIEBlockPointExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pStation || !pObject || pObject->GetGroupType() != CIEObject::PointLike)
        return true;
    if (!m_pFile)
        return false;
    const CString strName = MakePlain(pObject->GetName(), true);
    m_strRecord = "_+";
    m_strRecord += IEUtils::GetReportString(' ', kNarrowName, false, IEUtils::Right(strName, kNarrowName));
    AddCoordinates(*pStation);
    if (m_eForm == EForm::Fgh) {
        const CString strCode = MakePlain(MakeCodeString(pObject, false, false, false), true);
        if (!strCode.empty())
            m_strRecord += "*" + strCode + "_";
    }
    if (m_pData->GetObserver())
        NoteRecord(m_strRecord, EDialect::Narrow, *pStation, *pObject);
    // the mark at the end of a record is the first one of the next
    m_Blocks.Add(std::string_view(m_strRecord).substr(m_bFirstRecord ? 0 : 1));
    m_bFirstRecord = false;
    return WriteBlocks();
}

void CIEBlockPointExporter::AddCoordinates(const CIEStation& station)
{
    const bool bFgh = m_eForm == EForm::Fgh;
    const TCoordinates values = GetCoordinates(station);
    for (std::size_t i = 0; i < values.size(); ++i) {
        m_strRecord += i == 0 ? "_ " : " ";
        m_strRecord += (bFgh ? "fgh" : "xyz")[i];
        m_strRecord += SignOf(values[i]);
        AppendWhole(m_strRecord, ToThousandths(values[i], bFgh ? kNineDigits : kElevenDigits), bFgh ? kNine : kEleven);
        if (bFgh)
            m_strRecord += IsMetric() ? 'm' : 'f';
        m_strRecord += '_';
        if (bFgh && Thousandths(values[i]) > kNineDigits)
            m_nResult = IE_VALUE_TOO_WIDE;
    }
}

/// A buffer that is just full after the first block waits for what comes.
bool CIEBlockPointExporter::WriteBlocks()
{
    m_strBlock.clear();
    bool bWritten = true;
    while (bWritten && m_Blocks.Take(m_strBlock, false)) {
        bWritten = m_pFile->Write(m_strBlock);
        m_strBlock.clear();
        if (m_Blocks.GetLength() <= CIEBlockFramer::kTextLength)
            break;
    }
    return bWritten;
}
