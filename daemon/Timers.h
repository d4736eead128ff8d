// SPDX-License-Identifier: Apache-2.0
// Things that the daemon does later.
#pragma once

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
    // Drops all that is due. Returns how many there were.
    size_t cancel();

  private:
    struct Timer;
    static int fire(void* data);
    static void release(void* data);

    std::set<unsigned> m_sources;
};

}  // namespace standin
