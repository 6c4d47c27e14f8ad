// Registered messages: a name becomes a number, and a number with two parameters is posted to a window of ours.
#pragma once

#include "alidade/platform/api.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

/// One posted message.
struct TIEMessage {
    std::uint32_t m_nMessage = 0; ///< number given by Platform::RegisterMessage
    std::int64_t m_nWParam = 0;
    std::int64_t m_nLParam = 0;
};

/// The receiving end of messages: a queue that the host empties, or a callback. A window can be destroyed at any time;
/// a post to a window that is gone does nothing.
class ALIDADE_API CIEMessageWindow {
public:
    using TCallback = std::function<void(const TIEMessage&)>;

    /// A window with a queue: messages wait until Get or Wait takes them.
    CIEMessageWindow();
    /// A window that hands each message to `callback` at once, on the thread that posts it. The callback may post and
    /// may make windows; it must not destroy its own window.
    explicit CIEMessageWindow(TCallback callback);
    /// Waits for a callback of this window that is running on another thread.
    ~CIEMessageWindow();
    CIEMessageWindow(const CIEMessageWindow&) = delete;
    CIEMessageWindow& operator=(const CIEMessageWindow&) = delete;

    /// The oldest waiting message, taken from the queue; nothing if there is none.
    std::optional<TIEMessage> Get();
    /// The same, waiting up to `milliseconds` for one to come; -1 waits for ever.
    std::optional<TIEMessage> Wait(std::int64_t milliseconds = -1);

private:
    friend struct TIEMessageWindows;
    struct TState;
    std::shared_ptr<TState> m_pState;
};

/// Handle of a window. Null stands for none; where a finishing message finds null, it goes to all windows.
using HWND = CIEMessageWindow*;

namespace Platform {

/// The handle that means all windows, 0xFFFF.
ALIDADE_API HWND BroadcastWindow();
/// The number of a named message, the same for the same name as long as the process lives; never 0.
ALIDADE_API std::uint32_t RegisterMessage(const std::string& name);
/// The name that was registered for a number; empty for a number that no name has.
ALIDADE_API std::string GetMessageName(std::uint32_t nMessage);
/// Hands a message to one window, or to every window for BroadcastWindow(). False if that window doesn't exist (any
/// more). May be called from any thread.
ALIDADE_API bool PostToWindow(HWND hWnd, const TIEMessage& message);

} // namespace Platform
