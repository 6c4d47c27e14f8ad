// What of rows of places lies in a window.
#pragma once

#include "cli/plot/place.h"

#include <optional>
#include <utility>
#include <vector>

namespace Cli {

/// The part of a straight that lies in the window, its rim included; nothing where none does.
std::optional<std::pair<TPlace, TPlace>> ClipStraight(const TExtent& window, const TPlace& from, const TPlace& to);

/// The rows that are left of a row of places. A single place is a row.
std::vector<std::vector<TPlace>> ClipRow(const TExtent& window, const std::vector<TPlace>& places);

/// What is left of an area, as a row that closes by itself; it may run along the rim. Empty where nothing is left.
std::vector<TPlace> ClipArea(const TExtent& window, std::vector<TPlace> places);

} // namespace Cli
