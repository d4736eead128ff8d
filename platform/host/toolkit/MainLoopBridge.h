// SPDX-License-Identifier: Apache-2.0
// Iterates GLib's default main context inside the toolkit's main loop, which cannot do so by
// itself.
#pragma once

namespace host {

class MainLoopBridge {
  public:
    // Called on the main thread around each wait for something to happen.
    using Notice = void (*)();

    MainLoopBridge() = delete;

    // Puts the bridge into the main loop. Ecore has to be initialised. What a GLib callback throws
    // goes out of the main loop.
    static void install();

    // Takes it out again.
    static void remove();

    // BEFORE and AFTER may be null.
    static void setNotices(Notice before, Notice after);
};

}  // namespace host
