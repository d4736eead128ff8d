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

    // Installs the bridge in the main loop. Ecore has to be initialised. An exception of a GLib
    // callback leaves the main loop.
    static void install();

    // Restores the main loop.
    static void remove();

    // BEFORE and AFTER may be null.
    static void setNotices(Notice before, Notice after);
};

}  // namespace host
