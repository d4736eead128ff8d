// SPDX-License-Identifier: Apache-2.0
// Draws on request, and is the toolkit's clock, so that it can be put forward.
#include "host/toolkit/ToolkitTime.h"

#include <atomic>
#include <ctime>

#include <Ecore.h>
#include <Ecore_Evas.h>

#include "host/toolkit/ToolkitWindows.h"

namespace {

std::atomic<int> s_secondsAhead{0};

}  // namespace

// Takes the place of the toolkit's own function, of which all its timers get the time. What else
// runs in the process has the machine's clock as ever.
extern "C" double ecore_time_get(void) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 +
           s_secondsAhead;
}

namespace host {

void drawWindows() {
    for (const ToolkitWindow& entry : toolkitWindows()) {
        ecore_evas_manual_render(entry.canvas);
    }
}

void putClockForward(int seconds) {
    s_secondsAhead += seconds;
}

}  // namespace host
