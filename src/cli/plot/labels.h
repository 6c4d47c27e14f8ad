// Labels of points and alignments.
#pragma once

#include "cli/plot/points.h"

#include <string>

namespace Cli {

struct TLabels {
    std::string m_strSvg;
    std::size_t m_nLabels = 0; ///< points that have a name or a code
    std::size_t m_nShown = 0;
    std::size_t m_nCodes = 0; ///< points that have codes besides a name
    std::size_t m_nCodesShown = 0;
};

/// Names of points and, in smaller type, their codes beneath them, or above where there is more room; as many as have
/// room beside each other and beside the marks. Names go ahead of codes, those of rare styles ahead of others, and
/// earlier points ahead of later ones. Only where marks are very many, a name of a rare style may cover marks of
/// others, and here and there any name may; it has a wide halo then. To be drawn above the marks.
TLabels DrawLabels(const TScene& scene, const TMarkPaths& marks, const CView& view);

} // namespace Cli
