// SPDX-License-Identifier: Apache-2.0
// The fixture of every test of the link: a private bus, and an empty log.
#pragma once

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "FakeService.h"
#include "support/PrivateBus.h"
#include "support/ScriptedPlatform.h"

namespace test {

// Dispatches what is pending in GLib's default main context.
void turn();
// Waits for CONDITION while the main context turns.
bool turnUntil(const std::function<bool()>& condition);

// One bus for all tests of a process, since GIO keeps one connection for it.
class BusTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    static support::ScriptedPlatform& platform() { return support::ScriptedPlatform::get(); }
    static bool logged(const std::string& message);
    static bool warned(const std::string& message);
    // Dispatches until everything that SERVICE has sent so far has arrived.
    static void settle(FakeService& service);

  private:
    GDBusConnection* m_connection = nullptr;  // the shared one; one reference, released in TearDown
};

using Events = std::vector<std::tuple<int, int>>;

// Records the daemon's events that the program's proxies pass on.
class EventsTest : public BusTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    Events events;  // event and reason
};

// A bus of a test's own with a daemon on it. The process outlives the bus.
struct BusWithDaemon {
    BusWithDaemon();

    support::PrivateBus bus;
    FakeService service;
};

}  // namespace test

// Runs STATEMENTS in a process of their own: for tests that need no bus to have been there before,
// or the first subscription of a process.
#define IN_OWN_PROCESS(statements)                                \
    do {                                                          \
        GTEST_FLAG_SET(death_test_style, "threadsafe");           \
        EXPECT_EXIT(                                              \
            {                                                     \
                statements;                                       \
                std::exit(::testing::Test::HasFailure() ? 1 : 0); \
            },                                                    \
            ::testing::ExitedWithCode(0), "");                    \
    } while (false)
