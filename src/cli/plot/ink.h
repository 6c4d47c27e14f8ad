// Styles as attributes of SVG.
#pragma once

#include "cli/plot/style.h"

#include <limits>
#include <string>

namespace Cli {

/// Colour, line type and width, which is in pixels. Dashes and gaps grow with the width, but a dash and the gaps and
/// dots behind it aren't longer than `dLongest`.
std::string LineAttributes(const TStyle& style, double dWidth,
                           double dLongest = std::numeric_limits<double>::infinity());
/// Of an area, with a blank in front; empty for others.
std::string FillAttributes(const TStyle& style);

} // namespace Cli
