// Lines, areas, arcs and surfaces as paths of bounded length.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/view.h"

#include <string>
#include <vector>

namespace Cli {

/// The data of paths. Their length is bounded whatever the scene holds: rows of places are drawn so that no bend of a
/// quarter of a pixel is lost, and what is smaller is a dot. If that is still too much, the styles that have most give
/// way: those of their straights whose surroundings have straights of the style already are left out, within a pixel
/// first, then within more. Of a surface, the positions within so many pixels become one.
struct TLinePaths {
    std::vector<std::string> m_Paths; ///< by the number of the style that is drawn
    std::vector<bool> m_Whole;        ///< by style: none of its straights was left out
    std::size_t m_nObjects = 0;
    std::size_t m_nDrawn = 0; ///< of the objects, those of which anything was drawn
    double m_dMerged = 0.0;   ///< pixels within which things were merged; 0 where none were
};

/// Straights at most in the paths of lines, and in those of surfaces.
constexpr std::size_t kMostStraights = 80000;

TLinePaths DrawLines(const TScene& scene, const CView& view);
/// The edges of the surfaces, as one path.
TLinePaths DrawSurfaces(const TScene& scene, const CView& view);

} // namespace Cli
