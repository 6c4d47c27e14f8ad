#include "alidade/platform/messages.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

// From a year on a wait has no end: a deadline that far off could overflow the clock's arithmetic.
constexpr std::int64_t kEndlessWait = std::int64_t{365} * 24 * 60 * 60 * 1000;

// numbers below belong to messages that hosts define for themselves
constexpr std::uint32_t kFirstMessage = 0xC000;

struct TMessageNames {
    std::mutex m_Mutex;
    std::unordered_map<std::string, std::uint32_t> m_Numbers;
    std::vector<std::string> m_Names; ///< the name of number kFirstMessage + index

    static TMessageNames& Get()
    {
        static TMessageNames names;
        return names;
    }
};

} // namespace

// Shared with whoever posts just now: a post may still be under way in it when its window is gone.
struct CIEMessageWindow::TState {
    explicit TState(TCallback callback) : m_Callback(std::move(callback)) {}

    TCallback m_Callback; ///< empty for a window with a queue
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::deque<TIEMessage> m_Queue;
    std::vector<std::thread::id> m_Callers; ///< threads that are in the callback, once for each entry
    bool m_bClosed = false;

    bool Deliver(const TIEMessage& message);
    void Leave();
    void Close();
    TIEMessage TakeOldest();
};

/// The callback runs with no lock held, so that it may post and make windows.
bool CIEMessageWindow::TState::Deliver(const TIEMessage& message)
{
    {
        const std::lock_guard lock(m_Mutex);
        if (m_bClosed)
            return false;
        if (!m_Callback) {
            m_Queue.push_back(message);
            m_Changed.notify_one();
            return true;
        }
        m_Callers.push_back(std::this_thread::get_id());
    }
    struct TLeave {
        TState& m_State;
        ~TLeave() { m_State.Leave(); }
    } leave{*this};
    m_Callback(message);
    return true;
}

void CIEMessageWindow::TState::Leave()
{
    const std::lock_guard lock(m_Mutex);
    m_Callers.erase(std::find(m_Callers.begin(), m_Callers.end(), std::this_thread::get_id()));
    m_Changed.notify_all();
}

/// Entries of the closing thread itself can't be waited for: they are further up on its own stack. What the callback
/// owns ends here with the window, and not at some later time on a thread whose post came too late.
void CIEMessageWindow::TState::Close()
{
    TCallback callback;
    std::unique_lock lock(m_Mutex);
    m_bClosed = true;
    m_Changed.wait(lock, [this] {
        const auto isOwn = [](std::thread::id caller) { return caller == std::this_thread::get_id(); };
        return std::all_of(m_Callers.begin(), m_Callers.end(), isOwn);
    });
    if (m_Callers.empty())
        callback.swap(m_Callback);
}

TIEMessage CIEMessageWindow::TState::TakeOldest()
{
    const TIEMessage message = m_Queue.front();
    m_Queue.pop_front();
    return message;
}

/// The live windows. A handle is only ever looked up here, never followed, so a stale one does no harm.
struct TIEMessageWindows {
    using TStatePtr = std::shared_ptr<CIEMessageWindow::TState>;

    std::mutex m_Mutex;
    std::unordered_map<const CIEMessageWindow*, TStatePtr> m_Windows;

    static TIEMessageWindows& Get()
    {
        static TIEMessageWindows windows;
        return windows;
    }

    void Add(const CIEMessageWindow* pWindow, const TStatePtr& pState)
    {
        const std::lock_guard lock(m_Mutex);
        m_Windows.emplace(pWindow, pState);
    }

    void Remove(const CIEMessageWindow* pWindow)
    {
        const std::lock_guard lock(m_Mutex);
        m_Windows.erase(pWindow);
    }

    bool Post(const CIEMessageWindow* pWindow, const TIEMessage& message)
    {
        TStatePtr pState;
        {
            const std::lock_guard lock(m_Mutex);
            const auto found = m_Windows.find(pWindow);
            if (found == m_Windows.end())
                return false;
            pState = found->second;
        }
        return pState->Deliver(message);
    }

    void Broadcast(const TIEMessage& message)
    {
        std::vector<TStatePtr> states;
        {
            const std::lock_guard lock(m_Mutex);
            for (const auto& [pWindow, pState] : m_Windows)
                states.push_back(pState);
        }
        for (const TStatePtr& pState : states)
            pState->Deliver(message);
    }
};

CIEMessageWindow::CIEMessageWindow() : CIEMessageWindow(TCallback()) {}

CIEMessageWindow::CIEMessageWindow(TCallback callback) : m_pState(std::make_shared<TState>(std::move(callback)))
{
    TIEMessageWindows::Get().Add(this, m_pState);
}

CIEMessageWindow::~CIEMessageWindow()
{
    TIEMessageWindows::Get().Remove(this);
    m_pState->Close();
}

std::optional<TIEMessage> CIEMessageWindow::Get()
{
    return Wait(0);
}

std::optional<TIEMessage> CIEMessageWindow::Wait(std::int64_t milliseconds)
{
    TState& state = *m_pState;
    const auto hasMessage = [&state] { return !state.m_Queue.empty(); };
    std::unique_lock lock(state.m_Mutex);
    if (milliseconds < 0 || milliseconds >= kEndlessWait)
        state.m_Changed.wait(lock, hasMessage);
    else if (!state.m_Changed.wait_for(lock, std::chrono::milliseconds(milliseconds), hasMessage))
        return std::nullopt;
    return state.TakeOldest();
}

namespace Platform {

HWND BroadcastWindow()
{
    return reinterpret_cast<HWND>(std::uintptr_t{0xFFFF}); // NOLINT(performance-no-int-to-ptr): never followed
}

std::uint32_t RegisterMessage(const std::string& name)
{
    TMessageNames& names = TMessageNames::Get();
    const std::lock_guard lock(names.m_Mutex);
    const auto nNext = kFirstMessage + static_cast<std::uint32_t>(names.m_Names.size());
    const auto [place, bNew] = names.m_Numbers.try_emplace(name, nNext);
    if (bNew)
        names.m_Names.push_back(name);
    return place->second;
}

std::string GetMessageName(std::uint32_t nMessage)
{
    TMessageNames& names = TMessageNames::Get();
    const std::lock_guard lock(names.m_Mutex);
    if (nMessage < kFirstMessage || nMessage - kFirstMessage >= names.m_Names.size())
        return {};
    return names.m_Names[nMessage - kFirstMessage];
}

bool PostToWindow(HWND hWnd, const TIEMessage& message)
{
    if (hWnd != BroadcastWindow())
        return TIEMessageWindows::Get().Post(hWnd, message);
    TIEMessageWindows::Get().Broadcast(message);
    return true;
}

} // namespace Platform
