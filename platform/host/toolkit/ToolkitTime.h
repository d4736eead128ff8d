// SPDX-License-Identifier: Apache-2.0
// Lets whoever drives a set from outside go on without waiting: frames and timers when they are
// asked for.
#pragma once

namespace host {

// Draws what waits for the next frame in every window, and carries out what the toolkit puts off
// until it draws, such as sizes and the focus of a new popup.
void drawWindows();

// Puts the toolkit's clock forward for the rest of the process: timers that are due by then run in
// the next turn of the main loop.
void putClockForward(int seconds);

}  // namespace host
