#include "formats/points/record_exporter.h"

#include "alidade/frame/format_row.h"
#include "alidade/vellumlib/utils.h"
#include "vellumlib/code_page.h"

#include <cmath>

namespace {

/// The name of a code as these forms write it: a name with a point in it has a prefix of two characters.
std::string_view CodeName(const CIECodeValues* pCode)
{
    constexpr int kPrefix = 2;
    if (!pCode)
        return {};
    const std::string_view name = pCode->GetDescription()->GetName();
    return name.find('.') == std::string_view::npos ? name : name.substr(IEUtils::Left(name, kPrefix).size());
}

std::string_view ControlCode(const CIECodeValues* pCode, int i)
{
    return pCode ? std::string_view(pCode->GetControlCode(i)) : std::string_view();
}

} // namespace

CIERecordExporter::CIERecordExporter(CIEData* pData, const CString& strFileName, const TIEWriteForm& form)
    : CIEPointExporter(pData, strFileName), m_Form(form)
{
}

bool CIERecordExporter::OpenFile()
{
    if (!CIEPointExporter::OpenFile())
        return false;
    if (m_pData->GetObserver()) {
        m_pReader = std::make_shared<CIERecordReader>(*m_Form.m_pWayBack, *m_pData->GetJobInfo());
        NoteUnits();
    }
    return true;
}

bool CIERecordExporter::WriteHeader()
{
    return WriteLine(m_Form.m_pHead);
}

bool CIERecordExporter::WriteFooter()
{
    return WriteLine(m_Form.m_pFoot);
}

bool CIERecordExporter::WriteLine(const char* pText)
{
    if (*pText == '\0')
        return true;
    if (!m_pFile)
        return false;
    m_bFirstLine = false;
    m_Line.Clear();
    return m_Line.Add(pText).EndTo(*m_pFile);
}

bool CIERecordExporter::ExportObject(int nIndex)
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(nIndex) : nullptr;
    const TIECarries nCarries = GetCarries();
    if (pObject)
        SetCarries(nCarries | CarriedFor(*pObject));
    const bool bDone = CIEPointExporter::ExportObject(nIndex);
    SetCarries(nCarries);
    return bDone;
}

/// What the object's own record holds: that of a point-to-line point may have a code where others have none.
unsigned CIERecordExporter::CarriedFor(const CIEObject& object) const
{
    TIECarries nCarries = CARRIES_NOTHING;
    for (const TIEPiece& piece : PiecesFor(object)) {
        if (piece.m_ePiece == EIEPiece::Code)
            nCarries |= CARRIES_CODES;
    }
    return nCarries;
}

bool CIERecordExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pObject || !pStation || pObject->GetGroupType() != CIEObject::PointLike)
        return true;
    if (!m_pFile)
        return false;
    const TIEWriteForm::TPieces pieces = PiecesFor(*pObject);
    if (pieces.empty()) {
        Note(TIENote::LeftOut, EIENote::ObjectKind, pObject->GetName(),
             "the form holds no point-to-line point with coordinates of this type");
        return true;
    }
    m_Line.Clear();
    for (const TIEPiece& piece : pieces)
        AddPiece(piece, *pStation, *pObject);
    if (m_pReader)
        NoteWayBack(*pStation, *pObject);
    m_bFirstLine = false;
    return m_Line.EndTo(*m_pFile);
}

TIEWriteForm::TPieces CIERecordExporter::PiecesFor(const CIEObject& object) const
{
    if (m_Form.m_ToLine.empty() || object.GetType() != EIEObjectsType::PTLPoint)
        return m_Form.m_Record;
    const int nType = static_cast<const CIEPTLPoint&>(object).GetCoordType();
    if (m_Form.m_bAnyCoordType || nType == CIEPTLPoint::PointToLine)
        return m_Form.m_ToLine;
    return nType == CIEPTLPoint::Regular ? m_Form.m_Regular : TIEWriteForm::TPieces();
}

void CIERecordExporter::AddPiece(const TIEPiece& piece, const CIEStation& station, const CIEObject& object)
{
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const EDIST_UNITS units = info.GetDistUnits();
    const EDIST_UNITS plane = info.GetCSType() != TIEJobInfo::Geographic ? units : EDIST_UNITS::None;
    const CIECodeValues* const pCode = object.GetCode(0);
    switch (piece.m_ePiece) {
    case EIEPiece::Literal:
        m_Line.Add(piece.m_pText);
        break;
    case EIEPiece::Name:
        AddField(piece, object.GetName());
        break;
    case EIEPiece::North:
        AddNumber(piece, IEUtils::FromMetersFactor(station.m_dNorth, plane));
        break;
    case EIEPiece::East:
        AddNumber(piece, IEUtils::FromMetersFactor(station.m_dEast, plane));
        break;
    case EIEPiece::Height:
        AddNumber(piece, IEUtils::FromMetersFactor(station.GetHeight(), units));
        break;
    case EIEPiece::HeightUnlessZero: {
        const double dHeight = IEUtils::CheckZeroVal(IEUtils::FromMetersFactor(station.GetHeight(), units));
        // a text to its form: a longer one is cut, and not the row moved
        const CString text = dHeight == 0.0 ? CString() : IEUtils::DoubleToString(dHeight, piece.m_nPrecision);
        AddField(Piece::Right(piece.m_ePiece, piece.m_nWidth), text);
        break;
    }
    case EIEPiece::Code:
        AddField(piece, CodeName(pCode));
        break;
    case EIEPiece::CodeString:
        AddField(piece, pCode ? std::string_view(pCode->GetCodeStringAt(0)) : std::string_view());
        break;
    case EIEPiece::ControlCode0:
        AddField(piece, ControlCode(pCode, 0));
        break;
    case EIEPiece::ControlCode1:
        AddField(piece, ControlCode(pCode, 1));
        break;
    case EIEPiece::Notes:
        if (!station.GetNotes().empty())
            m_Line.Add(piece.m_pText);
        AddField(piece, station.GetNotes());
        break;
    case EIEPiece::FirstReference:
        AddField(piece, static_cast<const CIEPTLPoint&>(object).GetFirstReferencePointIDs());
        break;
    case EIEPiece::SecondReference:
        AddField(piece, static_cast<const CIEPTLPoint&>(object).GetSecondReferencePointIDs());
        break;
    case EIEPiece::Check:
        AddCheck();
        break;
    }
}

void CIERecordExporter::AddNumber(const TIEPiece& piece, double dValue)
{
    m_strCodeLine.clear();
    IEUtils::AppendDouble(m_strCodeLine, IEUtils::CheckZeroVal(dValue), piece.m_nPrecision);
    const auto nWidth = static_cast<std::size_t>(std::abs(piece.m_nWidth));
    if (nWidth > m_strCodeLine.size())
        m_strCodeLine.insert(piece.m_nWidth > 0 ? 0 : m_strCodeLine.size(), nWidth - m_strCodeLine.size(), ' ');
    m_Line.Add(m_strCodeLine);
}

void CIERecordExporter::AddField(const TIEPiece& piece, std::string_view text)
{
    if (piece.m_nPrecision != TIEPiece::kWhole)
        text = IEUtils::Left(text, piece.m_nPrecision);
    const int nBlanks = std::abs(piece.m_nWidth) - (piece.m_nWidth != 0 ? IEUtils::GetMBCSLength(text) : 0);
    const auto addBlanks = [this, nBlanks] {
        for (int i = 0; i < nBlanks; ++i)
            m_Line.Add(' ');
    };
    if (piece.m_nWidth > 0)
        addBlanks();
    AddText(text);
    if (piece.m_nWidth < 0)
        addBlanks();
}

/// A printable character from the sum of the line's bytes as they stand in the file; where these aren't of 8 bits, of
/// those in the code page.
void CIERecordExporter::AddCheck()
{
    constexpr unsigned kCharacters = 64;
    if (!m_pBytes) {
        const TIESettings& settings = m_pData->GetSettings();
        m_pBytes = std::make_shared<CIECodePage>(settings.m_strWriteEncoding);
        if (m_pBytes->GetName() != settings.m_strWriteEncoding)
            m_pBytes = std::make_shared<CIECodePage>(settings.m_strCodePage);
    }
    unsigned nSum = 0;
    for (const char c : m_pBytes->ToBytes(m_Line.GetText()))
        nSum += static_cast<unsigned char>(c);
    m_Line.Add(static_cast<char>(nSum % kCharacters + ' ')).Add(',');
}

void CIERecordExporter::NoteUnits() const
{
    constexpr int kFineDecimals = 9; // a tenth of a millimetre
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const bool bMeters = info.GetDistUnits() == EDIST_UNITS::Meters || info.GetDistUnits() == EDIST_UNITS::None;
    const bool bGeographic = info.GetCSType() == TIEJobInfo::Geographic;
    if (bGeographic && m_Form.m_nDecimals < kFineDecimals)
        Note(TIENote::Changed, EIENote::JobGeographic, {},
             "the form has " + IEUtils::IntToString(m_Form.m_nDecimals) +
                 " decimals for the degrees of latitude and longitude");
    if (!bMeters && m_Form.m_pWayBack->m_eNumbers == TIEReadForm::WithoutUnits)
        Note(TIENote::Changed, EIENote::JobUnits, {},
             "the form states no unit, and a reader takes its lengths as metres");
    else if (!bMeters && bGeographic && m_Form.m_pWayBack->m_eNumbers != TIEReadForm::Coordinates)
        Note(TIENote::Changed, EIENote::JobUnits, {},
             "a reader takes latitude and longitude as lengths in the job's units; only a job in metres reads back");
}

void CIERecordExporter::NoteWayBack(const CIEStation& station, const CIEObject& object)
{
    NoteBytes(m_Line.GetText(), m_bFirstLine, object.GetName());
    std::string_view text = m_Line.GetText();
    std::string_view notes;
    if (m_Form.m_cNoteMark != '\0') {
        constexpr std::string_view kLineEnd = "\r\n";
        const std::size_t nEnd = text.find(kLineEnd);
        notes = m_Form.m_pReadNote(text.substr(nEnd + kLineEnd.size()));
        text = text.substr(0, nEnd);
    }
    CString strLines; // records of several lines are read with one mark between these
    if (m_Form.m_pWayBack->m_cDelimiter == '\n') {
        strLines = text;
        std::erase(strLines, '\r');
        text = strLines;
    }
    if (m_Form.m_cNoteMark != '\0' && text.starts_with(m_Form.m_cNoteMark)) {
        NoteChanged(EIENote::LineUnreadable, object, "its record begins as a note does, and a reader takes it for one");
        return;
    }
    TIEPointRecord record;
    if (!m_pReader->Read(text, record)) {
        NoteChanged(EIENote::LineUnreadable, object, "a reader of the form refuses its record, and may end there");
        return;
    }
    if (m_Form.m_cNoteMark != '\0')
        record.m_Notes = notes;
    if (record.m_Name != object.GetName())
        NoteChanged(EIENote::ObjectName, object, "its name doesn't come back as it is");
    NoteNumbers(station, object, record);
    // where a form has no notes, a reader may still see some; where it has them, they are told of if they differ
    if ((Carries(CARRIES_NOTES) || !record.m_Notes.empty()) && record.m_Notes != station.GetNotes())
        NoteChanged(EIENote::ObjectNotes, object, "a reader takes other notes from its record");
    NoteCodes(object, record);
    NoteKind(object, record);
    if (m_Form.m_bJoins)
        NoteJoin(object, record.m_Name);
}

void CIERecordExporter::NoteNumbers(const CIEStation& station, const CIEObject& object,
                                    const TIEPointRecord& record) const
{
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const bool bGeographic = info.GetCSType() == TIEJobInfo::Geographic;
    const bool bUnits = m_Form.m_pWayBack->m_eNumbers != TIEReadForm::WithoutUnits;
    const double dUnit = bUnits ? IEUtils::ToMetersFactor(1.0, info.GetDistUnits()) : 1.0;
    const auto isNear = [](double dLeft, double dRight, double dStep) {
        constexpr double kHalf = 0.5001;
        constexpr double kDoubles = 1e-14; // what two conversions may cost a double
        return std::abs(dLeft - dRight) <= kHalf * dStep + kDoubles * std::abs(dLeft);
    };
    const bool bOtherUnits = !bUnits && info.GetDistUnits() != EDIST_UNITS::Meters; // told of once, for the job
    const double dStep = std::pow(10.0, -m_Form.m_nDecimals);
    const bool bReadsDegrees = m_Form.m_pWayBack->m_eNumbers == TIEReadForm::Coordinates || dUnit == 1.0;
    const double dCoordStep = bGeographic ? dStep : dStep * dUnit;
    if ((!bGeographic && !bOtherUnits) || (bGeographic && bReadsDegrees)) {
        if (!isNear(station.m_dNorth, record.m_dNorth, dCoordStep) ||
            !isNear(station.m_dEast, record.m_dEast, dCoordStep))
            NoteChanged(EIENote::ObjectCoordinates, object, "a reader takes other coordinates from its record");
    }
    if (!bOtherUnits && !isNear(station.GetHeight(), record.m_dHeight, dStep * dUnit))
        NoteChanged(EIENote::ObjectHeight, object, "a reader takes another height from its record");
}

void CIERecordExporter::NoteCodes(const CIEObject& object, const TIEPointRecord& record) const
{
    if (!Carries(CARRIES_CODES))
        return; // told of with the object
    const CIECodeValues* const pCode = object.GetCode(0);
    if (object.GetNumberOfCodes() > 1)
        Note(TIENote::LeftOut, EIENote::ObjectCodes, object.GetName(), "the form holds the first of its codes alone");
    if (record.m_bCode != (pCode != nullptr))
        NoteChanged(EIENote::ObjectCodes, object,
                    pCode ? "its code doesn't come back" : "a reader gives it a code without a name");
    else if (pCode && record.m_Code != pCode->GetDescription()->GetName())
        NoteChanged(EIENote::ObjectCodes, object, "the name of its code doesn't come back as it is");
    if (!pCode) {
        if (record.m_bCode && !record.m_CodeString.empty())
            NoteChanged(EIENote::ObjectAttributes, object, "a reader gives it a code string");
        return;
    }
    const bool bStrings = Carries(CARRIES_CODE_STRINGS);
    const bool bControls = Carries(CARRIES_CONTROL_CODES);
    bool bSame = record.m_CodeString == pCode->GetCodeStringAt(0) || !bStrings;
    if (!bStrings && !record.m_CodeString.empty())
        bSame = false;
    for (int i = 0; bControls && i < CIECodeValues::kControlCodes; ++i)
        bSame = bSame && record.m_ControlCodes[i] == pCode->GetControlCode(i);
    if (!bSame)
        NoteChanged(EIENote::ObjectAttributes, object, "the code string or control codes don't come back as they are");
    else if (bStrings && pCode->GetNumberOfCodeStrings() > 1)
        Note(TIENote::LeftOut, EIENote::ObjectAttributes, object.GetName(),
             "the form holds the first code string alone");
}

void CIERecordExporter::NoteKind(const CIEObject& object, const TIEPointRecord& record) const
{
    const bool bRelative = object.GetType() == EIEObjectsType::PTLPoint;
    if (record.m_bRelative && !bRelative) {
        NoteChanged(EIENote::ObjectPointKind, object, "a reader takes it for a point-to-line point");
    } else if (record.m_bRelative) {
        const auto& point = static_cast<const CIEPTLPoint&>(object);
        if (point.GetCoordType() != CIEPTLPoint::PointToLine ||
            point.GetFirstReferencePointIDs() != record.m_FirstReference ||
            point.GetSecondReferencePointIDs() != record.m_SecondReference)
            NoteChanged(EIENote::ObjectPointKind, object, "its reference line doesn't come back as it is");
    } else if (bRelative && Carries(CARRIES_RELATIVE_POINTS)) {
        NoteChanged(EIENote::ObjectPointKind, object, "a reader takes it for a plain point");
    }
}

void CIERecordExporter::NoteJoin(const CIEObject& object, std::string_view name)
{
    constexpr const char* kReason =
        "a reader sees the same name on it and on its neighbour, and makes one line of both";
    if (name == m_strLastRead && !name.empty()) {
        NoteChanged(EIENote::ObjectJoined, object, kReason);
        if (m_strLastName != object.GetName())
            Note(TIENote::Changed, EIENote::ObjectJoined, m_strLastName, kReason);
    }
    m_strLastName = object.GetName();
    m_strLastRead = name;
}

void CIERecordExporter::NoteChanged(EIENote eCode, const CIEObject& object, const char* pReason) const
{
    Note(TIENote::Changed, eCode, object.GetName(), pReason);
}
