// A job as a picture.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/sheet.h"

#include <string>
#include <vector>

namespace Cli {

struct TPictureOptions {
    TSize m_Size;
    bool m_bLabels = true;
};

struct TPicture {
    std::string m_strSvg;
    bool m_bNothing = false;            ///< there was nothing to draw, and the picture says so
    std::vector<std::string> m_Remarks; ///< what isn't shown, as the picture's last line says
};

/// An SVG document that needs nothing from elsewhere. It is at most a few megabytes long, whatever the scene holds.
TPicture DrawPicture(const TScene& scene, const CIEData& job, const std::string& strTitle,
                     const TPictureOptions& options);

} // namespace Cli
