// SPDX-License-Identifier: Apache-2.0
// Ends a process whose main loop has stalled.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "host/process/StallCounter.h"

namespace host {

// A loop that waits for something to happen is not stalled; one whose callback does not return is.
// Time in which the whole process was stopped or the machine asleep does not count.
class StallWatchdog {
  public:
    // Starts watching. A LIMIT of 0 seconds disables the watchdog.
    explicit StallWatchdog(int limit);

    // Stops watching.
    ~StallWatchdog();

    StallWatchdog(const StallWatchdog&) = delete;
    StallWatchdog& operator=(const StallWatchdog&) = delete;

    // The main loop as the watchdog sees it. Any thread may call it.
    static LoopState observedLoop();

  private:
    void watch();

    const int m_limit;
    std::mutex m_guard;  // guards m_over
    bool m_over = false;
    std::condition_variable m_end;
    std::thread m_thread;
};

}  // namespace host
