// SPDX-License-Identifier: Apache-2.0
// The clock of the toolkit, which moves only when it is set: pictures do not depend on the speed of
// the machine.
#include "look/Clock.h"

#include <Ecore.h>

namespace look {

namespace {

double seconds = 1000.0;  // not 0, which the toolkit takes for a time that was never set

}  // namespace

void Clock::pass(double some) {
    // A new window puts the animations back on a clock of their own.
    if (ecore_animator_source_get() != ECORE_ANIMATOR_SOURCE_CUSTOM) {
        ecore_animator_source_set(ECORE_ANIMATOR_SOURCE_CUSTOM);
    }
    seconds += some;
    ecore_loop_time_set(seconds);
    ecore_animator_custom_tick();
}

double Clock::now() {
    return seconds;
}

}  // namespace look

// Replaces the toolkit's function: its libraries resolve the symbol to this one.
extern "C" double ecore_time_get() {
    return look::Clock::now();
}
