// SPDX-License-Identifier: Apache-2.0
// The clock of the toolkit, which moves only when it is set: pictures do not depend on the speed of
// the machine.
#pragma once

namespace look {

class Clock {
  public:
    Clock() = delete;

    // Moves the clock by SECONDS and every animation by one frame. Does not run the main loop.
    static void pass(double seconds);
    // Seconds since an arbitrary start.
    static double now();
};

}  // namespace look
