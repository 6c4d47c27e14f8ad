// Marks of points and their labels.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/view.h"

#include <string>
#include <vector>

namespace Cli {

/// The data of paths that have a dot for each mark, drawn with round ends. If there are more than kMostMarks, one is
/// left of those that fall together in a part of a pixel, then in a pixel, in 2, 4 ... pixels.
struct TMarkPaths {
    std::vector<std::string> m_Paths; ///< by the number of the style that is drawn
    std::vector<std::size_t> m_Shown; ///< marks of the scene, in order
    double m_dSize = 0.0;             ///< pixels across a dot
};

constexpr std::size_t kMostMarks = 20000;

TMarkPaths DrawMarks(const TScene& scene, const CView& view);

struct TLabels {
    std::string m_strSvg;
    std::size_t m_nLabels = 0; ///< points that have a name or a code
    std::size_t m_nShown = 0;
    std::size_t m_nCodes = 0; ///< points that have codes besides a name
    std::size_t m_nCodesShown = 0;
};

/// Names of points and, in smaller type, their codes beneath them, or above where there is more room; as many as have
/// room beside each other. Names go ahead of codes, and earlier points ahead of later ones.
TLabels DrawLabels(const TScene& scene, const TMarkPaths& marks, const CView& view);

} // namespace Cli
