#include "alidade/platform/messages.h"

#include <atomic>
#include <memory>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Platform::PostToWindow;

TEST(MessagesTest, NumbersStayWithTheirNames)
{
    std::set<std::uint32_t> numbers;
    for (int i = 0; i < 200; ++i) {
        const std::string name = "message " + std::to_string(i);
        const std::uint32_t nMessage = Platform::RegisterMessage(name);
        EXPECT_GE(nMessage, 0xC000U);
        EXPECT_EQ(nMessage, Platform::RegisterMessage(name));
        EXPECT_EQ(name, Platform::GetMessageName(nMessage));
        numbers.insert(nMessage);
    }
    EXPECT_EQ(200U, numbers.size());
    for (const std::uint32_t nNobody : {0U, 0xBFFFU, *numbers.rbegin() + 1, 0xFFFFFFFFU})
        EXPECT_EQ("", Platform::GetMessageName(nNobody));
}

TEST(MessagesTest, QueueGivesTheOldestFirst)
{
    CIEMessageWindow window;
    EXPECT_FALSE(window.Get());
    EXPECT_FALSE(window.Wait(1));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(PostToWindow(&window, {7, i, -i}));
    for (int i = 0; i < 3; ++i) {
        const auto message = i == 0 ? window.Wait() : window.Get();
        ASSERT_TRUE(message);
        EXPECT_TRUE(message->m_nMessage == 7 && message->m_nWParam == i && message->m_nLParam == -i);
    }
    EXPECT_FALSE(window.Get());
    std::jthread poster([&window] { PostToWindow(&window, {8}); });
    const auto message = window.Wait();
    EXPECT_TRUE(message && message->m_nMessage == 8);
}

TEST(MessagesTest, CallbackRunsOnThePostingThreadAndMayPost)
{
    CIEMessageWindow queue;
    std::vector<std::uint32_t> seen;
    bool bInner = false;
    CIEMessageWindow window([&](const TIEMessage& message) {
        EXPECT_EQ(5, message.m_nLParam);
        seen.push_back(message.m_nMessage);
        if (message.m_nMessage == 2)
            return;
        CIEMessageWindow inner;
        EXPECT_TRUE(PostToWindow(Platform::BroadcastWindow(), {2, 0, 5})); // comes back to this window too
        bInner = inner.Get().has_value();
    });
    EXPECT_TRUE(PostToWindow(&window, {1, 0, 5}));
    EXPECT_EQ((std::vector<std::uint32_t>{1, 2}),
              seen); // plain variables: the calls are over, and were made right here
    EXPECT_TRUE(bInner);
    EXPECT_TRUE(queue.Get());
    EXPECT_FALSE(queue.Get());
    EXPECT_FALSE(window.Get());
}

TEST(MessagesTest, PostToAWindowThatIsGoneIsFalse)
{
    auto pOwned = std::make_shared<int>();
    auto pQueue = std::make_unique<CIEMessageWindow>();
    auto pCallback = std::make_unique<CIEMessageWindow>([pOwned](const TIEMessage&) {});
    const HWND windows[] = {pQueue.get(), pCallback.get(), nullptr};
    EXPECT_TRUE(PostToWindow(windows[0], {1}) && PostToWindow(windows[1], {1}));
    pQueue.reset();
    pCallback.reset();
    EXPECT_EQ(1, pOwned.use_count());
    for (const HWND hWnd : windows)
        EXPECT_FALSE(PostToWindow(hWnd, {1}));
}

TEST(MessagesTest, EndOfAWindowWaitsForItsCallback)
{
    std::atomic<bool> bEntered = false;
    bool bDone = false; // no atomic: the wait alone orders the threads
    HWND hWnd = nullptr;
    auto pWindow = std::make_unique<CIEMessageWindow>([&](const TIEMessage& message) {
        if (message.m_nMessage == 2)
            return;
        bEntered = true;
        while (PostToWindow(hWnd, {2})) // until its end has begun
            std::this_thread::yield();
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();
        bDone = true;
    });
    hWnd = pWindow.get();
    std::jthread poster([hWnd] { PostToWindow(hWnd, {1}); });
    while (!bEntered)
        std::this_thread::yield();
    pWindow.reset();
    EXPECT_TRUE(bDone);
}

TEST(MessagesTest, WindowsComeAndGoWhileOthersPost)
{
    CIEMessageWindow witness;
    std::atomic<HWND> hTarget = nullptr;
    std::atomic<bool> bStop = false;
    std::atomic<int> nBroadcasts = 0;
    std::vector<std::jthread> posters;
    for (int i = 0; i < 4; ++i) {
        posters.emplace_back([&, i] {
            while (!bStop) {
                PostToWindow(hTarget, {1});
                if (i == 0 && PostToWindow(Platform::BroadcastWindow(), {2}))
                    ++nBroadcasts;
            }
        });
    }
    for (int i = 0; i < 500; ++i) {
        std::atomic<int> nAlive = 0; // dies right behind the window: a late callback would touch the dead
        CIEMessageWindow window([&nAlive](const TIEMessage&) { ++nAlive; });
        hTarget = &window;
        while (nAlive < 2)
            std::this_thread::yield();
    }
    bStop = true;
    posters.clear();
    int nWitnessed = 0;
    while (witness.Get())
        ++nWitnessed;
    EXPECT_EQ(nBroadcasts, nWitnessed);
}

} // namespace
