// Arcs on the ground.
#pragma once

#include "cli/plot/place.h"

#include <vector>

namespace Cli {

/// An arc around a centre, from its start angle on, from east towards north. In degrees a circle on the ground is
/// wider than it is high, so there are two radii.
struct TArc {
    TPlace m_Center;
    TPlace m_Radius;
    double m_dStart = 0.0; ///< degrees
    double m_dSweep = 0.0; ///< degrees, above 0 up to 360
    int m_nStyle = 0;

    /// The place at an angle in degrees.
    [[nodiscard]] TPlace At(double dAngle) const;
};

/// Degrees from the start to the end, above 0 up to a whole circle. Equal angles are a whole circle.
double SweepOf(double dStart, double dEnd);

/// The least rectangle that has all of an arc.
TExtent ExtentOf(const TArc& arc);

/// An arc as a row of places that is as good as the arc on a sheet of the window. Of one that lies outside, little.
std::vector<TPlace> RowOf(const TArc& arc, const TExtent& window);

} // namespace Cli
