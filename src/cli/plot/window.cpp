#include "cli/plot/window.h"

#include "cli/plot/view.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace Cli;

/// All that the scene knows the place of.
std::vector<TPlace> PlacesOf(const TScene& scene)
{
    std::vector<TPlace> places;
    for (const TMark& mark : scene.m_Marks)
        places.push_back(mark.m_Place);
    for (const TPlace& place : scene.m_Places) {
        if (scene.m_Extent->Has(place)) // some of a surface may have no place
            places.push_back(place);
    }
    for (const TArc& arc : scene.m_Arcs) {
        places.push_back(arc.At(arc.m_dStart));
        places.push_back(arc.At(arc.m_dStart + arc.m_dSweep / 2.0));
    }
    return places;
}

/// Leaves out a fiftieth at each end, but at least one: what is odd may all lie on one side.
void FindMost(std::vector<TPlace>& places, double TPlace::*pValue, TExtent& core)
{
    constexpr std::size_t kShare = 50;
    const std::size_t nOut = (places.size() + kShare - 1) / kShare;
    const auto nth = [&](std::size_t n) {
        const auto it = places.begin() + static_cast<std::ptrdiff_t>(n);
        std::nth_element(places.begin(), it, places.end(),
                         [&](const TPlace& a, const TPlace& b) { return a.*pValue < b.*pValue; });
        return (*it).*pValue;
    };
    core.m_Least.*pValue = nth(nOut);
    core.m_Most.*pValue = nth(places.size() - 1 - nOut);
}

} // namespace

namespace Cli {

std::optional<TExtent> FindCore(const TScene& scene, bool bGeographic)
{
    constexpr std::size_t kFewest = 10; // of less, nobody can tell which are the odd ones
    constexpr double kMuch = 10.0, kAlone = 1.0, kAir = 0.02;
    if (!scene.m_Extent)
        return std::nullopt;
    std::vector<TPlace> places = PlacesOf(scene);
    if (places.size() < kFewest)
        return std::nullopt;
    TExtent core;
    FindMost(places, &TPlace::m_dNorth, core);
    FindMost(places, &TPlace::m_dEast, core);
    const double dShrink = bGeographic ? ShrinkOfEast((core.m_Least.m_dNorth + core.m_Most.m_dNorth) / 2.0) : 1.0;
    const auto longer = [&](const TExtent& extent) { return std::max(extent.GetNorth(), extent.GetEast() * dShrink); };
    const double dSize = std::max(longer(core), bGeographic ? kAlone / kMetersOfDegree : kAlone);
    if (longer(*scene.m_Extent) <= kMuch * dSize)
        return std::nullopt;
    // what lies near the most belongs to it
    const TExtent near = core.With(dSize);
    for (const TPlace& place : places) {
        if (near.Has(place))
            core.Widen(place);
    }
    return core.With(std::max(longer(core), dSize) * kAir);
}

} // namespace Cli
