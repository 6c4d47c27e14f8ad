// How the legend shows a layer.
#pragma once

#include "cli/plot/scene.h"

namespace Cli {

/// Gives each layer its sample. To be called while the scene's styles are still told apart by layer.
void FindSamples(TScene& scene);

} // namespace Cli
