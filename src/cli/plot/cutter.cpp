#include "cli/plot/cutter.h"

#include "cli/plot/clip.h"

#include <algorithm>
#include <cmath>

namespace Cli {

bool IsPlace(const TPlace& place)
{
    constexpr double kFarthest = 1e12; // metres; beyond it lies no place that anybody surveys
    // false for what isn't a number
    return std::abs(place.m_dNorth) <= kFarthest && std::abs(place.m_dEast) <= kFarthest;
}

CCutter::CCutter(TScene& scene, const std::optional<TExtent>& window) : m_Scene(scene), m_Window(window)
{
    constexpr double kAir = 0.2;
    if (window)
        m_Room = window->With(std::max(window->GetNorth(), window->GetEast()) * kAir);
}

EFate CCutter::AddMark(const TPlace& place, const CIEObject* pObject, const TStyle& style)
{
    if (!IsPlace(place))
        return EFate::NoPlace;
    if (!IsInside(place))
        return EFate::Outside;
    m_Scene.m_Marks.push_back({place, pObject, m_Scene.m_Styles.Take(style)});
    Widen({place, place});
    return EFate::Drawn;
}

EFate CCutter::AddRow(const std::vector<TPlace>& places, const TStyle& style, bool bArea)
{
    if (!std::all_of(places.begin(), places.end(), IsPlace))
        return EFate::NoPlace;
    if (places.empty())
        return EFate::Drawn;
    if (!m_Window) {
        AddPiece(places, style, bArea, false);
        return EFate::Drawn;
    }
    if (bArea ? ClipArea(*m_Window, places).empty() : ClipRow(*m_Window, places).empty())
        return EFate::Outside;
    if (bArea) {
        AddPiece(ClipArea(m_Room, places), style, true, false);
        return EFate::Drawn;
    }
    bool bContinued = false;
    for (const std::vector<TPlace>& row : ClipRow(m_Room, places)) {
        AddPiece(row, style, false, bContinued);
        bContinued = true;
    }
    return EFate::Drawn;
}

void CCutter::AddPiece(const std::vector<TPlace>& places, const TStyle& style, bool bArea, bool bContinued)
{
    const int nStyle = bContinued ? m_Scene.m_Lines.back().m_nStyle : m_Scene.m_Styles.Take(style);
    m_Scene.m_Lines.push_back({m_Scene.m_Places.size(), places.size(), nStyle, bArea, bContinued});
    m_Scene.m_Places.insert(m_Scene.m_Places.end(), places.begin(), places.end());
    TExtent extent{places.front(), places.front()};
    for (const TPlace& place : places)
        extent.Widen(place);
    Widen(extent);
}

EFate CCutter::AddArc(const TArc& arc, const TStyle& style)
{
    if (m_Window)
        return AddRow(RowOf(arc, m_Room), style, false);
    m_Scene.m_Arcs.push_back(arc);
    m_Scene.m_Arcs.back().m_nStyle = m_Scene.m_Styles.Take(style);
    Widen(ExtentOf(arc));
    return EFate::Drawn;
}

EFate CCutter::AddEdge(std::size_t nFrom, std::size_t nTo)
{
    const TPlace from = m_Scene.m_Places[nFrom], to = m_Scene.m_Places[nTo];
    if (m_Window) {
        if (!ClipStraight(*m_Window, from, to))
            return EFate::Outside;
        if (!m_Room.Has(from) || !m_Room.Has(to)) {
            const auto part = ClipStraight(m_Room, from, to).value_or(std::pair{from, to});
            nFrom = m_Scene.m_Places.size();
            nTo = nFrom + 1;
            m_Scene.m_Places.insert(m_Scene.m_Places.end(), {part.first, part.second});
        }
    }
    m_Scene.m_Edges.push_back({static_cast<std::uint32_t>(nFrom), static_cast<std::uint32_t>(nTo)});
    Widen({m_Scene.m_Places[nFrom], m_Scene.m_Places[nFrom]});
    Widen({m_Scene.m_Places[nTo], m_Scene.m_Places[nTo]});
    return EFate::Drawn;
}

void CCutter::Widen(const TExtent& extent)
{
    if (!m_Scene.m_Extent)
        m_Scene.m_Extent = extent;
    m_Scene.m_Extent->Widen(extent.m_Least);
    m_Scene.m_Extent->Widen(extent.m_Most);
}

void CCutter::Finish()
{
    if (!m_Scene.m_Extent || !m_Window)
        return;
    m_Scene.m_Extent = m_Window;
    m_Scene.m_bWindow = true;
}

} // namespace Cli
