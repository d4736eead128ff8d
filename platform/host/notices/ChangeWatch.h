// SPDX-License-Identifier: Apache-2.0
// Notifies subscribers when a value changes.
#pragma once

#include <functional>
#include <string>

namespace host {

// Compares the watched values when the set's files or the machine's network have changed. Any
// thread may call add and remove; NOTIFY runs on the thread that iterates GLib's default main
// context.
class ChangeWatch {
  public:
    ChangeWatch() = delete;

    // READ returns the value to compare; NOTIFY is called when it has changed. An exception of
    // NOTIFY leaves the iteration of the main context. Returns an ID, never 0.
    static unsigned add(std::function<std::string()> read, std::function<void()> notify);

    static void remove(unsigned id);

    // Compares now: every subscriber of a change made before has been notified when this returns.
    static void look();
};

}  // namespace host
