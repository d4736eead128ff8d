// SPDX-License-Identifier: Apache-2.0
// When a main loop counts as stalled.
#include <chrono>
#include <string>
#include <thread>

#include <Ecore.h>
#include <gtest/gtest.h>

#include "host/process/StallCounter.h"
#include "host/process/StallWatchdog.h"
#include "host/toolkit/MainLoopBridge.h"
#include "support/TestSupport.h"

namespace platform_test {

using host::StallCounter;
using std::chrono::hours;
using std::chrono::seconds;

constexpr seconds LIMIT{10};

class Stall : public ::testing::Test {
  protected:
    // Checks COUNT times, a second apart. Returns the number of checks until one finds a stall, 0
    // for none.
    int looksUntilStalled(const host::LoopState& state, int count) {
        for (int look = 1; look <= count; ++look) {
            m_now += seconds(1);
            if (m_counter.look(state, m_now)) {
                return look;
            }
        }
        return 0;
    }
    bool lookAfter(seconds time, const host::LoopState& state) {
        m_now += time;
        return m_counter.look(state, m_now);
    }

  private:
    StallCounter::Clock::time_point m_now;
    StallCounter m_counter{LIMIT, {}, m_now};
};

TEST_F(Stall, ALoopIsStalledWhenItHasBeenInOneTurnForTheLimit) {
    EXPECT_EQ(looksUntilStalled({0, false}, 20), 10);
}

TEST_F(Stall, ALoopThatTurnsIsNotStalled) {
    for (unsigned turn = 0; turn < 10; ++turn) {
        EXPECT_EQ(looksUntilStalled({turn, false}, 9), 0);
    }
    EXPECT_EQ(looksUntilStalled({9, false}, 9), 2) << "eight looks have found it in this turn";
}

TEST_F(Stall, ALoopThatWaitsIsNotStalledHoweverLong) {
    EXPECT_EQ(looksUntilStalled({0, true}, 1000), 0);
    EXPECT_EQ(looksUntilStalled({0, false}, 20), 10);
}

TEST_F(Stall, TimeInWhichTheProcessWasStoppedDoesNotCount) {
    EXPECT_EQ(looksUntilStalled({0, false}, 3), 0);
    EXPECT_FALSE(lookAfter(hours(1), {0, false}));
    EXPECT_EQ(looksUntilStalled({0, false}, 20), 5) << "a late look counts as two";
}

TEST(StallWatchdog, SeesWhetherTheMainLoopWaits) {
    // No system bus is needed here, and the toolkit prints pages of errors without one.
    const support::ScopedEnvironment quiet("EINA_LOG_LEVEL", "0");
    ASSERT_GT(ecore_init(), 0);
    host::MainLoopBridge::install();
    {
        const host::StallWatchdog watchdog(3600);
        const unsigned before = host::StallWatchdog::observedLoop().turns;
        bool hasWaited = false;
        std::thread observer([&hasWaited] {
            hasWaited =
                support::waitUntil([] { return host::StallWatchdog::observedLoop().waiting; });
            ecore_main_loop_thread_safe_call_async([](void*) { ecore_main_loop_quit(); }, nullptr);
        });
        ecore_main_loop_begin();
        observer.join();
        EXPECT_TRUE(hasWaited);
        EXPECT_FALSE(host::StallWatchdog::observedLoop().waiting);
        EXPECT_NE(host::StallWatchdog::observedLoop().turns, before);
    }
    host::MainLoopBridge::remove();
    ecore_shutdown();
}

}  // namespace platform_test
