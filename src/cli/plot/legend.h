// The legend, and counts in words.
#pragma once

#include "cli/plot/sheet.h"

#include <string>

namespace Cli {

/// Layers with what lies on them. Empty layers are counted in one line, and so are those that have no room.
void AppendLegend(std::string& out, const TSize& size, const TScene& scene);

/// A count with commas between thousands.
std::string GroupDigits(std::size_t nCount);
/// "12 points, 1 line": what is drawn of the scene, and lies in its window.
std::string DescribeDrawn(const TScene& scene);

} // namespace Cli
