#include "alidade/platform/thread.h"

#include <atomic>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(CIEThreadTest, RunsOnlyOnceItIsResumed)
{
    std::atomic<int> nRuns = 0;
    const auto pThread = CIEThread::CreateSuspended([&nRuns] { return 40 + ++nRuns; });
    ASSERT_TRUE(pThread);
    EXPECT_FALSE(pThread->Wait(0));
    EXPECT_FALSE(pThread->Wait(20));
    EXPECT_EQ(0, nRuns);
    EXPECT_TRUE(pThread->IsRunning());
    pThread->Resume();
    pThread->Resume();
    EXPECT_TRUE(pThread->Wait());
    EXPECT_TRUE(pThread->Wait(0));
    EXPECT_FALSE(pThread->IsRunning());
    EXPECT_EQ(41, pThread->GetExitCode());
}

TEST(CIEThreadTest, EndsWithItsOwner)
{
    std::atomic<int> nStep = 0;
    { // never resumed: the procedure doesn't run
        const auto pThread = CIEThread::CreateSuspended([&nStep] { return nStep = 9; });
    }
    EXPECT_EQ(0, nStep);
    { // running: it runs to its end
        const auto pThread = CIEThread::CreateSuspended([&nStep] {
            nStep = 1;
            for (int i = 0; i < 1000; ++i)
                std::this_thread::yield();
            return nStep = 2;
        });
        pThread->Resume();
        while (nStep == 0)
            std::this_thread::yield();
    }
    EXPECT_EQ(2, nStep);
    { // resumed a moment ago: it may not have begun, and runs all the same
        const auto pThread = CIEThread::CreateSuspended([&nStep] { return nStep = 3; });
        pThread->Resume();
    }
    EXPECT_EQ(3, nStep);
}

TEST(CIEThreadTest, KeepsExceptionsToItself)
{
    for (const bool bStandard : {true, false}) {
        const auto pThread = CIEThread::CreateSuspended([bStandard]() -> int {
            if (bStandard)
                throw std::runtime_error("lost");
            throw 7;
        });
        pThread->Resume();
        EXPECT_TRUE(pThread->Wait());
        EXPECT_EQ(-1, pThread->GetExitCode());
    }
}

TEST(CIEThreadTest, LetsManyWaitForOne)
{
    std::atomic<int> nBegun = 0, nSeen = 0;
    const auto pThread = CIEThread::CreateSuspended([&nBegun] {
        while (nBegun < 3)
            std::this_thread::yield();
        for (int i = 0; i < 1000; ++i) // gives the waiters the time to settle
            std::this_thread::yield();
        return 5;
    });
    pThread->Resume();
    std::vector<std::jthread> waiters;
    for (const std::int64_t nTime :
         {std::int64_t{-1}, std::int64_t{60'000}, std::numeric_limits<std::int64_t>::max()}) {
        waiters.emplace_back([&, nTime] {
            ++nBegun;
            nSeen += pThread->Wait(nTime) ? pThread->GetExitCode() : 0;
        });
    }
    waiters.clear();
    EXPECT_EQ(15, nSeen);
}

TEST(CIEThreadTest, IsRefusedAsOftenAsATestAsks)
{
    CIEThread::RefuseNext(2);
    EXPECT_FALSE(CIEThread::CreateSuspended([] { return 0; }));
    EXPECT_FALSE(CIEThread::CreateSuspended([] { return 0; }));
    EXPECT_TRUE(CIEThread::CreateSuspended([] { return 0; }));
}

} // namespace
