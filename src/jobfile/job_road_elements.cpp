#include "jobfile/job_road_elements.h"

#include "jobfile/job_fields.h"

#include <algorithm>

template <>
const CIEIntersectionPoint& JobFields::DefaultOf<CIEIntersectionPoint>()
{
    static const CIEIntersectionPoint point(false);
    return point;
}

namespace {

using JobFields::Keyed;
using JobFields::Value;
using JobFields::Word;

// ---- positions: [north, east]; one that was never set isn't there

void WritePosition(CIEJobWriting& out, const char* pKey, const CIEPosition2D& position)
{
    if (!position.IsDefined())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    out.m_Text.Number(position.GetNorth());
    out.m_Text.Number(position.GetEast());
    out.m_Text.EndArray();
}

bool ReadPosition(CIEJobReading& in, const CIEJsonValue& value, CIEPosition2D& position)
{
    double dNorth = 0.0;
    double dEast = 0.0;
    if (!in.WantArray(value))
        return false;
    if (value.GetSize() != 2)
        return in.Fail(value, "A position is [north, east].");
    auto it = value.begin();
    if (!in.Read(*it, dNorth) || !in.Read(*++it, dEast))
        return false;
    position.Set(dNorth, dEast);
    return true;
}

template <class T, int nPosition>
constexpr TIEJobField<T> Position(const char* pKey)
{
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const T& element) {
                WritePosition(out, pName, element.GetPosition(nPosition));
            },
            [](CIEJobReading& in, const CIEJsonValue& value, T& element) {
                CIEPosition2D position;
                if (!ReadPosition(in, value, position))
                    return false;
                element.SetPosition(nPosition, position);
                return true;
            }};
}

template <class T>
constexpr TIEJobField<T> AzimuthFollows()
{
    return Value<T, &T::IsAzToPrevEl, &T::SetAzToPrevEl>("azimuthFollows");
}

// ---- lines, curves, spirals

constexpr TIEJobWord kCurveTypes[] = {{"arc", CIECurve::ArcDefinition}, {"chord", CIECurve::ChordDefinition}};

constexpr TIEJobWord kSpiralTypes[] = {
    {"biquadratic", CIESpiral::Biquadratic},
    {"bloss", CIESpiral::Bloss},
    {"clothoid", CIESpiral::Clothoid},
    {"cosine", CIESpiral::Cosine},
    {"cubic", CIESpiral::Cubic},
    {"sinusoid", CIESpiral::Sinusoid},
    {"revBiquadratic", CIESpiral::RevBiquadratic},
    {"revBloss", CIESpiral::RevBloss},
    {"revCosine", CIESpiral::RevCosine},
    {"revSinusoid", CIESpiral::RevSinusoid},
};

constexpr TIEJobField<CIELine2D> kLineFields[] = {
    Keyed<CIELine2D, ELineDataType::Azimuth>("azimuth"), AzimuthFollows<CIELine2D>(),
    Keyed<CIELine2D, ELineDataType::Length>("length"),   Keyed<CIELine2D, ELineDataType::StartStation>("startStation"),
    Position<CIELine2D, CIELine2D::Start>("start"),      Position<CIELine2D, CIELine2D::End>("end"),
};

constexpr TIEJobField<CIECurve> kCurveFields[] = {
    Keyed<CIECurve, ECurveDataType::Length>("length"),
    Keyed<CIECurve, ECurveDataType::Radius>("radius"),
    Keyed<CIECurve, ECurveDataType::StartAzimuth>("startAzimuth"),
    AzimuthFollows<CIECurve>(),
    Keyed<CIECurve, ECurveDataType::EndAzimuth>("endAzimuth"),
    Keyed<CIECurve, ECurveDataType::StartStation>("startStation"),
    Keyed<CIECurve, ECurveDataType::CentralAngle>("centralAngle"),
    Word<CIECurve, kCurveTypes, &CIECurve::GetCurveType, &CIECurve::SetCurveType>("definition"),
    Position<CIECurve, CIECurve::Start>("start"),
    Position<CIECurve, CIECurve::Centre>("centre"),
    Position<CIECurve, CIECurve::End>("end"),
    Position<CIECurve, CIECurve::Intersection>("intersection"),
};

constexpr TIEJobField<CIESpiral> kSpiralFields[] = {
    Keyed<CIESpiral, ESpiralDataType::Length>("length"),
    Keyed<CIESpiral, ESpiralDataType::StartRadius>("startRadius"),
    Keyed<CIESpiral, ESpiralDataType::EndRadius>("endRadius"),
    Keyed<CIESpiral, ESpiralDataType::StartAzimuth>("startAzimuth"),
    AzimuthFollows<CIESpiral>(),
    Keyed<CIESpiral, ESpiralDataType::EndAzimuth>("endAzimuth"),
    Keyed<CIESpiral, ESpiralDataType::StartStation>("startStation"),
    Keyed<CIESpiral, ESpiralDataType::Constant>("constant"),
    Word<CIESpiral, kSpiralTypes, &CIESpiral::GetSpiralType, &CIESpiral::SetSpiralType>("shape"),
    Position<CIESpiral, CIESpiral::Start>("start"),
    Position<CIESpiral, CIESpiral::End>("end"),
    Position<CIESpiral, CIESpiral::Intersection>("intersection"),
};

// ---- intersection points with their parts

template <class T, std::size_t n, T* (CIEIntersectionPoint::*get)() const,
          void (CIEIntersectionPoint::*set)(std::unique_ptr<T>), const TIEJobField<T> (&fields)[n]>
constexpr TIEJobField<CIEIntersectionPoint> Part(const char* pKey)
{
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const CIEIntersectionPoint& point) {
                const T* const pPart = (point.*get)();
                if (!pPart)
                    return;
                out.m_Text.Key(pName);
                out.m_Text.BeginObject();
                JobFields::Write(out, *pPart, fields);
                out.m_Text.EndObject();
            },
            [](CIEJobReading& in, const CIEJsonValue& value, CIEIntersectionPoint& point) {
                auto pPart = std::make_unique<T>();
                if (!JobFields::ReadObject(in, value, *pPart, fields))
                    return false;
                (point.*set)(std::move(pPart));
                return true;
            }};
}

constexpr std::size_t kLineKeys = std::size(kLineFields);
constexpr std::size_t kCurveKeys = std::size(kCurveFields);
constexpr std::size_t kSpiralKeys = std::size(kSpiralFields);

void WriteOwnPosition(CIEJobWriting& out, const char* pKey, const CIEIntersectionPoint& point)
{
    WritePosition(out, pKey, point.GetPosition());
}

bool ReadOwnPosition(CIEJobReading& in, const CIEJsonValue& value, CIEIntersectionPoint& point)
{
    CIEPosition2D position;
    if (!ReadPosition(in, value, position))
        return false;
    point.SetPosition(position);
    return true;
}

using CPoint = CIEIntersectionPoint;
constexpr TIEJobField<CPoint> kPointFields[] = {
    Value<CPoint, &CPoint::IsSimplePoint, &CPoint::SetSimplePoint>("simple"),
    {"position", WriteOwnPosition, ReadOwnPosition},
    Keyed<CPoint, EIPDataType::Radius>("radius"),
    Keyed<CPoint, EIPDataType::EntryTangentLength>("entryTangentLength"),
    Keyed<CPoint, EIPDataType::ExitTangentLength>("exitTangentLength"),
    Part<CIELine2D, kLineKeys, &CPoint::GetSegment, &CPoint::SetSegment, kLineFields>("segment"),
    Part<CIESpiral, kSpiralKeys, &CPoint::GetFirstSpiral, &CPoint::SetFirstSpiral, kSpiralFields>("firstSpiral"),
    Part<CIECurve, kCurveKeys, &CPoint::GetCurve, &CPoint::SetCurve, kCurveFields>("curve"),
    Part<CIESpiral, kSpiralKeys, &CPoint::GetSecondSpiral, &CPoint::SetSecondSpiral, kSpiralFields>("secondSpiral"),
};

// ---- kinds

constexpr TIEJobWord kTypes[] = {
    {"line", static_cast<int>(EIEAlignmentObjType::Line)},
    {"curve", static_cast<int>(EIEAlignmentObjType::Curve)},
    {"spiral", static_cast<int>(EIEAlignmentObjType::Spiral)},
    {"intersection", static_cast<int>(EIEAlignmentObjType::IntersectionPoint)},
};

template <class T, std::size_t n>
std::unique_ptr<CIEAlignmentObject> ReadElement(CIEJobReading& in, const CIEJsonValue& value,
                                                std::unique_ptr<T> pElement, const TIEJobField<T> (&fields)[n])
{
    if (!JobFields::ReadOtherMembers(in, value, "type", *pElement, fields))
        return nullptr;
    return pElement;
}

} // namespace

void JobParts::WriteRoadElement(CIEJobWriting& out, const CIEAlignmentObject& object)
{
    out.m_Text.BeginObject();
    out.m_Text.Key("type");
    out.WriteWord(kTypes, std::size(kTypes), static_cast<int>(object.GetType()));
    switch (object.GetType()) {
    case EIEAlignmentObjType::Line:
        JobFields::Write(out, static_cast<const CIELine2D&>(object), kLineFields);
        break;
    case EIEAlignmentObjType::Curve:
        JobFields::Write(out, static_cast<const CIECurve&>(object), kCurveFields);
        break;
    case EIEAlignmentObjType::Spiral:
        JobFields::Write(out, static_cast<const CIESpiral&>(object), kSpiralFields);
        break;
    case EIEAlignmentObjType::IntersectionPoint:
        JobFields::Write(out, static_cast<const CIEIntersectionPoint&>(object), kPointFields);
        break;
    }
    out.m_Text.EndObject();
}

std::unique_ptr<CIEAlignmentObject> JobParts::ReadRoadElement(CIEJobReading& in, const CIEJsonValue& value)
{
    int nType = -1;
    if (!in.WantObject(value))
        return nullptr;
    const auto itType = value.Find("type");
    if (itType != value.end() && !in.ReadWord(*itType, kTypes, std::size(kTypes), nType))
        return nullptr;
    switch (static_cast<EIEAlignmentObjType>(nType)) {
    case EIEAlignmentObjType::Line:
        return ReadElement(in, value, std::make_unique<CIELine2D>(), kLineFields);
    case EIEAlignmentObjType::Curve:
        return ReadElement(in, value, std::make_unique<CIECurve>(), kCurveFields);
    case EIEAlignmentObjType::Spiral:
        return ReadElement(in, value, std::make_unique<CIESpiral>(), kSpiralFields);
    case EIEAlignmentObjType::IntersectionPoint:
        return ReadElement(in, value, std::make_unique<CIEIntersectionPoint>(false), kPointFields);
    }
    in.Fail(value, "An element needs its type: line, curve, spiral or intersection.");
    return nullptr;
}
