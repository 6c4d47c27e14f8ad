// Alignments as rows of places.
#pragma once

#include "cli/plot/scene.h"

#include <vector>

namespace Cli {

struct TRoad {
    std::vector<TPlace> m_Places; ///< empty where nothing tells where the alignment lies
    bool m_bWhole = true;         ///< nothing of its course is missing
};

/// Places along an alignment, as far as its elements tell where they lie: by positions, or by azimuths and lengths from
/// the start point on. Spirals of every shape are drawn with a curvature that changes evenly. In a geographic job the
/// positions alone count. At least the start point, if there is one.
TRoad TraceRoad(const CIEAlignment& alignment, bool bGeographic);

} // namespace Cli
