#include "cli/plot/view.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kAir = 0.95; ///< of the box is taken

/// Half the extent, but so much that the scale stays within what numbers can tell: a single point gets some ground
/// around it, and points that differ by less than their coordinates can hold get more than that.
double HalfOf(double dLeast, double dMost, double dAlone)
{
    constexpr double kSmallest = 1e-9; // of the coordinates
    const double dHalf = dMost / 2.0 - dLeast / 2.0;
    const double dBottom = std::max(std::abs(dLeast), std::abs(dMost)) * kSmallest;
    return std::max(dHalf > 0.0 ? dHalf : 0.0, std::max(dBottom, dAlone * kSmallest));
}

} // namespace

namespace Cli {

CView::CView(const TExtent& extent, const TBox& box, bool bGeographic) : CView(extent, box, bGeographic, kAir) {}

CView CView::OfWindow(const TExtent& window, const TBox& box, bool bGeographic)
{
    CView view(window, box, bGeographic, 1.0);
    const TPixel first = view.ToPixel(window.m_Least), last = view.ToPixel(window.m_Most);
    const TBox shrunk{box.m_dLeft, box.m_dTop, box.m_dLeft + (last.m_dX - first.m_dX),
                      box.m_dTop + (first.m_dY - last.m_dY)};
    view.m_Box = shrunk;
    view.m_MiddlePixel = {(shrunk.m_dLeft + shrunk.m_dRight) / 2.0, (shrunk.m_dTop + shrunk.m_dBottom) / 2.0};
    return view;
}

CView::CView(const TExtent& extent, const TBox& box, bool bGeographic, double dAir)
    : m_Box(box), m_bGeographic(bGeographic)
{
    constexpr double kAlone = 10.0;       // metres around a single place
    constexpr double kLeastPixels = 10.0; // of a box, so that no scale is 0
    const double dAlone = bGeographic ? kAlone / kMetersOfDegree : kAlone;
    const TPlace& least = extent.m_Least;
    const TPlace& most = extent.m_Most;
    m_Middle = {least.m_dNorth / 2.0 + most.m_dNorth / 2.0, least.m_dEast / 2.0 + most.m_dEast / 2.0};
    m_MiddlePixel = {(box.m_dLeft + box.m_dRight) / 2.0, (box.m_dTop + box.m_dBottom) / 2.0};
    const double dShrink = bGeographic ? ShrinkOfEast(m_Middle.m_dNorth) : 1.0;
    double dNorthHalf = HalfOf(least.m_dNorth, most.m_dNorth, dAlone);
    const double dEastHalf = HalfOf(least.m_dEast, most.m_dEast, dAlone) * dShrink;
    if (least.m_dNorth == most.m_dNorth && least.m_dEast == most.m_dEast)
        dNorthHalf = std::max(dNorthHalf, dAlone);
    m_dNorthScale = std::min(std::max(box.GetHeight(), kLeastPixels) / 2.0 / dNorthHalf,
                             std::max(box.GetWidth(), kLeastPixels) / 2.0 / dEastHalf) *
                    dAir;
    m_dEastScale = m_dNorthScale * dShrink;
}

double RoundDown125(double dValue)
{
    const double dPower = std::pow(10.0, std::floor(std::log10(dValue)));
    const double dLead = dValue / dPower;
    return (dLead >= 5.0 ? 5.0 : dLead >= 2.0 ? 2.0 : 1.0) * dPower;
}

} // namespace Cli
