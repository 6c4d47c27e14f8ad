#include "cli/plot/scene.h"

#include "cli/plot/road.h"
#include "cli/stop.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>

namespace {

using namespace Cli;

constexpr double kFarthest = 1e12; ///< metres; beyond it lies no place that anybody surveys
constexpr double kRadian = std::numbers::pi / 180.0;

bool IsPlace(double dNorth, double dEast)
{
    return std::abs(dNorth) <= kFarthest && std::abs(dEast) <= kFarthest; // false for what isn't a number
}

TLayerCount::EKind KindOf(EIEObjectsType type)
{
    switch (type) {
    case EIEObjectsType::PolyLine:
        return TLayerCount::Lines;
    case EIEObjectsType::Polygon:
        return TLayerCount::Polygons;
    case EIEObjectsType::Arc:
        return TLayerCount::Arcs;
    case EIEObjectsType::Composite:
        return TLayerCount::Others;
    default:
        return TLayerCount::Points;
    }
}

class CSceneMaker {
public:
    CSceneMaker(const CIEData& job, const TSceneOptions& options);
    TScene Make();

private:
    void TakeObject(const CIEObject& object);
    void Draw(const CIEObject& object, const CIEObject* pWhole, TLayerCount& layer);
    bool DrawPoint(const CIEObject& object, int nStyle);
    bool DrawLine(const CIEObject& object, int nStyle);
    bool DrawArc(const CIEArc& arc, int nStyle);
    void TakeSurface(const CIESurface& surface);
    void TakeRoad(const CIEAlignment& alignment);
    [[nodiscard]] bool IsWanted(const CIELayer* pLayer) const;
    TLayerCount& LayerOf(const CIELayer* pLayer);
    void Widen(const TPlace& place);

    const CIEData& m_Job;
    const TSceneOptions& m_Options;
    TScene m_Scene;
    std::unordered_map<const CIELayer*, std::size_t> m_LayerPlaces;
    bool m_bGeographic;
};

CSceneMaker::CSceneMaker(const CIEData& job, const TSceneOptions& options)
    : m_Job(job), m_Options(options), m_bGeographic(job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic)
{
    for (int i = 0; const CIELayer* const pLayer = job.GetIEDrawDictionary()->GetLayerAt(i); ++i)
        LayerOf(pLayer);
    LayerOf(nullptr);
}

TLayerCount& CSceneMaker::LayerOf(const CIELayer* pLayer)
{
    const auto [it, bNew] = m_LayerPlaces.try_emplace(pLayer, m_Scene.m_Layers.size());
    if (bNew) {
        TLayerCount layer;
        layer.m_pLayer = pLayer;
        layer.m_bDrawn = IsWanted(pLayer);
        m_Scene.m_Layers.push_back(layer);
    }
    return m_Scene.m_Layers[it->second];
}

bool CSceneMaker::IsWanted(const CIELayer* pLayer) const
{
    if (m_Options.m_Layers)
        return std::find(m_Options.m_Layers->begin(), m_Options.m_Layers->end(), pLayer) != m_Options.m_Layers->end();
    return !pLayer || pLayer->IsActive();
}

TScene CSceneMaker::Make()
{
    for (int i = 0; const CIEDataset* const pDataset = m_Job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            if (IsStopAsked())
                return std::move(m_Scene);
            TakeObject(*pObject);
        }
        for (int j = 0; const CIESurface* const pSurface = pDataset->GetSurfaceAt(j); ++j)
            TakeSurface(*pSurface);
        for (int j = 0; const CIEAlignment* const pAlignment = pDataset->GetAlignmentAt(j); ++j)
            TakeRoad(*pAlignment);
    }
    std::sort(m_Scene.m_Edges.begin(), m_Scene.m_Edges.end());
    m_Scene.m_Edges.erase(std::unique(m_Scene.m_Edges.begin(), m_Scene.m_Edges.end()), m_Scene.m_Edges.end());
    m_Scene.m_Styles.Reduce();
    return std::move(m_Scene);
}

void CSceneMaker::TakeObject(const CIEObject& object)
{
    if (object.GetStateType() == CIEObject::InBlock) {
        ++m_Scene.m_nPatterns;
        return;
    }
    TLayerCount& layer = LayerOf(object.GetLayer());
    ++layer.m_Counts[KindOf(object.GetType())];
    const auto* const pWhole = dynamic_cast<const CIECompositeObject*>(&object);
    if (!pWhole)
        return Draw(object, nullptr, layer);
    for (int i = 0; const CIEObject* const pPart = pWhole->GetPartAt(i); ++i)
        Draw(*pPart, pWhole, layer);
}

void CSceneMaker::Draw(const CIEObject& object, const CIEObject* pWhole, TLayerCount& layer)
{
    // a part may lie on a layer of its own, which alone says whether it is drawn
    TLayerCount& own = pWhole && object.GetLayer() ? LayerOf(object.GetLayer()) : layer;
    own.m_Counts[TLayerCount::Parts] += &own == &layer ? 0 : 1;
    if (!own.m_bDrawn)
        return;
    TStyle style = StyleOf(object, pWhole, own.m_pLayer);
    style.m_nLayer = static_cast<int>(m_LayerPlaces.find(own.m_pLayer)->second);
    if (!own.m_Color)
        own.m_Color = style.m_Color;
    const int nStyle = m_Scene.m_Styles.Take(style);
    bool bDrawn = false;
    if (const auto* const pArc = dynamic_cast<const CIEArc*>(&object))
        bDrawn = DrawArc(*pArc, nStyle);
    else if (style.m_eFigure == EFigure::Point)
        bDrawn = DrawPoint(object, nStyle);
    else
        bDrawn = DrawLine(object, nStyle);
    m_Scene.m_nOffEarth += bDrawn ? 0 : 1;
}

bool CSceneMaker::DrawPoint(const CIEObject& object, int nStyle)
{
    const auto* const pRelative = dynamic_cast<const CIEPTLPoint*>(&object);
    if (pRelative && pRelative->GetCoordType() == CIEPTLPoint::PointToLine) {
        ++m_Scene.m_nRelative;
        return true;
    }
    bool bAll = true;
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (!IsPlace(pStation->m_dNorth, pStation->m_dEast)) {
            bAll = false;
            continue;
        }
        const TPlace place{pStation->m_dNorth, pStation->m_dEast};
        m_Scene.m_Marks.push_back({place, i == 0 ? &object : nullptr, nStyle});
        Widen(place);
    }
    return bAll;
}

bool CSceneMaker::DrawLine(const CIEObject& object, int nStyle)
{
    const std::size_t nFirst = m_Scene.m_Places.size();
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (!IsPlace(pStation->m_dNorth, pStation->m_dEast)) {
            m_Scene.m_Places.resize(nFirst);
            return false;
        }
        m_Scene.m_Places.push_back({pStation->m_dNorth, pStation->m_dEast});
    }
    const std::size_t nCount = m_Scene.m_Places.size() - nFirst;
    if (nCount == 0)
        return true;
    m_Scene.m_Lines.push_back({nFirst, nCount, nStyle, object.GetType() == EIEObjectsType::Polygon});
    std::for_each(m_Scene.m_Places.begin() + static_cast<std::ptrdiff_t>(nFirst), m_Scene.m_Places.end(),
                  [this](const TPlace& place) { Widen(place); });
    return true;
}

bool CSceneMaker::DrawArc(const CIEArc& arc, int nStyle)
{
    constexpr double kCircle = 360.0, kQuarter = 90.0;
    const CIEStation& center = *arc.GetStation();
    const double dRadius = std::abs(arc.GetData(CIEArc::Radius)) / (m_bGeographic ? kMetersOfDegree : 1.0);
    TArc drawn;
    drawn.m_Center = {center.m_dNorth, center.m_dEast};
    drawn.m_Radius = {dRadius, m_bGeographic ? dRadius / ShrinkOfEast(center.m_dNorth) : dRadius};
    drawn.m_dStart = std::fmod(arc.GetData(CIEArc::StartAngle), kCircle);
    drawn.m_dSweep = std::fmod(arc.GetData(CIEArc::EndAngle) - drawn.m_dStart, kCircle);
    if (drawn.m_dSweep <= 0.0) // equal angles are a whole circle
        drawn.m_dSweep += kCircle;
    drawn.m_nStyle = nStyle;
    if (!IsPlace(std::abs(center.m_dNorth) + drawn.m_Radius.m_dNorth,
                 std::abs(center.m_dEast) + drawn.m_Radius.m_dEast) ||
        !std::isfinite(drawn.m_dStart) || !std::isfinite(drawn.m_dSweep))
        return false;
    m_Scene.m_Arcs.push_back(drawn);
    const double dEnd = drawn.m_dStart + drawn.m_dSweep;
    Widen(drawn.At(drawn.m_dStart));
    Widen(drawn.At(dEnd));
    for (double dAngle = std::ceil(drawn.m_dStart / kQuarter) * kQuarter; dAngle < dEnd; dAngle += kQuarter)
        Widen(drawn.At(dAngle));
    return true;
}

void CSceneMaker::TakeSurface(const CIESurface& surface)
{
    TLayerCount& layer = LayerOf(nullptr);
    ++layer.m_Counts[TLayerCount::Surfaces];
    if (!layer.m_bDrawn)
        return;
    layer.m_Color = layer.m_Color.value_or(kSurfaceColor);
    const std::size_t nFirst = m_Scene.m_Places.size();
    const int nPositions = surface.GetNumberOfPositions();
    for (int i = 0; i < nPositions; ++i)
        m_Scene.m_Places.push_back({surface.GetPositionAt(i)->m_dNorth, surface.GetPositionAt(i)->m_dEast});
    const auto isUsable = [&](int n) {
        return n >= 0 && n < nPositions &&
               IsPlace(surface.GetPositionAt(n)->m_dNorth, surface.GetPositionAt(n)->m_dEast);
    };
    for (int i = 0; const CIETriangle* const pTriangle = surface.GetTriangleAt(i); ++i) {
        const std::array<int, CIETriangle::kCorners> corners{pTriangle->GetPosition(0), pTriangle->GetPosition(1),
                                                             pTriangle->GetPosition(2)};
        if (!std::all_of(corners.begin(), corners.end(), isUsable)) {
            ++m_Scene.m_nTrianglesLeftOut;
            continue;
        }
        for (std::size_t k = 0; k < corners.size(); ++k) {
            const auto [nLow, nHigh] = std::minmax(corners[k], corners[(k + 1) % corners.size()]);
            m_Scene.m_Edges.push_back({static_cast<std::uint32_t>(nFirst + static_cast<std::size_t>(nLow)),
                                       static_cast<std::uint32_t>(nFirst + static_cast<std::size_t>(nHigh))});
            Widen(m_Scene.m_Places[nFirst + static_cast<std::size_t>(corners[k])]);
        }
    }
}

void CSceneMaker::TakeRoad(const CIEAlignment& alignment)
{
    TLayerCount& layer = LayerOf(nullptr);
    ++layer.m_Counts[TLayerCount::Alignments];
    if (!layer.m_bDrawn)
        return;
    const TRoad road = TraceRoad(alignment, m_bGeographic);
    const std::vector<TPlace>& places = road.m_Places;
    if (!std::all_of(places.begin(), places.end(), [](const TPlace& p) { return IsPlace(p.m_dNorth, p.m_dEast); })) {
        ++m_Scene.m_nOffEarth;
        return;
    }
    if (places.empty()) {
        ++m_Scene.m_nRoadsWithoutPlace;
        return;
    }
    m_Scene.m_nRoadsInPart += road.m_bWhole ? 0 : 1;
    TStyle style;
    style.m_eFigure = EFigure::Line;
    style.m_Color = kRoadColor;
    style.m_nLayer = static_cast<int>(m_LayerPlaces.find(nullptr)->second);
    layer.m_Color = layer.m_Color.value_or(kRoadColor);
    style.m_nWidth = 2;
    m_Scene.m_Lines.push_back({m_Scene.m_Places.size(), places.size(), m_Scene.m_Styles.Take(style), false});
    m_Scene.m_Places.insert(m_Scene.m_Places.end(), places.begin(), places.end());
    for (const TPlace& place : places)
        Widen(place);
    if (!alignment.GetName().empty())
        m_Scene.m_Titles.push_back({places.front(), alignment.GetName()});
}

void CSceneMaker::Widen(const TPlace& place)
{
    if (!m_Scene.m_Extent) {
        m_Scene.m_Extent = TExtent{place, place};
        return;
    }
    TExtent& extent = *m_Scene.m_Extent;
    extent.m_Least = {std::min(extent.m_Least.m_dNorth, place.m_dNorth),
                      std::min(extent.m_Least.m_dEast, place.m_dEast)};
    extent.m_Most = {std::max(extent.m_Most.m_dNorth, place.m_dNorth), std::max(extent.m_Most.m_dEast, place.m_dEast)};
}

} // namespace

namespace Cli {

TPlace TArc::At(double dAngle) const
{
    return {m_Center.m_dNorth + m_Radius.m_dNorth * std::sin(dAngle * kRadian),
            m_Center.m_dEast + m_Radius.m_dEast * std::cos(dAngle * kRadian)};
}

double ShrinkOfEast(double dLatitude)
{
    constexpr double kLeast = 0.01; // a picture of the pole needs some width
    return std::max(std::cos(dLatitude * kRadian), kLeast);
}

TScene MakeScene(const CIEData& job, const TSceneOptions& options)
{
    return CSceneMaker(job, options).Make();
}

} // namespace Cli
