// SPDX-License-Identifier: Apache-2.0
// Adds up the time that a main loop spends in one turn.
#include "host/process/StallCounter.h"

#include <algorithm>

namespace host {

using std::chrono::milliseconds;

StallCounter::StallCounter(milliseconds limit, const LoopState& state, Clock::time_point now)
    : m_limit(limit), m_turns(state.turns), m_lastLook(now) {}

milliseconds StallCounter::step() const {
    return std::min(m_limit / 10, milliseconds(1000));
}

bool StallCounter::look(const LoopState& state, Clock::time_point now) {
    const auto passed = std::chrono::duration_cast<milliseconds>(now - m_lastLook);
    m_lastLook = now;
    if (state.waiting || state.turns != m_turns) {
        m_turns = state.turns;
        m_stalled = milliseconds(0);
        return false;
    }
    m_stalled += std::min(passed, step() * 2);
    return m_stalled >= m_limit;
}

}  // namespace host
