#include "cli/stop.h"

#include "alidade/vellumlib/data.h"

#include <csignal>

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may touch lock-free atomics only");

namespace {

void AskToStop(int /*nSignal*/)
{
    CIEData::m_bStopProcess.store(true);
}

} // namespace

namespace Cli {

void CatchSignals()
{
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction old = {};
        if (sigaction(nSignal, nullptr, &old) != 0 || old.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = &AskToStop;
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        sigemptyset(&action.sa_mask);
        (void)sigaction(nSignal, &action, nullptr);
    }
    for (const int nSignal : {SIGPIPE, SIGXFSZ})
        (void)std::signal(nSignal, SIG_IGN);
}

bool IsStopAsked()
{
    return CIEData::m_bStopProcess.load();
}

} // namespace Cli
