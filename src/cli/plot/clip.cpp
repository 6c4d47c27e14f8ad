#include "cli/plot/clip.h"

#include <array>

namespace {

using namespace Cli;

/// One side of the window: what lies beyond the limit is cut off.
struct TSide {
    double TPlace::*m_pValue;
    double m_dLimit;
    bool m_bLeast;

    /// 0 on the limit, negative beyond it.
    [[nodiscard]] double Inside(const TPlace& place) const
    {
        return m_bLeast ? place.*m_pValue - m_dLimit : m_dLimit - place.*m_pValue;
    }
    /// Where a straight that crosses the limit does.
    [[nodiscard]] TPlace Cross(const TPlace& from, const TPlace& to) const
    {
        const double dFrom = Inside(from), dTo = Inside(to);
        const double dShare = dFrom / (dFrom - dTo);
        TPlace place{from.m_dNorth + (to.m_dNorth - from.m_dNorth) * dShare,
                     from.m_dEast + (to.m_dEast - from.m_dEast) * dShare};
        place.*m_pValue = m_dLimit;
        return place;
    }
};

std::array<TSide, 4> SidesOf(const TExtent& window)
{
    return {{{&TPlace::m_dNorth, window.m_Least.m_dNorth, true},
             {&TPlace::m_dNorth, window.m_Most.m_dNorth, false},
             {&TPlace::m_dEast, window.m_Least.m_dEast, true},
             {&TPlace::m_dEast, window.m_Most.m_dEast, false}}};
}

bool IsSame(const TPlace& a, const TPlace& b)
{
    return a.m_dNorth == b.m_dNorth && a.m_dEast == b.m_dEast;
}

} // namespace

namespace Cli {

std::optional<std::pair<TPlace, TPlace>> ClipStraight(const TExtent& window, const TPlace& from, const TPlace& to)
{
    std::pair<TPlace, TPlace> part{from, to};
    for (const TSide& side : SidesOf(window)) {
        const bool bFrom = side.Inside(part.first) >= 0.0, bTo = side.Inside(part.second) >= 0.0;
        if (!bFrom && !bTo)
            return std::nullopt;
        if (bFrom != bTo)
            (bFrom ? part.second : part.first) = side.Cross(part.first, part.second);
    }
    return part;
}

std::vector<std::vector<TPlace>> ClipRow(const TExtent& window, const std::vector<TPlace>& places)
{
    std::vector<std::vector<TPlace>> rows;
    if (places.size() == 1 && window.Has(places.front()))
        rows.push_back(places);
    bool bGoesOn = false; // the last row ends at the place before
    for (std::size_t i = 1; i < places.size(); ++i) {
        const auto part = ClipStraight(window, places[i - 1], places[i]);
        if (!part) {
            bGoesOn = false;
            continue;
        }
        if (!bGoesOn)
            rows.push_back({part->first});
        rows.back().push_back(part->second);
        bGoesOn = IsSame(part->second, places[i]);
    }
    return rows;
}

std::vector<TPlace> ClipArea(const TExtent& window, std::vector<TPlace> places)
{
    std::vector<TPlace> kept;
    for (const TSide& side : SidesOf(window)) {
        kept.clear();
        for (std::size_t i = 0; i < places.size(); ++i) {
            const TPlace& from = places[i];
            const TPlace& to = places[(i + 1) % places.size()];
            const bool bFrom = side.Inside(from) >= 0.0, bTo = side.Inside(to) >= 0.0;
            if (bFrom)
                kept.push_back(from);
            if (bFrom != bTo)
                kept.push_back(side.Cross(from, to));
        }
        places.swap(kept);
    }
    return places;
}

} // namespace Cli
