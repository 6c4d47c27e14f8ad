#include "alidade/platform/thread.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace {

// From a year on a wait has no end: a deadline that far off could overflow the clock's arithmetic.
constexpr std::int64_t kEndlessWait = std::int64_t{365} * 24 * 60 * 60 * 1000;

std::atomic<int> g_nRefusals{0};

bool TakeRefusal()
{
    int nRefusals = g_nRefusals.load();
    while (nRefusals > 0) {
        if (g_nRefusals.compare_exchange_weak(nRefusals, nRefusals - 1))
            return true;
    }
    return false;
}

} // namespace

struct CIEThread::TState {
    enum class EGate { Shut, Open, Cancelled };

    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    EGate m_eGate = EGate::Shut;
    bool m_bReturned = false;
    int m_nExitCode = 0;
    TProcedure m_Procedure;
    std::thread::id m_Id; ///< of the thread, once its gate is open

    void OpenGate(EGate eGate);
    void Run();
};

/// Only the first opening counts: a thread that runs can't be cancelled any more.
void CIEThread::TState::OpenGate(EGate eGate)
{
    const std::lock_guard lock(m_Mutex);
    if (m_eGate == EGate::Shut)
        m_eGate = eGate;
    m_Changed.notify_all();
}

void CIEThread::TState::Run()
{
    std::unique_lock lock(m_Mutex);
    m_Changed.wait(lock, [this] { return m_eGate != EGate::Shut; });
    if (m_eGate == EGate::Cancelled)
        return;
    m_Id = std::this_thread::get_id();
    lock.unlock();
    int nExitCode = -1;
    try {
        nExitCode = m_Procedure();
    } catch (...) {
        // out of here it would end the host; the exit code is all that the owner asks for
        nExitCode = -1;
    }
    lock.lock();
    m_nExitCode = nExitCode;
    m_bReturned = true;
    m_Changed.notify_all();
}

std::unique_ptr<CIEThread> CIEThread::CreateSuspended(TProcedure procedure)
{
    if (TakeRefusal())
        return nullptr;
    try {
        // the object stands before the thread starts, so that nothing can fail once there is something to join
        std::unique_ptr<CIEThread> pThread(new CIEThread(std::make_shared<TState>()));
        pThread->m_pState->m_Procedure = std::move(procedure);
        pThread->m_Thread = std::thread([pState = pThread->m_pState] { pState->Run(); });
        return pThread;
    } catch (const std::system_error&) {
        return nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

CIEThread::CIEThread(std::shared_ptr<TState> pState) : m_pState(std::move(pState)) {}

CIEThread::~CIEThread()
{
    if (!m_Thread.joinable())
        return;
    m_pState->OpenGate(TState::EGate::Cancelled);
    // a host may delete the thread from its own finishing message; the thread holds the state until it ends
    if (m_Thread.get_id() == std::this_thread::get_id())
        m_Thread.detach();
    else
        m_Thread.join();
}

void CIEThread::Resume()
{
    m_pState->OpenGate(TState::EGate::Open);
}

bool CIEThread::Wait(std::int64_t milliseconds)
{
    TState& state = *m_pState;
    const auto hasReturned = [&state] { return state.m_bReturned; };
    std::unique_lock lock(state.m_Mutex);
    if (state.m_Id == std::this_thread::get_id())
        return state.m_bReturned; // it can't see its own end
    if (milliseconds >= 0 && milliseconds < kEndlessWait)
        return state.m_Changed.wait_for(lock, std::chrono::milliseconds(milliseconds), hasReturned);
    state.m_Changed.wait(lock, hasReturned);
    return true;
}

bool CIEThread::IsRunning() const
{
    const std::lock_guard lock(m_pState->m_Mutex);
    return !m_pState->m_bReturned;
}

int CIEThread::GetExitCode() const
{
    const std::lock_guard lock(m_pState->m_Mutex);
    return m_pState->m_nExitCode;
}

void CIEThread::RefuseNext(int count)
{
    g_nRefusals.store(count);
}
