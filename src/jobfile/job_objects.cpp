// The objects of a dataset.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

#include "alidade/vellumlib/gps_position.h"
#include "alidade/vellumlib/sheet_point.h"

#include <algorithm>

namespace {

using JobFields::ReadMember;
using JobFields::Value;
using JobFields::Word;

// ---- what every object has

constexpr TIEJobWord kStates[] = {{"block", CIEObject::InBlock}, {"drawing", CIEObject::InDrawing}};

void WriteLayer(CIEJobWriting& out, const char* pKey, const CIEObject& object)
{
    if (!object.GetLayer())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.Text(object.GetLayer()->GetName());
}

bool ReadLayer(CIEJobReading& in, const CIEJsonValue& value, CIEObject& object)
{
    CString name;
    if (!in.Read(value, name))
        return false;
    CIEDrawDictionary& layers = *in.GetJob().GetIEDrawDictionary();
    const CIELayer* const pThere = layers.FindLayer(name);
    object.SetLayer(pThere ? pThere : layers.AddLayer(std::make_unique<CIELayer>(std::move(name))));
    return true;
}

void WriteState(CIEJobWriting& out, const char* pKey, const CIEObject& object)
{
    if (object.GetStateType() == CIEObject::InDrawing)
        return;
    out.m_Text.Key(pKey);
    out.WriteWord(kStates, std::size(kStates), object.GetStateType());
}

bool ReadState(CIEJobReading& in, const CIEJsonValue& value, CIEObject& object)
{
    int nState = 0;
    if (!in.ReadWord(value, kStates, std::size(kStates), nState))
        return false;
    object.SetStateType(nState);
    return true;
}

void WriteDrawing(CIEJobWriting& out, const char* pKey, const CIEObject& object)
{
    JobParts::WriteDrawProperties(out, pKey, object.GetDrawProperties());
}

bool ReadDrawing(CIEJobReading& in, const CIEJsonValue& value, CIEObject& object)
{
    auto pProperties = JobParts::ReadDrawProperties(in, value);
    if (!pProperties)
        return false;
    object.SetDrawProperties(std::move(pProperties));
    return true;
}

constexpr TIEJobField<CIEObject> kObjectFields[] = {
    {"layer", WriteLayer, ReadLayer},
    {JobParts::kDrawKey, WriteDrawing, ReadDrawing},
    {"state", WriteState, ReadState},
    {"codes", JobParts::WriteCodes, JobParts::ReadCodes},
};

// ---- kinds of objects

/// Reads an object's members: the one named after the kind is its name, `readOwn` takes those of the kind, and the rest
/// are those of every object.
template <class TReadOwn>
bool ReadMembers(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind, CIEObject& object,
                 TReadOwn readOwn)
{
    for (const CIEJsonValue member : value) {
        if (kind.Is(member.GetKey())) {
            CString name;
            if (!in.Read(member, name))
                return false;
            object.SetName(std::move(name));
            continue;
        }
        EJobMember eMember = readOwn(member);
        if (eMember == EJobMember::Unknown)
            eMember = ReadMember(in, member, object, kObjectFields);
        if (eMember != EJobMember::Done)
            return eMember == EJobMember::Unknown ? in.FailUnknownKey(member) : false;
    }
    return true;
}

/// A row of the table of kinds. The object's name stands under the word.
struct TKind {
    CIEJobKey m_Word;
    EIEObjectsType m_eType;
    void (*m_pWriteOwn)(CIEJobWriting& out, const CIEObject& object);
    std::unique_ptr<CIEObject> (*m_pRead)(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind);
};

void WritePointOwn(CIEJobWriting& out, const CIEObject& object)
{
    JobParts::WriteStationFields(out, *object.GetStation(0));
}

constexpr TIEJobWord kCoordTypes[] = {{"regular", CIEPTLPoint::Regular}, {"point-to-line", CIEPTLPoint::PointToLine}};

/// What a point holds besides its station while it is being read.
struct TPTLParams {
    CString m_strFirst;
    CString m_strSecond;
    int m_nCoordType = CIEPTLPoint::Regular;
};
constexpr TIEJobField<TPTLParams> kPTLFields[] = {
    Value<TPTLParams, &TPTLParams::m_strFirst>("firstReference"),
    Value<TPTLParams, &TPTLParams::m_strSecond>("secondReference"),
    Word<TPTLParams, kCoordTypes, &TPTLParams::m_nCoordType>("coordType"),
};

void WritePTLPointOwn(CIEJobWriting& out, const CIEObject& object)
{
    WritePointOwn(out, object);
    const auto& point = static_cast<const CIEPTLPoint&>(object);
    const TPTLParams params{point.GetFirstReferencePointIDs(), point.GetSecondReferencePointIDs(),
                            point.GetCoordType()};
    JobFields::Write(out, params, kPTLFields);
}

void WriteGPSPositionOwn(CIEJobWriting& out, const CIEObject& object)
{
    WritePointOwn(out, object);
    JobParts::WriteGPSFields(out, static_cast<const CIEGPSPosition&>(object));
}

template <class TPoint>
std::unique_ptr<CIEObject> ReadPoint(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind)
{
    auto pPoint = std::make_unique<TPoint>();
    CIEStation station;
    TPTLParams params;
    station.SetHeightUndefined();
    const auto readOwn = [&](const CIEJsonValue& member) {
        EJobMember eMember = JobParts::ReadStationMember(in, member, station);
        if constexpr (std::is_same_v<TPoint, CIEPTLPoint>) {
            if (eMember == EJobMember::Unknown)
                eMember = ReadMember(in, member, params, kPTLFields);
        }
        if constexpr (std::is_same_v<TPoint, CIEGPSPosition>) {
            if (eMember == EJobMember::Unknown)
                eMember = JobParts::ReadGPSMember(in, member, *pPoint);
        }
        return eMember;
    };
    if (!ReadMembers(in, value, kind, *pPoint, readOwn))
        return nullptr;
    station.SetName(pPoint->GetName());
    pPoint->SetStation(std::move(station));
    if constexpr (std::is_same_v<TPoint, CIEPTLPoint>)
        pPoint->SetPTLParams(std::move(params.m_strFirst), std::move(params.m_strSecond), params.m_nCoordType);
    return pPoint;
}

constexpr TIEJobField<CIEOffsetStation> kOffsetFields[] = {
    Value<CIEOffsetStation, &CIEOffsetStation::m_dDeltaNorth>("deltaNorth"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dDeltaEast>("deltaEast"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dDeltaHeight>("deltaHeight"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dLineStation>("lineStation"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dLineOffset>("lineOffset"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dDeltaStation>("deltaStation"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dDeltaOffset>("deltaOffset"),
    Value<CIEOffsetStation, &CIEOffsetStation::m_dDistance>("distance"),
};
constexpr const char* kDesignKey = "design";
constexpr const char* kMeasurementsKey = "measurements";

void WriteSheetPointOwn(CIEJobWriting& out, const CIEObject& object)
{
    const auto& sheet = static_cast<const CIESheetPoint&>(object);
    if (!sheet.GetStation(0))
        return;
    out.m_Text.Key(kDesignKey);
    JobParts::WriteStation(out, *sheet.GetStation(0));
    if (!sheet.GetStation(1))
        return;
    out.m_Text.Key(kMeasurementsKey);
    out.m_Text.BeginArray();
    for (int i = 1; const CIEOffsetStation* const pMeasurement = sheet.GetOffsetStation(i); ++i) {
        out.m_Text.BeginObject();
        JobParts::WriteNamedStationFields(out, *pMeasurement);
        JobFields::Write(out, *pMeasurement, kOffsetFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool ReadMeasurement(CIEJobReading& in, const CIEJsonValue& value, CIEOffsetStation& measurement)
{
    if (value.Is(CIEJsonTree::Array))
        return JobParts::ReadStation(in, value, measurement);
    if (!in.WantObject(value))
        return false;
    measurement.SetHeightUndefined();
    for (const CIEJsonValue member : value) {
        EJobMember eMember = JobParts::ReadNamedStationMember(in, member, measurement);
        if (eMember == EJobMember::Unknown)
            eMember = ReadMember(in, member, measurement, kOffsetFields);
        if (eMember != EJobMember::Done)
            return eMember == EJobMember::Unknown ? in.FailUnknownKey(member) : false;
    }
    return true;
}

/// The design point may stand behind its measurements.
std::unique_ptr<CIEObject> ReadSheetPoint(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind)
{
    auto pSheet = std::make_unique<CIESheetPoint>();
    std::vector<CIEOffsetStation> measurements;
    const auto readMeasurement = [&](const CIEJsonValue& element) {
        return ReadMeasurement(in, element, measurements.emplace_back());
    };
    const auto readOwn = [&](const CIEJsonValue& member) {
        if (member.GetKey() == kMeasurementsKey)
            return JobFields::ReadList(in, member, readMeasurement) ? EJobMember::Done : EJobMember::Failed;
        if (member.GetKey() != kDesignKey)
            return EJobMember::Unknown;
        CIEStation design;
        if (!JobParts::ReadStation(in, member, design))
            return EJobMember::Failed;
        pSheet->SetDesignStation(std::move(design));
        return EJobMember::Done;
    };
    if (!ReadMembers(in, value, kind, *pSheet, readOwn))
        return nullptr;
    for (CIEOffsetStation& measurement : measurements) {
        if (!pSheet->AddOffsetStation(std::move(measurement))) {
            in.Fail(*value.Find(kMeasurementsKey), "Measurements need a design point, which stands under design.");
            return nullptr;
        }
    }
    return pSheet;
}

void WriteLineOwn(CIEJobWriting& out, const CIEObject& object)
{
    if (object.GetNumberOfStations() == 0)
        return;
    out.m_Text.Key("stations");
    out.m_Text.BeginArray();
    for (int i = 0; i < object.GetNumberOfStations(); ++i)
        JobParts::WriteStation(out, *object.GetStation(i));
    out.m_Text.EndArray();
}

template <class TLine>
std::unique_ptr<CIEObject> ReadLine(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind)
{
    auto pLine = std::make_unique<TLine>();
    const auto readStation = [&](const CIEJsonValue& element) {
        CIEStation station;
        if (!JobParts::ReadStation(in, element, station))
            return false;
        pLine->AddStation(std::move(station));
        return true;
    };
    const auto readOwn = [&](const CIEJsonValue& member) {
        if (member.GetKey() != "stations")
            return EJobMember::Unknown;
        return JobFields::ReadList(in, member, readStation) ? EJobMember::Done : EJobMember::Failed;
    };
    if (!ReadMembers(in, value, kind, *pLine, readOwn))
        return nullptr;
    return pLine;
}

template <int nKey>
double GetArcData(const CIEArc& arc)
{
    return arc.GetData(nKey);
}

template <int nKey>
void SetArcData(CIEArc& arc, double dValue)
{
    arc.SetData(nKey, dValue);
}

constexpr TIEJobField<CIEArc> kArcFields[] = {
    Value<CIEArc, &GetArcData<CIEArc::Radius>, &SetArcData<CIEArc::Radius>>("radius"),
    Value<CIEArc, &GetArcData<CIEArc::StartAngle>, &SetArcData<CIEArc::StartAngle>>("startAngle"),
    Value<CIEArc, &GetArcData<CIEArc::EndAngle>, &SetArcData<CIEArc::EndAngle>>("endAngle"),
};

void WriteArcOwn(CIEJobWriting& out, const CIEObject& object)
{
    WritePointOwn(out, object);
    JobFields::Write(out, static_cast<const CIEArc&>(object), kArcFields);
}

std::unique_ptr<CIEObject> ReadArc(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind)
{
    auto pArc = std::make_unique<CIEArc>();
    CIEStation center;
    center.SetHeightUndefined();
    const auto readOwn = [&](const CIEJsonValue& member) {
        const EJobMember eMember = JobParts::ReadStationMember(in, member, center);
        return eMember == EJobMember::Unknown ? ReadMember(in, member, *pArc, kArcFields) : eMember;
    };
    if (!ReadMembers(in, value, kind, *pArc, readOwn))
        return nullptr;
    center.SetName(pArc->GetName());
    pArc->SetStation(std::move(center));
    return pArc;
}

constexpr const char* kPartsKey = "parts";

void WriteCompositeOwn(CIEJobWriting& out, const CIEObject& object)
{
    const auto& composite = static_cast<const CIECompositeObject&>(object);
    if (composite.GetNumberOfParts() == 0)
        return;
    out.m_Text.Key(kPartsKey);
    out.m_Text.BeginArray();
    for (int i = 0; const CIEObject* const pPart = composite.GetPartAt(i); ++i)
        JobParts::WriteObject(out, *pPart);
    out.m_Text.EndArray();
}

std::unique_ptr<CIEObject> ReadComposite(CIEJobReading& in, const CIEJsonValue& value, const CIEJobKey& kind)
{
    auto pComposite = std::make_unique<CIECompositeObject>();
    const auto readPart = [&](const CIEJsonValue& element) {
        auto pPart = JobParts::ReadObject(in, element);
        if (!pPart)
            return false;
        return pComposite->AddPart(std::move(pPart)) || in.Fail(element, "A composite can't be part of another.");
    };
    const auto readOwn = [&](const CIEJsonValue& member) {
        if (member.GetKey() != kPartsKey)
            return EJobMember::Unknown;
        return JobFields::ReadList(in, member, readPart) ? EJobMember::Done : EJobMember::Failed;
    };
    if (!ReadMembers(in, value, kind, *pComposite, readOwn))
        return nullptr;
    return pComposite;
}

constexpr TKind kKinds[] = {
    {"point", EIEObjectsType::DesignPoint, WritePointOwn, ReadPoint<CIEDesignPoint>},
    {"ptlPoint", EIEObjectsType::PTLPoint, WritePTLPointOwn, ReadPoint<CIEPTLPoint>},
    {"gpsPosition", EIEObjectsType::GPSPosition, WriteGPSPositionOwn, ReadPoint<CIEGPSPosition>},
    {"sheetPoint", EIEObjectsType::SheetPoint, WriteSheetPointOwn, ReadSheetPoint},
    {"polyline", EIEObjectsType::PolyLine, WriteLineOwn, ReadLine<CIEPolyLine>},
    {"polygon", EIEObjectsType::Polygon, WriteLineOwn, ReadLine<CIEPolygon>},
    {"arc", EIEObjectsType::Arc, WriteArcOwn, ReadArc},
    {"composite", EIEObjectsType::Composite, WriteCompositeOwn, ReadComposite},
};

} // namespace

bool JobParts::WriteObject(CIEJobWriting& out, const CIEObject& object)
{
    const auto isKind = [&](const TKind& kind) { return kind.m_eType == object.GetType(); };
    const auto* const pKind = std::find_if(std::begin(kKinds), std::end(kKinds), isKind);
    if (pKind == std::end(kKinds))
        return false;
    out.m_Text.BeginObject();
    out.m_Text.Key(static_cast<const char*>(pKind->m_Word));
    out.m_Text.Text(object.GetName());
    pKind->m_pWriteOwn(out, object);
    JobFields::Write(out, object, kObjectFields);
    out.m_Text.EndObject();
    return true;
}

std::unique_ptr<CIEObject> JobParts::ReadObject(CIEJobReading& in, const CIEJsonValue& value)
{
    if (!in.WantObject(value))
        return nullptr;
    for (const CIEJsonValue member : value) {
        for (const TKind& kind : kKinds) {
            if (kind.m_Word.Is(member.GetKey()))
                return kind.m_pRead(in, value, kind.m_Word);
        }
    }
    CString strWords;
    for (const TKind& kind : kKinds)
        strWords.append(strWords.empty() ? "" : ", ").append(static_cast<const char*>(kind.m_Word));
    in.Fail(value, "An object needs its kind and name under one of these keys: " + strWords + ".");
    return nullptr;
}
