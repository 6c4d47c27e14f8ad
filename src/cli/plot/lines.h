// Lines, areas, arcs and surfaces as paths of bounded length.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/view.h"

#include <string>
#include <vector>

namespace Cli {

/// The data of paths. Their length is bounded whatever the scene holds: rows of places are drawn to half a pixel, what
/// is smaller than a pixel is a dot, and only one dot stands in a pixel. If that is still too much, straights whose
/// surroundings are drawn already are left out, within 1 pixel first, then within 2, 4 ... pixels; of a surface, the
/// positions within so many pixels become one.
struct TLinePaths {
    std::vector<std::string> m_Paths; ///< by the number of the style that is drawn
    std::size_t m_nObjects = 0;
    std::size_t m_nDrawn = 0; ///< of the objects, those of which anything was drawn
    int m_nMerged = 0;        ///< pixels within which things were merged; 0 where none were
};

/// Straights at most in the paths of lines, and in those of surfaces.
constexpr std::size_t kMostStraights = 80000;

TLinePaths DrawLines(const TScene& scene, const CView& view);
/// The edges of the surfaces, as one path.
TLinePaths DrawSurfaces(const TScene& scene, const CView& view);

} // namespace Cli
