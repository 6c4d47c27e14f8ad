#include "cli/plot/lines.h"

#include "cli/plot/path.h"
#include "cli/plot/thinning.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace Cli;

/// A place for so many degrees that the straights between lie within a tenth of a pixel of the arc.
void FollowArc(const TArc& arc, const CView& view, CPathMaker& maker)
{
    constexpr double kOff = 0.1;
    constexpr double kLeastSides = 2.0, kMostSides = 720.0;
    const double dRadius = std::max(arc.m_Radius.m_dNorth * view.GetNorthScale(), kOff);
    const double dSides = arc.m_dSweep * std::numbers::pi / 180.0 / std::sqrt(8.0 * kOff / dRadius);
    const int nSides = static_cast<int>(std::clamp(std::ceil(dSides), kLeastSides, kMostSides));
    for (int i = 0; i <= nSides; ++i)
        maker.To(arc.At(arc.m_dStart + arc.m_dSweep * i / nSides));
}

/// True for a row that goes round from north to west. All areas of a path have to go round one way: where two that
/// differ lie on each other, their windings add up to 0, and neither would be filled.
bool GoesRoundToWest(const TPlace* pPlaces, std::size_t nCount)
{
    double dTwice = 0.0;
    for (std::size_t i = 2; i < nCount; ++i) {
        const TPlace &first = pPlaces[0], &a = pPlaces[i - 1], &b = pPlaces[i]; // near the first, digits are kept
        dTwice += (a.m_dEast - first.m_dEast) * (b.m_dNorth - first.m_dNorth) -
                  (b.m_dEast - first.m_dEast) * (a.m_dNorth - first.m_dNorth);
    }
    return dTwice > 0.0;
}

/// Draws the lines and arcs of the scene style by style.
class CLineDrawer {
public:
    CLineDrawer(const TScene& scene, const CView& view);

    TLinePaths Draw();

private:
    void DrawStyle(std::size_t nStyle, std::size_t nMost, CPathMaker& maker);
    bool TryDense(const TShares& shares, double dMerge);

    const TScene& m_Scene;
    const CView& m_View;
    std::vector<std::vector<std::size_t>> m_Objects; ///< by style: lines, and behind all of them arcs
    std::vector<std::size_t> m_Drawn;                ///< by style, objects
    TLinePaths m_Result;
};

CLineDrawer::CLineDrawer(const TScene& scene, const CView& view)
    : m_Scene(scene), m_View(view), m_Objects(scene.m_Styles.GetStyles().size()), m_Drawn(m_Objects.size())
{
    const auto add = [&](int nStyle, std::size_t nObject) {
        m_Objects[static_cast<std::size_t>(scene.m_Styles.GetDrawn(nStyle))].push_back(nObject);
    };
    for (std::size_t i = 0; i < scene.m_Lines.size(); ++i) {
        add(scene.m_Lines[i].m_nStyle, i);
        m_Result.m_nObjects += scene.m_Lines[i].m_bContinued ? 0 : 1;
    }
    for (std::size_t i = 0; i < scene.m_Arcs.size(); ++i)
        add(scene.m_Arcs[i].m_nStyle, scene.m_Lines.size() + i);
    m_Result.m_nObjects += scene.m_Arcs.size();
    m_Result.m_Paths.resize(m_Objects.size());
    m_Result.m_Whole.resize(m_Objects.size(), true);
}

/// Draws into the maker's path, which the caller has begun, and stops where it gets longer than `nMost`.
void CLineDrawer::DrawStyle(std::size_t nStyle, std::size_t nMost, CPathMaker& maker)
{
    m_Drawn[nStyle] = 0;
    for (const std::size_t nObject : m_Objects[nStyle]) {
        maker.Begin();
        if (nObject >= m_Scene.m_Lines.size()) {
            FollowArc(m_Scene.m_Arcs[nObject - m_Scene.m_Lines.size()], m_View, maker);
            m_Drawn[nStyle] += maker.End(false) ? 1 : 0;
        } else {
            const TLine& line = m_Scene.m_Lines[nObject];
            const TPlace* const pPlaces = m_Scene.m_Places.data() + line.m_nFirst;
            const bool bBackwards = line.m_bArea && GoesRoundToWest(pPlaces, line.m_nCount);
            for (std::size_t i = 0; i < line.m_nCount && maker.GetNumberOfStraights() <= nMost; ++i)
                maker.To(pPlaces[bBackwards ? line.m_nCount - 1 - i : i]);
            m_Drawn[nStyle] += maker.End(line.m_bArea) && !line.m_bContinued ? 1 : 0;
        }
        if (maker.GetNumberOfStraights() > nMost)
            return;
    }
}

/// Draws those that have to give way. False if they don't give enough.
bool CLineDrawer::TryDense(const TShares& shares, double dMerge)
{
    CPathMaker maker(m_View, dMerge);
    const bool bShareCells = shares.m_Order.size() - shares.m_nWhole > kOwnCells;
    std::size_t nLeft = shares.m_nLeft;
    for (std::size_t i = shares.m_nWhole; i < shares.m_Order.size(); ++i) {
        const std::size_t nStyle = shares.m_Order[i];
        maker.BeginPath(bShareCells);
        DrawStyle(nStyle, nLeft, maker);
        if (maker.GetNumberOfStraights() > nLeft)
            return false;
        nLeft -= maker.GetNumberOfStraights();
        m_Result.m_Paths[nStyle] = maker.TakePath();
    }
    return true;
}

TLinePaths CLineDrawer::Draw()
{
    std::vector<std::size_t> needs;
    CPathMaker maker(m_View, 0.0);
    for (std::size_t i = 0; i < m_Objects.size(); ++i) {
        maker.BeginPath(false);
        DrawStyle(i, kMostStraights, maker);
        needs.push_back(maker.GetNumberOfStraights());
        m_Result.m_Paths[i] = maker.TakePath();
    }
    const TShares shares = ShareOut(needs, kMostStraights);
    if (!shares.IsEnough()) {
        for (std::size_t i = shares.m_nWhole; i < shares.m_Order.size(); ++i)
            m_Result.m_Whole[shares.m_Order[i]] = false;
        // It ends, because in the end the sheet has a single cell, and each straight takes a new one.
        const double dArea = m_View.GetBox().GetWidth() * m_View.GetBox().GetHeight();
        for (double dMerge = FirstCell(1.0, dArea); m_Result.m_dMerged == 0.0; dMerge *= kCellGrowth)
            m_Result.m_dMerged = TryDense(shares, dMerge) ? dMerge : 0.0;
    }
    for (const std::size_t nDrawn : m_Drawn)
        m_Result.m_nDrawn += nDrawn;
    return std::move(m_Result);
}

/// The edges between the first places of each cell: a coarser mesh, which still shows where the surface is fine.
std::vector<TEdge> Coarsen(const TScene& scene, const CView& view, double dCell)
{
    CCoverage coverage(view.GetBox(), dCell);
    constexpr std::uint32_t kNone = ~0U;
    std::vector<std::uint32_t> firstOfCell(coverage.GetNumberOfCells(), kNone);
    const auto firstNear = [&](std::uint32_t nPlace) {
        std::uint32_t& nFirst = firstOfCell[coverage.GetCell(view.ToPixel(scene.m_Places[nPlace]))];
        if (nFirst == kNone)
            nFirst = nPlace;
        return nFirst;
    };
    std::vector<TEdge> edges;
    for (const TEdge& edge : scene.m_Edges) {
        const std::uint32_t nFrom = firstNear(edge.m_nFrom);
        const std::uint32_t nTo = firstNear(edge.m_nTo);
        if (nFrom != nTo)
            edges.push_back({std::min(nFrom, nTo), std::max(nFrom, nTo)});
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

} // namespace

namespace Cli {

TLinePaths DrawLines(const TScene& scene, const CView& view)
{
    return CLineDrawer(scene, view).Draw();
}

TLinePaths DrawSurfaces(const TScene& scene, const CView& view)
{
    constexpr double kFirst = 1.0;
    TLinePaths paths;
    std::vector<TEdge> coarse;
    const double dFirst = FirstCell(kFirst, view.GetBox().GetWidth() * view.GetBox().GetHeight());
    while ((paths.m_dMerged == 0.0 ? scene.m_Edges : coarse).size() > kMostStraights) {
        paths.m_dMerged = paths.m_dMerged == 0.0 ? dFirst : paths.m_dMerged * kCellGrowth;
        coarse = Coarsen(scene, view, paths.m_dMerged);
    }
    CPathMaker maker(view, 0.0);
    for (const TEdge& edge : paths.m_dMerged == 0.0 ? scene.m_Edges : coarse) {
        maker.Begin();
        maker.To(scene.m_Places[edge.m_nFrom]);
        maker.To(scene.m_Places[edge.m_nTo]);
        paths.m_nDrawn += maker.End(false) ? 1 : 0;
    }
    paths.m_Paths.push_back(maker.TakePath());
    paths.m_nObjects = scene.m_Edges.size();
    return paths;
}

} // namespace Cli
