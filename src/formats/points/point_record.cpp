#include "formats/points/point_record.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

/// Fields of a line that names the two ends of a reference line: name, three numbers, code, both ends.
constexpr std::size_t kFieldsOfRelative = 7;
constexpr std::size_t kShortFirstReference = 5; // without a field for the code string
constexpr std::size_t kLongFirstReference = 6;
constexpr std::size_t kMostFields = 9; ///< one more than the longest record has

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

CString Excerpt(std::string_view text)
{
    constexpr int kShown = 64; // no name or number of sense is longer
    return CString(IEUtils::Left(text, kShown));
}

bool IsNumber(EIEPiece ePiece)
{
    return ePiece == EIEPiece::North || ePiece == EIEPiece::East || ePiece == EIEPiece::Height;
}

constexpr std::string_view kNumberStart = "+-0123456789.";
constexpr std::string_view kNumberEnd = "0123456789.";

/// Columns of a line, with the blanks in them.
std::string_view Columns(std::string_view text, bool bAscii, int nFirst, int nWidth)
{
    if (!bAscii)
        return IEUtils::Mid(text, nFirst, nWidth);
    return text.substr(std::min(static_cast<std::size_t>(nFirst), text.size()), static_cast<std::size_t>(nWidth));
}

/// Whether a number that can be read says something else with what stands right at its ends; a zero behind its decimals
/// doesn't count.
bool ChangesNumber(std::string_view ahead, std::string_view number, std::string_view behind)
{
    const auto isPoints = [](std::string_view text) { return text.find_first_not_of('.') == std::string_view::npos; };
    if (isPoints(ahead) && isPoints(behind))
        return false;
    double dRead = 0.0;
    double dWhole = 0.0;
    const CString strWhole = CString(ahead).append(number).append(behind);
    return IEUtils::StringToDouble(number, dRead, false) &&
           (!IEUtils::StringToDouble(strWhole, dWhole, false) || dRead != dWhole);
}

} // namespace

bool CIERecordReader::Read(std::string_view text, TIEPointRecord& record)
{
    record = {};
    m_Doubts.clear();
    const bool bFields = m_Form.m_cDelimiter != '\0';
    if (bFields ? !ReadFields(text, record) : !ReadColumns(text, record))
        return false;
    if (bFields)
        DoubtFields(text);
    // where a short line has its code string, a point-to-line point has its first reference
    const bool bReference = record.m_bRelative && record.m_CodeString.data() == record.m_FirstReference.data();
    if (!record.m_bCode && !bReference && !IEUtils::Trim(record.m_CodeString).empty())
        Doubt(EIENote::LineCodeString,
              "its code string \"" + Excerpt(record.m_CodeString) + "\" has no code ahead of it", TIENote::LeftOut);
    return true;
}

bool CIERecordReader::ReadFields(std::string_view text, TIEPointRecord& record)
{
    m_Fields.clear();
    // nobody looks at more fields, however many delimiters a line has
    for (std::size_t nStart = 0; !text.empty() && m_Fields.size() < kMostFields;) {
        const std::size_t nEnd = text.find(m_Form.m_cDelimiter, nStart);
        m_Fields.push_back(text.substr(nStart, nEnd - nStart));
        if (nEnd == std::string_view::npos)
            break;
        nStart = nEnd + 1;
    }
    if (m_Fields.empty())
        return Refuse(EIENote::LineEmpty, "the line is empty ahead of the end of the data");
    if (m_Fields.size() < m_Form.m_nFewestFields)
        return Refuse(EIENote::LineFieldCount, "it has " + IEUtils::IntToString(static_cast<int>(m_Fields.size())) +
                                                   " fields, and the form has " +
                                                   IEUtils::IntToString(static_cast<int>(m_Form.m_nFewestFields)));
    for (const TIEPlace& place : m_Form.m_Places) {
        const auto nField = static_cast<std::size_t>(place.m_nFirst);
        // what a short line lacks reads as empty
        std::string_view field = nField < m_Fields.size() ? m_Fields[nField] : std::string_view();
        if (m_Form.m_bFirstFieldOnly)
            field = field.substr(0, field.find(','));
        if (!ReadPiece(place.m_ePiece, field, record))
            return false;
    }
    return !m_Form.m_bRelative || m_Fields.size() < kFieldsOfRelative || ReadReferences(record);
}

/// Whatever the order of the form, north stands first in these lines.
bool CIERecordReader::ReadReferences(TIEPointRecord& record)
{
    const std::size_t nFirst = m_Fields.size() > kFieldsOfRelative ? kLongFirstReference : kShortFirstReference;
    record.m_bRelative = true;
    record.m_FirstReference = m_Fields[nFirst];
    record.m_SecondReference = m_Fields[nFirst + 1];
    if (record.m_FirstReference.empty() && record.m_SecondReference.empty())
        Doubt(EIENote::LineReferences,
              "its number of fields makes it a point-to-line point, but it names no reference line");
    return ReadPiece(EIEPiece::North, m_Fields[1], record) && ReadPiece(EIEPiece::East, m_Fields[2], record);
}

/// Tells of fields that nothing is read from.
void CIERecordReader::DoubtFields(std::string_view text)
{
    if (m_Form.m_pTag && m_Fields[0] != m_Form.m_pTag)
        Doubt(EIENote::LineTag, "its first field \"" + Excerpt(m_Fields[0]) + "\" isn't \"" + m_Form.m_pTag + "\"",
              TIENote::LeftOut);
    if (m_Form.m_nMostFields == 0 || m_Fields.size() <= m_Form.m_nMostFields)
        return;
    const char filler[] = {m_Form.m_cDelimiter, ' ', '\0'};
    text.remove_prefix(static_cast<std::size_t>(m_Fields[m_Form.m_nMostFields].data() - text.data()));
    if (const std::size_t nFirst = text.find_first_not_of(filler); nFirst != std::string_view::npos)
        Doubt(EIENote::LineFields,
              "what stands behind its last field isn't read: \"" + Excerpt(text.substr(nFirst)) + "\"",
              TIENote::LeftOut);
}

bool CIERecordReader::ReadColumns(std::string_view text, TIEPointRecord& record)
{
    const bool bAscii = IsAscii(text); // its columns are its bytes
    text =
        bAscii ? text.substr(0, static_cast<std::size_t>(m_Form.m_nColumns)) : IEUtils::Left(text, m_Form.m_nColumns);
    for (const TIEPlace& place : m_Form.m_Places) {
        if (!ReadPiece(place.m_ePiece, IEUtils::Trim(Columns(text, bAscii, place.m_nFirst, place.m_nWidth)), record))
            return false;
    }
    DoubtNumbers(text, bAscii);
    return true;
}

/// Tells of a number that reaches beyond its columns, into the gap ahead of it or behind it.
void CIERecordReader::DoubtNumbers(std::string_view text, bool bAscii)
{
    const std::span<const TIEPlace> places = m_Form.m_Places;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const TIEPlace& place = places[i];
        const std::string_view number = Columns(text, bAscii, place.m_nFirst, place.m_nWidth);
        if (!IsNumber(place.m_ePiece) || number.empty())
            continue;
        const int nEnd = place.m_nFirst + place.m_nWidth;
        const int nGap = i > 0 ? places[i - 1].m_nFirst + places[i - 1].m_nWidth : 0;
        const int nNext = i + 1 < places.size() ? places[i + 1].m_nFirst : TIEPlace::kToEnd;
        std::string_view ahead = Columns(text, bAscii, nGap, place.m_nFirst - nGap);
        std::string_view behind = Columns(text, bAscii, nEnd, nNext - nEnd);
        ahead.remove_prefix(number.starts_with(' ') ? ahead.size() : ahead.find_last_not_of(kNumberStart) + 1);
        behind = behind.substr(0, number.ends_with(' ') ? 0 : behind.find_first_not_of(kNumberEnd));
        if (!ChangesNumber(ahead, number, behind))
            continue;
        Doubt(EIENote::LineNumberCut, "its number \"" + CString(ahead) + CString(number) + Excerpt(behind) +
                                          "\" reaches beyond its columns, and what stands there isn't read");
        return;
    }
}

bool CIERecordReader::ReadPiece(EIEPiece ePiece, std::string_view text, TIEPointRecord& record)
{
    switch (ePiece) {
    case EIEPiece::Name:
        if (m_Form.m_eName == TIEReadForm::Any || IEUtils::IsValidName(text))
            record.m_Name = text;
        else if (m_Form.m_eName == TIEReadForm::MustBeValid)
            return Refuse(EIENote::LineName, "\"" + Excerpt(text) + "\" can't name a point");
        else if (!text.empty())
            Doubt(EIENote::LineName, "\"" + Excerpt(text) + "\" can't name a point and is left out");
        return true;
    case EIEPiece::North:
        return ReadNumber(text, false, "north", record.m_dNorth);
    case EIEPiece::East:
        return ReadNumber(text, false, "east", record.m_dEast);
    case EIEPiece::Height:
    case EIEPiece::HeightUnlessZero:
        return ReadHeight(text, record);
    case EIEPiece::Code:
        record.m_Code = text;
        record.m_bCode = m_Form.m_bAlwaysCode || !text.empty();
        return true;
    case EIEPiece::CodeString:
        record.m_CodeString = text;
        return true;
    case EIEPiece::ControlCode0:
        record.m_ControlCodes[0] = text;
        return true;
    case EIEPiece::ControlCode1:
        record.m_ControlCodes[1] = text;
        return true;
    case EIEPiece::Notes:
        record.m_Notes = text;
        return true;
    case EIEPiece::FirstReference:
        record.m_FirstReference = text;
        return true;
    case EIEPiece::SecondReference:
        record.m_SecondReference = text;
        return true;
    case EIEPiece::Literal:
    case EIEPiece::Check:
        break; // mean nothing to a reader
    }
    return true;
}

bool CIERecordReader::ReadHeight(std::string_view text, TIEPointRecord& record)
{
    if (text.empty() && m_Form.m_dMissingHeight != 0.0) {
        record.m_dHeight = m_Form.m_dMissingHeight;
        return true;
    }
    if (text.empty() && (m_Form.m_bHeightMayLack || m_Form.m_eNumbers == TIEReadForm::WithoutUnits)) {
        record.m_bHeight = !m_Form.m_bHeightMayLack;
        return true;
    }
    return ReadNumber(text, true, "height", record.m_dHeight);
}

bool CIERecordReader::ReadNumber(std::string_view text, bool bHeight, const char* pWhat, double& dValue)
{
    bool bOk = true;
    double dRead = 0.0;
    const bool bDegrees =
        m_Form.m_eNumbers == TIEReadForm::Coordinates && !bHeight && m_Info.GetCSType() == TIEJobInfo::Geographic;
    if (bDegrees || m_Form.m_eNumbers == TIEReadForm::WithoutUnits)
        bOk = IEUtils::StringToDouble(text, dRead, false);
    else
        dRead = IEUtils::StringByStyleToDist(m_Info.GetDistUnits(), text, bOk);
    if (bOk) {
        dValue = dRead;
        return true;
    }
    const CString strReason = CString("its ") + pWhat + " \"" + Excerpt(text) + "\" can't be read";
    const bool bLeftOut = m_Form.m_eNumbers == TIEReadForm::LengthsIfValid || bDegrees ||
                          (bHeight && m_Form.m_eNumbers == TIEReadForm::WithoutUnits);
    return bLeftOut ? Doubt(EIENote::LineNumber, strReason + " and is 0") : Refuse(EIENote::LineNumber, strReason);
}

bool CIERecordReader::Doubt(EIENote eCode, CString strReason, TIENote::EKind eKind)
{
    m_Doubts.push_back({eKind, eCode, std::move(strReason)});
    return true;
}

bool CIERecordReader::Refuse(EIENote eCode, CString strReason)
{
    m_eRefusalCode = eCode;
    m_strRefusal = std::move(strReason);
    return false;
}

std::unique_ptr<CIEObject> CIERecordReader::MakePoint(CIEData& job, const TIEPointRecord& record)
{
    CIEStation station(record.m_dNorth, record.m_dEast, record.m_dHeight);
    station.SetName(CString(record.m_Name));
    if (!record.m_bHeight)
        station.SetHeightUndefined();
    if (!record.m_Notes.empty())
        station.SetNotes(CString(record.m_Notes));

    std::unique_ptr<CIEDesignPoint> pPoint;
    if (record.m_bRelative) {
        auto pRelative = std::make_unique<CIEPTLPoint>(std::move(station));
        pRelative->SetPTLParams(CString(record.m_FirstReference), CString(record.m_SecondReference),
                                CIEPTLPoint::PointToLine);
        pPoint = std::move(pRelative);
    } else {
        pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
    }
    if (!record.m_bCode)
        return pPoint;

    CIECodeValues code(job.TakeCode(record.m_Code));
    for (int i = 0; i < CIECodeValues::kControlCodes; ++i) {
        if (!record.m_ControlCodes[i].empty())
            code.SetControlCode(i, CString(record.m_ControlCodes[i]));
    }
    if (!record.m_CodeString.empty())
        code.AddCodeString(CString(record.m_CodeString));
    pPoint->AddCode(std::move(code));
    return pPoint;
}
