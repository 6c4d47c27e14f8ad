#include "cli/plot/ink.h"

#include "cli/plot/svg.h"

#include <algorithm>
#include <fmt/format.h>
#include <numeric>
#include <vector>

namespace {

/// Lengths of dashes and gaps in widths of the line.
std::vector<double> DashesOf(CIEDrawLineProperties::EDashStyleType eStyle)
{
    switch (eStyle) {
    case CIEDrawLineProperties::Dashed:
        return {6, 4};
    case CIEDrawLineProperties::Dotted:
        return {1, 3};
    case CIEDrawLineProperties::DashDotted:
        return {8, 3, 1, 3};
    case CIEDrawLineProperties::DashDotDotted:
        return {8, 3, 1, 3, 1, 3};
    case CIEDrawLineProperties::DashedCustom:
        return {12, 6};
    case CIEDrawLineProperties::Solid:
    case CIEDrawLineProperties::ByLayer:
        break;
    }
    return {};
}

} // namespace

namespace Cli {

std::string LineAttributes(const TStyle& style, double dWidth, double dLongest)
{
    std::string text = fmt::format("stroke=\"{}\"", ColorToSvg(style.m_Color));
    if (dWidth != 1.0)
        text += fmt::format(" stroke-width=\"{}\"", dWidth);
    const std::vector<double> lengths = DashesOf(style.m_eDash);
    const double dScale = std::min(dWidth, dLongest / std::accumulate(lengths.begin(), lengths.end(), 0.0));
    std::string dashes;
    for (const double dLength : lengths)
        dashes += fmt::format("{}{:.3g}", dashes.empty() ? "" : " ", dLength * dScale);
    return dashes.empty() ? text : text + fmt::format(" stroke-dasharray=\"{}\"", dashes);
}

std::string FillAttributes(const TStyle& style)
{
    if (style.m_eFigure != EFigure::Area)
        return {};
    return fmt::format(" fill=\"{}\" fill-opacity=\"{}\"", ColorToSvg(style.m_Color),
                       style.m_bFlooded ? "0.4" : "0.07");
}

} // namespace Cli
