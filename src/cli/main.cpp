#include "cli/arguments.h"
#include "cli/messages.h"
#include "cli/stop.h"

#include <exception>
#include <new>

int main(int argc, char** argv)
{
    using Cli::EExit;
    EExit eExit = EExit::Internal;
    try {
        Cli::CatchSignals();
        eExit = Cli::RunCommandLine(argc, argv);
    } catch (const std::bad_alloc&) {
        Cli::PutOnError("alidade: out of memory\n");
        eExit = EExit::OutOfMemory;
    } catch (const std::exception& error) {
        Cli::PutOnError(std::string("alidade: a fault of the program: ") + error.what() + "\n");
    }
    return static_cast<int>(eExit);
}
