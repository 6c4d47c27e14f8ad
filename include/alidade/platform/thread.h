// Threads that are created suspended and owned by whoever asked for them.
#pragma once

#include "alidade/platform/api.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <thread>

/// A thread with a start gate. The owner deletes it; deleting waits for a thread that runs, and a thread that was never
/// resumed ends without running its procedure. Safe to be waited for from several threads.
class ALIDADE_API CIEThread {
public:
    /// What the thread runs; the result is its exit code.
    using TProcedure = std::function<int()>;

    /// Makes a thread that waits at its gate. Null if the system gives none.
    static std::unique_ptr<CIEThread> CreateSuspended(TProcedure procedure);
    ~CIEThread();
    CIEThread(const CIEThread&) = delete;
    CIEThread& operator=(const CIEThread&) = delete;

    /// Opens the gate. A second call does nothing.
    void Resume();
    /// Waits until the procedure has returned. False if `milliseconds` passed first; -1 waits for ever (and would do so
    /// for a thread that is never resumed).
    bool Wait(std::int64_t milliseconds = -1);
    /// True while the procedure has yet to return.
    [[nodiscard]] bool IsRunning() const;
    /// What the procedure gave; only after Wait gave true.
    [[nodiscard]] int GetExitCode() const;

    /// Test hook: makes the next `count` CreateSuspended calls give null.
    static void RefuseNext(int count);

private:
    struct TState;
    explicit CIEThread(std::shared_ptr<TState> pState);
    std::shared_ptr<TState> m_pState; // the thread's too
    std::thread m_Thread;
};
