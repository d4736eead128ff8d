// SPDX-License-Identifier: Apache-2.0
// Things that the daemon does later.
#pragma once

#include <deque>
#include <functional>
#include <set>

namespace standin {

// One-shot actions on GLib's default main loop. Those that are still due when the object goes are
// dropped.
class Timers {
  public:
    Timers() = default;
    ~Timers();
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;

    // From now on actions wait for their turn in releaseOne, whatever their delay.
    void hold() { m_holds = true; }
    // Runs the held action that was planned first; false when there is none.
    bool releaseOne();

    void after(int delayMs, std::function<void()> action);
    // Drops all that is due. Returns how many there were.
    size_t cancel();

  private:
    struct Timer;
    static int fire(void* data);
    static void release(void* data);

    std::set<unsigned> m_sources;
    bool m_holds = false;
    std::deque<std::function<void()>> m_held;
};

}  // namespace standin
