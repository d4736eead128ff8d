// SPDX-License-Identifier: Apache-2.0
// Checks the main loop from a thread of its own.
#include "host/process/StallWatchdog.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>

#include <pthread.h>

#include "host/base/HostLog.h"
#include "host/toolkit/MainLoopBridge.h"

namespace host {

namespace {

std::atomic<unsigned> s_turns{0};
std::atomic<bool> s_waiting{false};

constexpr const char* THREAD_NAME = "stall-watchdog";  // shown by debuggers and ps

void beforeWait() {
    s_waiting = true;
}

void afterWait() {
    ++s_turns;
    s_waiting = false;
}

[[noreturn]] void abortProcess(int limit) {
    logError("The main loop has not turned for " + std::to_string(limit) +
             " seconds: the process is aborted");
    std::abort();
}

}  // namespace

StallWatchdog::StallWatchdog(int limit) : m_limit(limit) {
    if (m_limit > 0) {
        s_waiting = false;
        MainLoopBridge::setNotices(beforeWait, afterWait);
        m_thread = std::thread([this] { watch(); });
        pthread_setname_np(m_thread.native_handle(), THREAD_NAME);
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

LoopState StallWatchdog::observedLoop() {
    return {s_turns, s_waiting};
}

void StallWatchdog::watch() {
    StallCounter counter(std::chrono::seconds(m_limit), observedLoop(), StallCounter::Clock::now());
    std::unique_lock<std::mutex> lock(m_guard);
    while (!m_end.wait_for(lock, counter.step(), [this] { return m_over; })) {
        if (counter.look(observedLoop(), StallCounter::Clock::now())) {
            abortProcess(m_limit);
        }
    }
}

}  // namespace host
