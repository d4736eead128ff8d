// SPDX-License-Identifier: Apache-2.0
// Counts how long the main loop has been in one turn.
#include "host/process/StallWatchdog.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>

#include "host/base/HostLog.h"
#include "host/toolkit/MainLoopBridge.h"

namespace host {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

std::atomic<unsigned> s_turns{0};
std::atomic<bool> s_waiting{false};

void goesToWait() {
    s_waiting = true;
}

void hasWaited() {
    ++s_turns;
    s_waiting = false;
}

[[noreturn]] void giveUp(int limit) {
    logError("The main loop has not turned for " + std::to_string(limit) +
             " seconds: the process is aborted");
    std::abort();
}

}  // namespace

StallWatchdog::StallWatchdog(int limit) : m_limit(limit) {
    if (m_limit > 0) {
        s_waiting = false;
        MainLoopBridge::setNotices(goesToWait, hasWaited);
        m_thread = std::thread([this] { watch(); });
    }
}

StallWatchdog::~StallWatchdog() {
    if (!m_thread.joinable()) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_guard);
        m_over = true;
    }
    m_end.notify_all();
    m_thread.join();
    MainLoopBridge::setNotices(nullptr, nullptr);
}

void StallWatchdog::watch() {
    const milliseconds limit = std::chrono::seconds(m_limit);
    const milliseconds step = std::min(limit / 10, milliseconds(1000));
    milliseconds stalled{0};
    unsigned lastTurn = s_turns;
    auto lastLook = Clock::now();
    std::unique_lock<std::mutex> lock(m_guard);
    while (!m_end.wait_for(lock, step, [this] { return m_over; })) {
        const auto now = Clock::now();
        const auto passed = std::chrono::duration_cast<milliseconds>(now - lastLook);
        lastLook = now;
        if (s_waiting || s_turns != lastTurn) {
            lastTurn = s_turns;
            stalled = milliseconds(0);
            continue;
        }
        // A look that comes much too late means that this thread was stopped too.
        stalled += std::min(passed, step * 2);
        if (stalled >= limit) {
            giveUp(m_limit);
        }
    }
}

}  // namespace host
