// Ctrl-C and its kin.
#pragma once

namespace Cli {

/// Lets the first SIGINT, SIGTERM or SIGHUP ask the run to stop, so that it ends in order and leaves no file behind.
/// The second one ends the program at once. A signal that the program was started to ignore stays ignored. A pipe that
/// nobody reads any more gives failed writes instead of ending the program with its staging folder in place.
void CatchSignals();

/// True once a stop was asked for.
bool IsStopAsked();

} // namespace Cli
