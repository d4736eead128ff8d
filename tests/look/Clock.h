// SPDX-License-Identifier: Apache-2.0
// The clock of the toolkit, which goes on only when it is told to: a picture then never depends on
// how fast the machine is.
#pragma once

namespace look {

class Clock {
  public:
    Clock() = delete;

    // Lets SECONDS go by for timers, and one frame of every animation with them. Turns no loop.
    static void pass(double seconds);
    // Seconds since some moment.
    static double now();
};

}  // namespace look
