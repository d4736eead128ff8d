// SPDX-License-Identifier: Apache-2.0
// Decides whether a main loop has stalled, from regular checks of its state.
#pragma once

#include <chrono>

namespace host {

// The state of a main loop.
struct LoopState {
    unsigned turns = 0;    // how often it has come back from waiting
    bool waiting = false;  // for something to happen
};

class StallCounter {
  public:
    using Clock = std::chrono::steady_clock;

    StallCounter(std::chrono::milliseconds limit, const LoopState& state, Clock::time_point now);

    // The time between two checks.
    std::chrono::milliseconds step() const;

    // True when the loop has been in the same turn for the limit. A check that comes much too late
    // means that the whole process was stopped; that time does not count.
    bool look(const LoopState& state, Clock::time_point now);

  private:
    const std::chrono::milliseconds m_limit;
    unsigned m_turns;
    Clock::time_point m_lastLook;
    std::chrono::milliseconds m_stalled{0};
};

}  // namespace host
