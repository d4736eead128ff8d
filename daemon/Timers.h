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

    void after(int delayMs, std::function<void()> action);
    // ACTION waits for its turn in releaseNext.
    void hold(std::function<void()> action);
    // Runs the action that has been held longest; false when there is none.
    bool releaseNext();
    // Drops all actions, those that are held among them. Returns how many there were.
    size_t cancel();

  private:
    struct Timer;
    static int fire(void* data);
    static void release(void* data);

    std::set<unsigned> m_sources;
    std::deque<std::function<void()>> m_held;
};

}  // namespace standin
