// Which part of the ground is worth a picture of its own.
#pragma once

#include "cli/plot/scene.h"

namespace Cli {

/// Where nearly all of a scene lies, if few places far off stretch it to more than ten times that; else nothing.
std::optional<TExtent> FindCore(const TScene& scene, bool bGeographic);

} // namespace Cli
