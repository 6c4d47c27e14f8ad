#include "cli/plot/lines.h"

#include "cli/plot/coverage.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace Cli;

/// A place of the sheet in tenths of a pixel, so that relative steps add up to where they should.
struct TTenths {
    int m_nX = 0;
    int m_nY = 0;

    bool operator==(const TTenths&) const = default;
};

constexpr double kTenth = 10.0;

TTenths ToTenths(const TPixel& pixel)
{
    return {static_cast<int>(std::lround(pixel.m_dX * kTenth)), static_cast<int>(std::lround(pixel.m_dY * kTenth))};
}

TPixel ToPixel(const TTenths& place)
{
    return {place.m_nX / kTenth, place.m_nY / kTenth};
}

void AppendTenths(std::string& out, int nTenths, bool bFirst)
{
    if (nTenths < 0)
        out += '-';
    else if (!bFirst)
        out += ' ';
    const int nSize = std::abs(nTenths);
    out += std::to_string(nSize / 10);
    if (nSize % 10 != 0)
        out.append({'.', static_cast<char>('0' + nSize % 10)});
}

/// Draws rows of places, one after the other.
class CPathMaker {
public:
    /// `nMerge` is the number of pixels within which straights are merged; 0 draws all of them.
    CPathMaker(const CView& view, std::size_t nPaths, int nMerge)
        : m_View(view),
          m_Coverage(view.GetBox(), std::max(nMerge, 1)),
          m_nMerge(nMerge),
          m_nTolerance(nMerge == 0 ? 5 : nMerge * 10)
    {
        m_Result.m_Paths.resize(nPaths);
        m_Result.m_nMerged = nMerge;
    }

    void Begin(int nPath)
    {
        m_pPath = &m_Result.m_Paths[static_cast<std::size_t>(nPath)];
        m_bBegun = m_bPending = m_bMoved = m_bPen = m_bDrawn = false;
    }
    void To(const TPlace& place);
    void End(bool bClose);

    [[nodiscard]] bool IsTooMuch() const { return m_nStraights > kMostStraights; }
    TLinePaths Take() { return std::move(m_Result); }

private:
    void Straight(const TTenths& to);
    void Dot();

    const CView& m_View;
    CCoverage m_Coverage;
    TLinePaths m_Result;
    std::string* m_pPath = nullptr;
    std::size_t m_nStraights = 0;
    int m_nMerge;
    int m_nTolerance; ///< tenths of a pixel; a place that is nearer to the last one is passed over
    TTenths m_First;
    TTenths m_Last;
    TTenths m_Pending; ///< the last place that was passed over
    bool m_bBegun = false;
    bool m_bPending = false;
    bool m_bMoved = false; ///< the row is longer than the tolerance
    bool m_bPen = false;   ///< the path's last place is m_Last
    bool m_bDrawn = false;
};

void CPathMaker::To(const TPlace& place)
{
    const TTenths here = ToTenths(m_View.ToPixel(place));
    if (!m_bBegun) {
        m_First = m_Last = here;
        m_bBegun = true;
        return;
    }
    m_bPending = std::max(std::abs(here.m_nX - m_Last.m_nX), std::abs(here.m_nY - m_Last.m_nY)) < m_nTolerance;
    if (m_bPending)
        m_Pending = here;
    else
        Straight(here);
}

void CPathMaker::Straight(const TTenths& to)
{
    m_bMoved = true;
    const TTenths from = m_Last;
    m_Last = to;
    if (m_nMerge > 0 && !m_Coverage.TakeLine(ToPixel(from), ToPixel(to))) {
        m_bPen = false;
        return;
    }
    if (!m_bPen) {
        *m_pPath += 'M';
        AppendTenths(*m_pPath, from.m_nX, true);
        AppendTenths(*m_pPath, from.m_nY, false);
        *m_pPath += 'l';
    }
    AppendTenths(*m_pPath, to.m_nX - from.m_nX, !m_bPen);
    AppendTenths(*m_pPath, to.m_nY - from.m_nY, false);
    m_bPen = m_bDrawn = true;
    ++m_nStraights;
}

void CPathMaker::Dot()
{
    if (!m_Coverage.Take(ToPixel(m_First)))
        return;
    *m_pPath += 'M';
    AppendTenths(*m_pPath, m_First.m_nX, true);
    AppendTenths(*m_pPath, m_First.m_nY, false);
    *m_pPath += 'h';
    AppendTenths(*m_pPath, std::max(m_nMerge, 1) * 10, true);
    m_bDrawn = true;
    ++m_nStraights;
}

void CPathMaker::End(bool bClose)
{
    ++m_Result.m_nObjects;
    if (!m_bBegun)
        return;
    if (!m_bMoved) {
        Dot();
    } else {
        if (m_bPending && m_Pending != m_Last)
            Straight(m_Pending);
        if (bClose && m_nMerge > 0 && m_Last != m_First)
            Straight(m_First);
        else if (bClose && m_bPen)
            *m_pPath += 'z';
    }
    m_Result.m_nDrawn += m_bDrawn ? 1 : 0;
}

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

bool TryLines(const TScene& scene, const CView& view, CPathMaker& maker)
{
    for (const TLine& line : scene.m_Lines) {
        const int nStyle = scene.m_Styles.GetDrawn(line.m_nStyle);
        maker.Begin(nStyle);
        const TPlace* const pPlaces = scene.m_Places.data() + line.m_nFirst;
        const bool bBackwards = line.m_bArea && GoesRoundToWest(pPlaces, line.m_nCount);
        for (std::size_t i = 0; i < line.m_nCount && !maker.IsTooMuch(); ++i)
            maker.To(pPlaces[bBackwards ? line.m_nCount - 1 - i : i]);
        maker.End(line.m_bArea);
        if (maker.IsTooMuch())
            return false;
    }
    for (const TArc& arc : scene.m_Arcs) {
        maker.Begin(scene.m_Styles.GetDrawn(arc.m_nStyle));
        FollowArc(arc, view, maker);
        maker.End(false);
        if (maker.IsTooMuch())
            return false;
    }
    return true;
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
    // It ends, because in the end the sheet has fewer cells than there may be straights, and each takes a new cell.
    for (int nMerge = 0;; nMerge = std::max(1, nMerge * 2)) {
        CPathMaker maker(view, scene.m_Styles.GetStyles().size(), nMerge);
        if (TryLines(scene, view, maker))
            return maker.Take();
    }
}

TLinePaths DrawSurfaces(const TScene& scene, const CView& view)
{
    std::vector<TEdge> coarse;
    int nMerge = 0;
    while ((nMerge == 0 ? scene.m_Edges : coarse).size() > kMostStraights) {
        nMerge = std::max(1, nMerge * 2);
        coarse = Coarsen(scene, view, nMerge);
    }
    CPathMaker maker(view, 1, 0);
    for (const TEdge& edge : nMerge == 0 ? scene.m_Edges : coarse) {
        maker.Begin(0);
        maker.To(scene.m_Places[edge.m_nFrom]);
        maker.To(scene.m_Places[edge.m_nTo]);
        maker.End(false);
    }
    TLinePaths paths = maker.Take();
    paths.m_nObjects = scene.m_Edges.size();
    paths.m_nMerged = nMerge;
    return paths;
}

} // namespace Cli
