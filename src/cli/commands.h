// The commands.
#pragma once

#include "cli/arguments.h"

namespace Cli {

EExit Convert(const TConvertArguments& arguments);
EExit Info(const TInfoArguments& arguments);
EExit Diff(const TDiffArguments& arguments);
EExit Plot(const TPlotArguments& arguments);
EExit Formats(const TFormatsArguments& arguments);

} // namespace Cli
