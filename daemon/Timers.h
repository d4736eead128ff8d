// SPDX-License-Identifier: Apache-2.0
// Actions that run later, after a delay or when they are released.
#pragma once

#include <deque>
#include <functional>
#include <set>

namespace standin {

// One-shot actions on GLib's default main loop. The destructor drops those that are still due.
class Timers {
  public:
    Timers() = default;
    ~Timers();
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;

    void after(int delayMs, std::function<void()> action);
    // ACTION waits until releaseNext runs it.
    void hold(std::function<void()> action);
    // Runs the action that has been held longest; false when there is none.
    bool releaseNext();
    // Drops all actions, including held ones. Returns how many there were.
    size_t cancel();

  private:
    struct Timer;
    static int fire(void* data);
    static void release(void* data);

    std::set<unsigned> m_sources;
    std::deque<std::function<void()>> m_held;
};

}  // namespace standin
