// What the program tells its caller.
#pragma once

#include "alidade/vellumlib/types.h"

#include <string_view>

namespace Cli {

enum class EExit : int {
    Done = 0,
    Internal = 1,        ///< a fault of the program
    Usage = 2,           ///< the command line makes no sense
    InputUnreadable = 3, ///< the input is missing, or can't be read to its end
    FormUnknown = 4,     ///< no form is known for a file, or several fit
    BadContent = 5,      ///< the input isn't of its form, or nothing in it could be used
    Loss = 6,            ///< delivered in part, or not delivered because a loss was forbidden
    OutputFailed = 7,    ///< the output exists already, or couldn't be written
    OutOfMemory = 8,
    NotSupported = 9, ///< the form isn't built
    Stopped = 130,    ///< as a shell tells of a program that Ctrl-C ended
};

EExit ExitOfImport(EIEResult eResult);
EExit ExitOfExport(EIEResult eResult);

/// A stable word for a result: "ok", "partial" ...
std::string_view NameOf(EIEResult eResult);
/// What the result of an import or of an export means, as the end of a sentence about a file.
std::string_view ExplainImport(EIEResult eResult);
std::string_view ExplainExport(EIEResult eResult);

} // namespace Cli
