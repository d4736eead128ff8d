// SPDX-License-Identifier: Apache-2.0
// Tells who wants to know when a value of the set has changed.
#pragma once

#include <functional>
#include <string>

namespace host {

// Looks at its values when the files of the set or the machine's network have changed. Any thread
// may add and remove; notices come on the thread that iterates GLib's default main context.
class ChangeWatch {
  public:
    ChangeWatch() = delete;

    // READ gives the value to compare; NOTIFY is called after it has become another one. What
    // NOTIFY throws goes out of the main context's iteration. Returns an id, never 0.
    static unsigned add(std::function<std::string()> read, std::function<void()> notify);

    static void remove(unsigned id);

    // Looks now, so that every notice of a change that was just made is out when this returns.
    static void look();
};

}  // namespace host
