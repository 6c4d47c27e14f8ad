// Stations, as points have them and as they stand in lists.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

namespace {

using JobFields::ReadMember;
using JobFields::Value;

void WriteHeight(CIEJobWriting& out, const char* pKey, const CIEStation& station)
{
    if (!station.IsHeightDefined())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.Number(station.GetHeight());
}

bool ReadHeight(CIEJobReading& in, const CIEJsonValue& value, CIEStation& station)
{
    double dHeight = 0.0;
    if (value.Is(CIEJsonTree::Null))
        return true;
    if (!in.Read(value, dHeight))
        return false;
    station.SetHeight(dHeight);
    return true;
}

/// Coordinates are written even where they are 0, so that a row shows a place.
template <auto pMember>
void WriteCoordinate(CIEJobWriting& out, const char* pKey, const CIEStation& station)
{
    out.m_Text.Key(pKey);
    out.m_Text.Number(station.*pMember);
}

constexpr TIEJobField<CIEStation> kStationFields[] = {
    {"north", WriteCoordinate<&CIEStation::m_dNorth>, Value<CIEStation, &CIEStation::m_dNorth>("").m_pRead},
    {"east", WriteCoordinate<&CIEStation::m_dEast>, Value<CIEStation, &CIEStation::m_dEast>("").m_pRead},
    {"height", WriteHeight, ReadHeight},
    Value<CIEStation, &CIEStation::GetGeoidHeight, &CIEStation::SetGeoidHeight>("geoidHeight"),
    Value<CIEStation, &CIEStation::GetNotes, &CIEStation::SetNotes>("notes"),
    Value<CIEStation, &CIEStation::GetTimeStamps, &CIEStation::SetTimeStamps>("timeStamps"),
    Value<CIEStation, &CIEStation::GetStationType, &CIEStation::SetStationType>("stationType"),
};

/// A station of a line has its name among its keys; the name of a point is the object's.
constexpr TIEJobField<CIEStation> kStationName[] = {
    Value<CIEStation, &CIEStation::GetName, &CIEStation::SetName>("name"),
};

bool IsBare(const CIEStation& station)
{
    return station.GetName().empty() && station.GetNotes().empty() && station.GetTimeStamps().empty() &&
           station.GetGeoidHeight() == 0.0 && station.GetStationType() == 0;
}

} // namespace

void JobParts::WriteStationFields(CIEJobWriting& out, const CIEStation& station)
{
    JobFields::Write(out, station, kStationFields);
}

EJobMember JobParts::ReadStationMember(CIEJobReading& in, const CIEJsonValue& member, CIEStation& station)
{
    return ReadMember(in, member, station, kStationFields);
}

void JobParts::WriteNamedStationFields(CIEJobWriting& out, const CIEStation& station)
{
    JobFields::Write(out, station, kStationName);
    WriteStationFields(out, station);
}

EJobMember JobParts::ReadNamedStationMember(CIEJobReading& in, const CIEJsonValue& member, CIEStation& station)
{
    const EJobMember eMember = ReadStationMember(in, member, station);
    return eMember == EJobMember::Unknown ? ReadMember(in, member, station, kStationName) : eMember;
}

void JobParts::WriteStation(CIEJobWriting& out, const CIEStation& station)
{
    if (!IsBare(station)) {
        out.m_Text.BeginObject();
        WriteNamedStationFields(out, station);
        out.m_Text.EndObject();
        return;
    }
    out.m_Text.BeginArray();
    out.m_Text.Number(station.m_dNorth);
    out.m_Text.Number(station.m_dEast);
    if (station.IsHeightDefined())
        out.m_Text.Number(station.GetHeight());
    out.m_Text.EndArray();
}

bool JobParts::ReadStation(CIEJobReading& in, const CIEJsonValue& value, CIEStation& station)
{
    station.SetHeightUndefined();
    if (value.Is(CIEJsonTree::Array)) {
        if (value.GetSize() < 2 || value.GetSize() > 3)
            return in.Fail(value, "A station is north, east and, if it has one, height.");
        auto it = value.begin();
        return in.Read(*it, station.m_dNorth) && in.Read(*++it, station.m_dEast) &&
               (++it == value.end() || ReadHeight(in, *it, station));
    }
    if (!value.Is(CIEJsonTree::Object))
        return in.Fail(value, "A station is wanted here: [north, east, height] or an object in { }.");
    for (const CIEJsonValue member : value) {
        const EJobMember eMember = ReadNamedStationMember(in, member, station);
        if (eMember != EJobMember::Done)
            return eMember == EJobMember::Unknown ? in.FailUnknownKey(member) : false;
    }
    return true;
}
