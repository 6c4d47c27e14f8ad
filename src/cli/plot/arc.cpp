#include "cli/plot/arc.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kRadian = std::numbers::pi / 180.0;

} // namespace

namespace Cli {

TPlace TArc::At(double dAngle) const
{
    return {m_Center.m_dNorth + m_Radius.m_dNorth * std::sin(dAngle * kRadian),
            m_Center.m_dEast + m_Radius.m_dEast * std::cos(dAngle * kRadian)};
}

double SweepOf(double dStart, double dEnd)
{
    constexpr double kCircle = 360.0, kHalf = 180.0;
    constexpr double kRounding = 1e-9; // the end of a circle may be off by the last digits of its angles
    double dSweep = std::fmod(dEnd - dStart, kCircle);
    if (dSweep <= 0.0)
        dSweep += kCircle;
    return dSweep < kRounding && std::abs(dEnd - dStart) > kHalf ? kCircle : dSweep;
}

TExtent ExtentOf(const TArc& arc)
{
    constexpr double kQuarter = 90.0;
    const double dEnd = arc.m_dStart + arc.m_dSweep;
    TExtent extent{arc.At(arc.m_dStart), arc.At(arc.m_dStart)};
    extent.Widen(arc.At(dEnd));
    for (double dAngle = std::ceil(arc.m_dStart / kQuarter) * kQuarter; dAngle < dEnd; dAngle += kQuarter)
        extent.Widen(arc.At(dAngle));
    return extent;
}

std::vector<TPlace> RowOf(const TArc& arc, const TExtent& window)
{
    constexpr double kOff = 1e-5; // of the window
    constexpr double kLeastSides = 90.0, kMostSides = 7200.0;
    const TExtent extent = ExtentOf(arc);
    if (extent.m_Most.m_dNorth < window.m_Least.m_dNorth || extent.m_Least.m_dNorth > window.m_Most.m_dNorth ||
        extent.m_Most.m_dEast < window.m_Least.m_dEast || extent.m_Least.m_dEast > window.m_Most.m_dEast)
        return {arc.At(arc.m_dStart)};
    const double dOff = kOff * std::max(window.GetNorth(), window.GetEast());
    const double dSides = arc.m_dSweep * kRadian / std::sqrt(8.0 * dOff / std::max(arc.m_Radius.m_dEast, dOff));
    const int nSides = static_cast<int>(std::clamp(std::ceil(dSides), kLeastSides, kMostSides));
    std::vector<TPlace> places;
    for (int i = 0; i <= nSides; ++i)
        places.push_back(arc.At(arc.m_dStart + arc.m_dSweep * i / nSides));
    return places;
}

} // namespace Cli
