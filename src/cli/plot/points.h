// Marks of points.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/view.h"

#include <string>
#include <vector>

namespace Cli {

/// The data of paths that have a dot for each mark, drawn with round ends. If there are more than kMostMarks, the
/// styles that have most give way: of their marks one is left of those that fall together in a cell, as small as will
/// do.
struct TMarkPaths {
    std::vector<std::string> m_Paths; ///< by the number of the style that is drawn
    std::vector<double> m_Sizes;      ///< by style: pixels across a dot
    std::vector<bool> m_Rare;         ///< by style: so few among very many others that they go ahead of those
    std::vector<std::size_t> m_Shown; ///< marks of the scene, those of the rarest styles first
};

constexpr std::size_t kMostMarks = 20000;
constexpr std::size_t kFewMarks = 1500; ///< leave room between them

TMarkPaths DrawMarks(const TScene& scene, const CView& view);

} // namespace Cli
