// Places on the ground.
#pragma once

#include <algorithm>

namespace Cli {

/// A place on the ground: metres, or decimal degrees in a geographic job.
struct TPlace {
    double m_dNorth = 0.0;
    double m_dEast = 0.0;
};

/// A rectangle on the ground.
struct TExtent {
    TPlace m_Least;
    TPlace m_Most;

    [[nodiscard]] double GetNorth() const { return m_Most.m_dNorth - m_Least.m_dNorth; }
    [[nodiscard]] double GetEast() const { return m_Most.m_dEast - m_Least.m_dEast; }
    /// Its rim counts to it.
    [[nodiscard]] bool Has(const TPlace& place) const
    {
        return place.m_dNorth >= m_Least.m_dNorth && place.m_dNorth <= m_Most.m_dNorth &&
               place.m_dEast >= m_Least.m_dEast && place.m_dEast <= m_Most.m_dEast;
    }
    void Widen(const TPlace& place)
    {
        m_Least = {std::min(m_Least.m_dNorth, place.m_dNorth), std::min(m_Least.m_dEast, place.m_dEast)};
        m_Most = {std::max(m_Most.m_dNorth, place.m_dNorth), std::max(m_Most.m_dEast, place.m_dEast)};
    }
    /// With so much more on each side.
    [[nodiscard]] TExtent With(double dMore) const
    {
        return {{m_Least.m_dNorth - dMore, m_Least.m_dEast - dMore}, {m_Most.m_dNorth + dMore, m_Most.m_dEast + dMore}};
    }
};

} // namespace Cli
