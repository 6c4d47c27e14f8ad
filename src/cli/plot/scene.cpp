#include "cli/plot/scene.h"

#include "cli/plot/cutter.h"
#include "cli/plot/road.h"
#include "cli/plot/sample.h"
#include "cli/stop.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>

namespace {

using namespace Cli;

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
    EFate TakePart(const CIEObject& object, const CIEObject* pWhole, const CIELayer* pLayer);
    EFate DrawPoint(const CIEObject& object, const TStyle& style);
    EFate DrawLine(const CIEObject& object, const TStyle& style);
    EFate DrawArc(const CIEArc& arc, const TStyle& style);
    void TakeSurface(const CIESurface& surface);
    void TakeRoad(const CIEAlignment& alignment);
    [[nodiscard]] TLayerCount::EState StateOf(const CIELayer* pLayer) const;
    TLayerCount& LayerOf(const CIELayer* pLayer);
    [[nodiscard]] int IndexOf(const CIELayer* pLayer) const
    {
        return static_cast<int>(m_LayerPlaces.find(pLayer)->second);
    }

    const CIEData& m_Job;
    const TSceneOptions& m_Options;
    TScene m_Scene;
    CCutter m_Cutter;
    std::unordered_map<const CIELayer*, std::size_t> m_LayerPlaces;
    bool m_bGeographic;
};

CSceneMaker::CSceneMaker(const CIEData& job, const TSceneOptions& options)
    : m_Job(job),
      m_Options(options),
      m_Cutter(m_Scene, options.m_Window),
      m_bGeographic(job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic)
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
        layer.m_eState = StateOf(pLayer);
        m_Scene.m_Layers.push_back(layer);
    }
    return m_Scene.m_Layers[it->second];
}

TLayerCount::EState CSceneMaker::StateOf(const CIELayer* pLayer) const
{
    using enum TLayerCount::EState;
    if (!m_Options.m_Layers)
        return !pLayer || pLayer->IsActive() ? Drawn : Off;
    const std::vector<const CIELayer*>& asked = *m_Options.m_Layers;
    return std::find(asked.begin(), asked.end(), pLayer) != asked.end() ? Drawn : NotAsked;
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
    FindSamples(m_Scene);
    m_Scene.m_Styles.Reduce();
    m_Cutter.Finish();
    return std::move(m_Scene);
}

void CSceneMaker::TakeObject(const CIEObject& object)
{
    if (object.GetStateType() == CIEObject::InBlock) {
        ++m_Scene.m_nPatterns;
        return;
    }
    bool bOutside = false, bInside = false;
    const auto take = [&](const CIEObject& part, const CIEObject* pWhole) {
        const EFate eFate = TakePart(part, pWhole, object.GetLayer());
        m_Scene.m_nOffEarth += eFate == EFate::NoPlace ? 1 : 0;
        (eFate == EFate::Outside ? bOutside : bInside) = true;
    };
    if (const auto* const pWhole = dynamic_cast<const CIECompositeObject*>(&object)) {
        for (int i = 0; const CIEObject* const pPart = pWhole->GetPartAt(i); ++i)
            take(*pPart, pWhole);
    } else {
        take(object, nullptr);
    }
    if (bOutside && !bInside)
        ++m_Scene.m_nOutside;
    else
        ++LayerOf(object.GetLayer()).m_Counts[KindOf(object.GetType())];
}

/// An object, or a part of `pWhole`, which lies on `pLayer`.
EFate CSceneMaker::TakePart(const CIEObject& object, const CIEObject* pWhole, const CIELayer* pLayer)
{
    // a part may lie on a layer of its own, which alone says whether it is drawn
    const bool bElsewhere = pWhole && object.GetLayer() && object.GetLayer() != pLayer;
    TLayerCount& layer = LayerOf(bElsewhere ? object.GetLayer() : pLayer);
    EFate eFate = EFate::Drawn;
    if (layer.IsDrawn()) {
        TStyle style = StyleOf(object, pWhole, layer.m_pLayer);
        style.m_nLayer = IndexOf(layer.m_pLayer);
        if (const auto* const pArc = dynamic_cast<const CIEArc*>(&object))
            eFate = DrawArc(*pArc, style);
        else if (style.m_eFigure == EFigure::Point)
            eFate = DrawPoint(object, style);
        else
            eFate = DrawLine(object, style);
    }
    if (bElsewhere && eFate != EFate::Outside)
        ++layer.m_Counts[TLayerCount::Parts];
    return eFate;
}

EFate CSceneMaker::DrawPoint(const CIEObject& object, const TStyle& style)
{
    const auto* const pRelative = dynamic_cast<const CIEPTLPoint*>(&object);
    if (pRelative && pRelative->GetCoordType() == CIEPTLPoint::PointToLine) {
        ++m_Scene.m_nRelative;
        return EFate::Drawn;
    }
    bool bAll = true, bOutside = false, bInside = false;
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        const TPlace place{pStation->m_dNorth, pStation->m_dEast};
        const EFate eFate = m_Cutter.AddMark(place, i == 0 ? &object : nullptr, style);
        bAll = bAll && eFate != EFate::NoPlace;
        (eFate == EFate::Outside ? bOutside : bInside) = true;
    }
    if (!bAll)
        return EFate::NoPlace;
    return bOutside && !bInside ? EFate::Outside : EFate::Drawn;
}

EFate CSceneMaker::DrawLine(const CIEObject& object, const TStyle& style)
{
    std::vector<TPlace> places;
    places.reserve(static_cast<std::size_t>(object.GetNumberOfStations()));
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i)
        places.push_back({pStation->m_dNorth, pStation->m_dEast});
    return m_Cutter.AddRow(places, style, object.GetType() == EIEObjectsType::Polygon);
}

EFate CSceneMaker::DrawArc(const CIEArc& arc, const TStyle& style)
{
    constexpr double kCircle = 360.0;
    const CIEStation& center = *arc.GetStation();
    const double dRadius = std::abs(arc.GetData(CIEArc::Radius)) / (m_bGeographic ? kMetersOfDegree : 1.0);
    TArc drawn;
    drawn.m_Center = {center.m_dNorth, center.m_dEast};
    drawn.m_Radius = {dRadius, m_bGeographic ? dRadius / ShrinkOfEast(center.m_dNorth) : dRadius};
    drawn.m_dStart = std::fmod(arc.GetData(CIEArc::StartAngle), kCircle);
    drawn.m_dSweep = SweepOf(arc.GetData(CIEArc::StartAngle), arc.GetData(CIEArc::EndAngle));
    if (!IsPlace(
            {std::abs(center.m_dNorth) + drawn.m_Radius.m_dNorth, std::abs(center.m_dEast) + drawn.m_Radius.m_dEast}) ||
        !std::isfinite(drawn.m_dStart) || !std::isfinite(drawn.m_dSweep))
        return EFate::NoPlace;
    return m_Cutter.AddArc(drawn, style);
}

void CSceneMaker::TakeSurface(const CIESurface& surface)
{
    TLayerCount& layer = LayerOf(nullptr);
    if (!layer.IsDrawn()) {
        ++layer.m_Counts[TLayerCount::Surfaces];
        return;
    }
    const std::size_t nFirst = m_Scene.m_Places.size(), nEdges = m_Scene.m_Edges.size();
    const int nPositions = surface.GetNumberOfPositions();
    for (int i = 0; i < nPositions; ++i)
        m_Scene.m_Places.push_back({surface.GetPositionAt(i)->m_dNorth, surface.GetPositionAt(i)->m_dEast});
    const auto isUsable = [&](int n) {
        return n >= 0 && n < nPositions && IsPlace(m_Scene.m_Places[nFirst + static_cast<std::size_t>(n)]);
    };
    bool bTriangles = false;
    for (int i = 0; const CIETriangle* const pTriangle = surface.GetTriangleAt(i); ++i) {
        const std::array<int, CIETriangle::kCorners> corners{pTriangle->GetPosition(0), pTriangle->GetPosition(1),
                                                             pTriangle->GetPosition(2)};
        if (!std::all_of(corners.begin(), corners.end(), isUsable)) {
            ++m_Scene.m_nTrianglesLeftOut;
            continue;
        }
        bTriangles = true;
        for (std::size_t k = 0; k < corners.size(); ++k) {
            const auto [nLow, nHigh] = std::minmax(corners[k], corners[(k + 1) % corners.size()]);
            m_Cutter.AddEdge(nFirst + static_cast<std::size_t>(nLow), nFirst + static_cast<std::size_t>(nHigh));
        }
    }
    const bool bOutside = bTriangles && m_Scene.m_Edges.size() == nEdges;
    m_Scene.m_nOutside += bOutside ? 1 : 0;
    layer.m_Counts[TLayerCount::Surfaces] += bOutside ? 0 : 1;
}

void CSceneMaker::TakeRoad(const CIEAlignment& alignment)
{
    TLayerCount& layer = LayerOf(nullptr);
    TStyle style;
    style.m_eFigure = EFigure::Line;
    style.m_Color = kRoadColor;
    style.m_nLayer = IndexOf(nullptr);
    style.m_nWidth = 2;
    const TRoad road = layer.IsDrawn() ? TraceRoad(alignment, m_bGeographic) : TRoad{};
    const EFate eFate = m_Cutter.AddRow(road.m_Places, style, false);
    layer.m_Counts[TLayerCount::Alignments] += eFate == EFate::Outside ? 0 : 1;
    m_Scene.m_nOutside += eFate == EFate::Outside ? 1 : 0;
    m_Scene.m_nOffEarth += eFate == EFate::NoPlace ? 1 : 0;
    if (eFate != EFate::Drawn || !layer.IsDrawn())
        return;
    if (road.m_Places.empty()) {
        ++m_Scene.m_nRoadsWithoutPlace;
        return;
    }
    m_Scene.m_nRoadsInPart += road.m_bWhole ? 0 : 1;
    const TPlace& first = road.m_Places.front();
    if (!alignment.GetName().empty() && m_Cutter.IsInside(first))
        m_Scene.m_Titles.push_back({first, alignment.GetName()});
}

} // namespace

namespace Cli {

double ShrinkOfEast(double dLatitude)
{
    constexpr double kRadian = std::numbers::pi / 180.0, kLeast = 0.01; // a picture of the pole needs some width
    return std::max(std::cos(dLatitude * kRadian), kLeast);
}

TScene MakeScene(const CIEData& job, const TSceneOptions& options)
{
    return CSceneMaker(job, options).Make();
}

} // namespace Cli
