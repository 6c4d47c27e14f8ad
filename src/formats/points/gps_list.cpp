#include "formats/points/gps_list.h"

#include "alidade/vellumlib/utils.h"
#include "formats/points/layout_gaps.h"
#include "formats/points/row_texts.h"
#include "frame/losses.h"

#include <fmt/format.h>

namespace {

constexpr int kDecimals = 3;

unsigned CarriedByField(IEAsciiFields::EType eField)
{
    switch (eField) {
    case IEAsciiFields::GeoidHeight:
        return CARRIES_GEOID_HEIGHTS;
    case IEAsciiFields::Notes:
        return CARRIES_NOTES;
    case IEAsciiFields::Codes:
        return CARRIES_CODES;
    case IEAsciiFields::CodesWithStrings:
        return CARRIES_CODES | CARRIES_CODE_STRINGS;
    case IEAsciiFields::CodesWithAttributes:
        return CARRIES_CODES | CARRIES_ATTRIBUTES;
    case IEAsciiFields::CodesWithAll:
        return CARRIES_CODES | CARRIES_ATTRIBUTES | CARRIES_CODE_STRINGS | CARRIES_CONTROL_CODES;
    default:
        return CARRIES_NOTHING;
    }
}

using TGap = TIELayoutGap<CIEGPSPosition>;

#define HAS(condition) [](const CIEGPSPosition& position) -> bool { return condition; }
constexpr TGap kGaps[] = {
    {IEAsciiFields::Name, EIENote::ObjectName, "name", HAS(!position.GetName().empty())},
    {IEAsciiFields::North, EIENote::ObjectCoordinates, "north", HAS(position.GetStation()->m_dNorth != 0.0)},
    {IEAsciiFields::East, EIENote::ObjectCoordinates, "east", HAS(position.GetStation()->m_dEast != 0.0)},
    {IEAsciiFields::Height, EIENote::ObjectHeight, "height", HAS(position.GetStation()->GetHeight() != 0.0)},
    {IEAsciiFields::HorizontalRMS, EIENote::ObjectGpsData, "horizontal accuracy", HAS(position.HasCV())},
    {IEAsciiFields::VerticalRMS, EIENote::ObjectGpsData, "vertical accuracy", HAS(position.HasCV())},
    {TGap::kNoField, EIENote::ObjectGpsData, "covariances",
     HAS(position.GetCV().m_dXY != 0.0 || position.GetCV().m_dXZ != 0.0 || position.GetCV().m_dYZ != 0.0)},
    {IEAsciiFields::Date, EIENote::ObjectGpsData, "date", HAS(position.HasTime())},
    {IEAsciiFields::Time, EIENote::ObjectGpsData, "time", HAS(position.HasTime())},
    {IEAsciiFields::PositionDOP, EIENote::ObjectGpsData, "PDOP", HAS(position.GetDOP().m_dPDOP != 0.0)},
    {IEAsciiFields::HorizontalDOP, EIENote::ObjectGpsData, "HDOP", HAS(position.GetDOP().m_dHDOP != 0.0)},
    {IEAsciiFields::VerticalDOP, EIENote::ObjectGpsData, "VDOP", HAS(position.GetDOP().m_dVDOP != 0.0)},
    {TGap::kNoField, EIENote::ObjectGpsData, "GDOP", HAS(position.GetDOP().m_dGDOP != 0.0)},
    {IEAsciiFields::Solution, EIENote::ObjectGpsData, "solution", HAS(position.GetSolutionType() != 0)},
    {IEAsciiFields::GpsSatellites, EIENote::ObjectGpsData, "GPS satellites", HAS(position.GetNumberOfGpsSats() != 0)},
    {IEAsciiFields::GlonassSatellites, EIENote::ObjectGpsData, "Glonass satellites",
     HAS(position.GetNumberOfGlonassSats() != 0)},
};
#undef HAS

} // namespace

bool CIEGPSListExporter::OpenFile()
{
    TIECarries nCarries = CARRIES_GPS_DATA | CARRIES_POINT_KINDS;
    for (const IEAsciiFields::EType eField : m_pData->GetSettings().GetAsciiFormat().m_Fields) {
        nCarries |= CarriedByField(eField);
        if (eField > IEAsciiFields::GlonassSatellites)
            Note(TIENote::LeftOut, EIENote::LayoutField, {},
                 "its field \"" + IEAsciiFields::FieldsToString({eField}) +
                     "\" stays empty in a list of GPS positions");
    }
    SetCarries(nCarries);
    Losses::NoteCoarseDegrees(*m_pData, m_strFileName);
    return CIEPointExporter::OpenFile();
}

bool CIEGPSListExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pStation || !pObject || pObject->GetType() != EIEObjectsType::GPSPosition)
        return true;
    if (!m_pFile)
        return false;
    const auto& position = static_cast<const CIEGPSPosition&>(*pObject);
    if (m_pData->GetObserver()) {
        NoteMissing(position);
        NoteTexts(position);
    }
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    const CString strDelimiter = IEUtils::CharToString(format.m_cDelimiter);
    m_Line.Clear();
    for (std::size_t i = 0; i < format.m_Fields.size(); ++i) {
        if (i > 0)
            m_Line.Add(strDelimiter);
        if (format.m_Fields[i] < IEAsciiFields::HorizontalRMS)
            AddField(format.m_Fields[i], *pStation, *pObject);
        else
            AddGPSField(format.m_Fields[i], position);
    }
    return m_Line.EndTo(*m_pFile);
}

void CIEGPSListExporter::AddGPSField(int nField, const CIEGPSPosition& position)
{
    const bool bSatellites = position.GetRawDataType() == CIEGPSPosition::SatelliteData;
    if (nField >= IEAsciiFields::PositionDOP && !bSatellites)
        return;
    const TIEDateTime& time = position.GetTime();
    switch (nField) {
    case IEAsciiFields::HorizontalRMS:
        AddDistance(position.GetCV().GetHRMS(), kDecimals);
        break;
    case IEAsciiFields::VerticalRMS:
        AddDistance(position.GetCV().GetVRMS(), kDecimals);
        break;
    case IEAsciiFields::Date:
        m_Line.Add(fmt::format("{:04}-{:02}-{:02}", time.m_nYear, time.m_nMonth, time.m_nDay));
        break;
    case IEAsciiFields::Time:
        m_Line.Add(fmt::format("{:02}:{:02}:{:02}", time.m_nHour, time.m_nMinute, time.m_nSecond));
        break;
    case IEAsciiFields::PositionDOP:
        m_Line.AddFixed(position.GetDOP().m_dPDOP, kDecimals);
        break;
    case IEAsciiFields::HorizontalDOP:
        m_Line.AddFixed(position.GetDOP().m_dHDOP, kDecimals);
        break;
    case IEAsciiFields::VerticalDOP:
        m_Line.AddFixed(position.GetDOP().m_dVDOP, kDecimals);
        break;
    case IEAsciiFields::Solution:
        AddText(position.GetSolutionTypeAsString());
        break;
    case IEAsciiFields::GpsSatellites:
        m_Line.AddInt(position.GetNumberOfGpsSats());
        break;
    case IEAsciiFields::GlonassSatellites:
        m_Line.AddInt(position.GetNumberOfGlonassSats());
        break;
    default:
        break; // a property that other lists know stays empty
    }
}

void CIEGPSListExporter::NoteMissing(const CIEGPSPosition& position) const
{
    const IEAsciiFields::TFields& layout = m_pData->GetSettings().GetAsciiFormat().m_Fields;
    const auto has = [&layout](IEAsciiFields::EType eField) {
        return IEAsciiFields::FindTypeInArray(eField, layout) >= 0;
    };
    const CString& strName = position.GetName();
    ForEachLayoutGap(kGaps, layout, position, [&](EIENote eCode, const CString& strWords) {
        Note(TIENote::LeftOut, eCode, strName, "the list has no field for its " + strWords);
    });
    if (!position.HasCV() && (has(IEAsciiFields::HorizontalRMS) || has(IEAsciiFields::VerticalRMS)))
        Note(TIENote::Changed, EIENote::ObjectNoAccuracy, strName, "its accuracy isn't known and is written as 0");
    if (!position.HasTime() && (has(IEAsciiFields::Date) || has(IEAsciiFields::Time)))
        Note(TIENote::Changed, EIENote::ObjectNoTime, strName, "its date and time aren't known and are written as 0");
}

void CIEGPSListExporter::NoteTexts(const CIEGPSPosition& position)
{
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    const auto note = [&](EIENote eCode, const char* pWhat) {
        Note(TIENote::Changed, eCode, position.GetName(),
             CString("the delimiter or a line end in its ") + pWhat + " doesn't come back as it is");
    };
    for (const IEAsciiFields::EType eField : format.m_Fields) {
        if (eField == IEAsciiFields::Name && BreaksRow(position.GetName(), format.m_cDelimiter))
            note(EIENote::ObjectName, "name");
        if (eField == IEAsciiFields::Notes && BreaksRow(position.GetStation()->GetNotes(), format.m_cDelimiter))
            note(EIENote::ObjectNotes, "notes");
        if (eField == IEAsciiFields::Solution && position.GetRawDataType() == CIEGPSPosition::SatelliteData &&
            BreaksRow(position.GetSolutionTypeAsString(), format.m_cDelimiter))
            note(EIENote::ObjectGpsData, "solution");
        const unsigned nCodes = CarriedByField(eField);
        if ((nCodes & CARRIES_CODES) &&
            BreaksRow(MakeCodeString(&position, (nCodes & CARRIES_ATTRIBUTES) != 0,
                                     (nCodes & CARRIES_CODE_STRINGS) != 0, (nCodes & CARRIES_CONTROL_CODES) != 0),
                      format.m_cDelimiter, position.GetNumberOfCodes()))
            note(EIENote::ObjectCodes, "codes");
    }
}
