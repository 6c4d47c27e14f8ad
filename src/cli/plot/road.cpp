#include "cli/plot/road.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace {

using namespace Cli;

constexpr double kRadian = std::numbers::pi / 180.0;
constexpr int kSteps = 32; ///< places along a curve or a spiral

std::optional<TPlace> PlaceOf(const CIEPosition2D& position)
{
    if (!position.IsDefined())
        return std::nullopt;
    return TPlace{position.GetNorth(), position.GetEast()};
}

TPlace Between(const TPlace& from, const TPlace& to, double dShare)
{
    return {from.m_dNorth + (to.m_dNorth - from.m_dNorth) * dShare,
            from.m_dEast + (to.m_dEast - from.m_dEast) * dShare};
}

double Distance(const TPlace& from, const TPlace& to)
{
    return std::hypot(to.m_dNorth - from.m_dNorth, to.m_dEast - from.m_dEast);
}

/// What a line, curve or spiral tells of its course.
struct TElement {
    std::optional<TPlace> m_Start;
    std::optional<TPlace> m_End;
    std::optional<TPlace> m_Corner;   ///< where the tangents at both ends meet
    std::optional<double> m_dAzimuth; ///< at the start, radians; nothing where it follows from the element before
    double m_dLength = 0.0;
    double m_dFirstCurvature = 0.0; ///< 1/m, positive to the right
    double m_dLastCurvature = 0.0;
};

double CurvatureOf(double dRadius)
{
    return dRadius == 0.0 ? 0.0 : 1.0 / dRadius;
}

template <class TPart, class EKey>
void TellCommon(const TPart& part, EKey eAzimuth, TElement& element)
{
    element.m_Start = PlaceOf(part.GetStartPosition());
    element.m_dLength = part.GetElementLength();
    if (!part.IsAzToPrevEl())
        element.m_dAzimuth = part.GetData(eAzimuth) * kRadian;
}

TElement Tell(const CIELine2D& line)
{
    TElement element;
    TellCommon(line, ELineDataType::Azimuth, element);
    element.m_End = PlaceOf(line.GetPosition(CIELine2D::End));
    return element;
}

TElement Tell(const CIECurve& curve)
{
    TElement element;
    TellCommon(curve, ECurveDataType::StartAzimuth, element);
    element.m_End = PlaceOf(curve.GetPosition(CIECurve::End));
    element.m_Corner = PlaceOf(curve.GetPosition(CIECurve::Intersection));
    element.m_dFirstCurvature = element.m_dLastCurvature = CurvatureOf(curve.GetData(ECurveDataType::Radius));
    return element;
}

TElement Tell(const CIESpiral& spiral)
{
    TElement element;
    TellCommon(spiral, ESpiralDataType::StartAzimuth, element);
    element.m_End = PlaceOf(spiral.GetPosition(CIESpiral::End));
    element.m_Corner = PlaceOf(spiral.GetPosition(CIESpiral::Intersection));
    element.m_dFirstCurvature = CurvatureOf(spiral.GetData(ESpiralDataType::StartRadius));
    element.m_dLastCurvature = CurvatureOf(spiral.GetData(ESpiralDataType::EndRadius));
    return element;
}

class CTracer {
public:
    explicit CTracer(bool bGeographic) : m_bGeographic(bGeographic) {}

    /// The start point, unless the first element tells where it starts.
    void Begin(const TPlace& place)
    {
        Add(place);
        m_bBegun = false;
    }
    void Trace(const CIEAlignmentObject& object, const TPlace* pNextCorner);
    TRoad Take() { return {std::move(m_Places), !m_bInPart && !m_bOpen}; }

private:
    void Follow(const TElement& element);
    void FollowCourse(const TElement& element, double dAzimuth);
    void FollowCorner(const TPlace& corner, const TPlace& end);
    void FollowPoint(const CIEIntersectionPoint& point, const TPlace* pNextCorner);
    void Add(const TPlace& place) { m_Places.push_back(place); }
    /// To be called ahead of an element: one that tells where it starts also tells where the one before it ends.
    void Join(bool bTellsStart)
    {
        m_bInPart = m_bInPart || (m_bOpen && !bTellsStart);
        m_bOpen = false;
    }

    std::vector<TPlace> m_Places;
    double m_dAzimuth = 0.0; ///< at the last place, radians
    bool m_bGeographic;
    bool m_bBegun = true;   ///< there is more than the start point
    bool m_bOpen = false;   ///< nothing tells where the last element ends
    bool m_bInPart = false; ///< an element is missing
};

void CTracer::Trace(const CIEAlignmentObject& object, const TPlace* pNextCorner)
{
    if (const auto* const pLine = dynamic_cast<const CIELine2D*>(&object))
        Follow(Tell(*pLine));
    else if (const auto* const pCurve = dynamic_cast<const CIECurve*>(&object))
        Follow(Tell(*pCurve));
    else if (const auto* const pSpiral = dynamic_cast<const CIESpiral*>(&object))
        Follow(Tell(*pSpiral));
    else if (const auto* const pPoint = dynamic_cast<const CIEIntersectionPoint*>(&object))
        FollowPoint(*pPoint, pNextCorner);
}

void CTracer::Follow(const TElement& element)
{
    Join(element.m_Start.has_value());
    if (element.m_Start) {
        if (!m_bBegun)
            m_Places.clear();
        Add(*element.m_Start);
    }
    m_bBegun = true;
    if (m_Places.empty()) {
        m_bInPart = true; // nothing tells where it lies
        return;
    }
    if (!m_bGeographic && std::isfinite(element.m_dLength) && element.m_dLength > 0.0) {
        FollowCourse(element, element.m_dAzimuth.value_or(m_dAzimuth));
    } else if (element.m_End && element.m_Corner) {
        FollowCorner(*element.m_Corner, *element.m_End);
    } else if (element.m_End) {
        Add(*element.m_End);
    } else {
        m_bOpen = element.m_dLength != 0.0;
    }
}

/// Adds up small steps in the direction of the curvature so far. Where the end is known, the course has to come near
/// it, and is bent to meet it; else positions go ahead of lengths and azimuths.
void CTracer::FollowCourse(const TElement& element, double dAzimuth)
{
    constexpr double kNear = 0.05; // of the length
    const TPlace start = m_Places.back();
    const bool bStraight = element.m_dFirstCurvature == 0.0 && element.m_dLastCurvature == 0.0;
    const int nSteps = bStraight ? 1 : kSteps;
    const double dStep = element.m_dLength / nSteps;
    std::vector<TPlace> course;
    TPlace place = start;
    double dEndAzimuth = dAzimuth;
    for (int i = 1; i <= nSteps; ++i) {
        const auto azimuthAt = [&](double dPart) {
            const double dAlong = element.m_dLength * dPart / nSteps;
            const double dChange = element.m_dLastCurvature - element.m_dFirstCurvature;
            return dAzimuth + dAlong * (element.m_dFirstCurvature + dChange * dPart / nSteps / 2.0);
        };
        const double dMiddle = azimuthAt(i - 0.5);
        place = {place.m_dNorth + dStep * std::cos(dMiddle), place.m_dEast + dStep * std::sin(dMiddle)};
        course.push_back(place);
        dEndAzimuth = azimuthAt(i);
    }
    if (element.m_End && Distance(place, *element.m_End) > kNear * element.m_dLength) {
        m_dAzimuth = std::atan2(element.m_End->m_dEast - start.m_dEast, element.m_End->m_dNorth - start.m_dNorth);
        if (element.m_Corner)
            return FollowCorner(*element.m_Corner, *element.m_End);
        return Add(*element.m_End);
    }
    const TPlace end = element.m_End.value_or(place);
    for (int i = 1; i <= nSteps; ++i) {
        const double dShare = static_cast<double>(i) / nSteps;
        const TPlace& here = course[static_cast<std::size_t>(i) - 1];
        Add({here.m_dNorth + (end.m_dNorth - place.m_dNorth) * dShare,
             here.m_dEast + (end.m_dEast - place.m_dEast) * dShare});
    }
    m_dAzimuth = dEndAzimuth;
}

/// A round course from the last place to `end` whose tangents meet at the corner.
void CTracer::FollowCorner(const TPlace& corner, const TPlace& end)
{
    const TPlace start = m_Places.back();
    for (int i = 1; i <= kSteps; ++i) {
        const double dShare = static_cast<double>(i) / kSteps;
        Add(Between(Between(start, corner, dShare), Between(corner, end, dShare), dShare));
    }
    m_dAzimuth = std::atan2(end.m_dEast - corner.m_dEast, end.m_dNorth - corner.m_dNorth);
}

void CTracer::FollowPoint(const CIEIntersectionPoint& point, const TPlace* pNextCorner)
{
    const bool bParts = point.GetFirstSpiral() || point.GetCurve() || point.GetSecondSpiral();
    if (bParts && !point.IsSimplePoint()) {
        if (point.GetSegment())
            Follow(Tell(*point.GetSegment()));
        if (point.GetFirstSpiral())
            Follow(Tell(*point.GetFirstSpiral()));
        if (point.GetCurve())
            Follow(Tell(*point.GetCurve()));
        if (point.GetSecondSpiral())
            Follow(Tell(*point.GetSecondSpiral()));
        return;
    }
    const std::optional<TPlace> corner = PlaceOf(point.GetPosition());
    if (!corner) {
        if (point.GetSegment())
            Follow(Tell(*point.GetSegment()));
        else
            m_bInPart = true;
        return;
    }
    Join(true);
    const double dEntry = point.GetData(EIPDataType::EntryTangentLength);
    const double dExit = point.GetData(EIPDataType::ExitTangentLength);
    const double dBefore = m_Places.empty() ? 0.0 : Distance(m_Places.back(), *corner);
    const double dBehind = pNextCorner ? Distance(*corner, *pNextCorner) : 0.0;
    if (m_bGeographic || dEntry <= 0.0 || dExit <= 0.0 || dBefore <= 0.0 || dBehind <= 0.0)
        return Add(*corner);
    Add(Between(*corner, m_Places.back(), std::min(dEntry / dBefore, 1.0)));
    FollowCorner(*corner, Between(*corner, *pNextCorner, std::min(dExit / dBehind, 1.0)));
}

} // namespace

namespace Cli {

TRoad TraceRoad(const CIEAlignment& alignment, bool bGeographic)
{
    CTracer tracer(bGeographic);
    if (const CIEDesignPoint* const pStart = alignment.GetStartPoint())
        tracer.Begin({pStart->GetStation()->m_dNorth, pStart->GetStation()->m_dEast});
    for (int i = 0; const CIEAlignmentObject* const pObject = alignment.GetObjectAt(i); ++i) {
        const CIEAlignmentObject* const pNext = alignment.GetObjectAt(i + 1);
        const std::optional<TPlace> corner = pNext ? PlaceOf(pNext->GetStartPosition()) : std::nullopt;
        tracer.Trace(*pObject, corner ? &*corner : nullptr);
    }
    return tracer.Take();
}

} // namespace Cli
