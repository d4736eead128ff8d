// SPDX-License-Identifier: Apache-2.0
// Runs the toolkit's main loop and feeds keys to it.
#pragma once

#include <string>

#include <Elementary.h>

namespace support {

// Main loop thread only.
class ToolkitLoop {
  public:
    ToolkitLoop() = delete;

    // Runs the main loop until no work is pending.
    static void settle();
    // Gives the keyboard to WINDOW, which must be shown.
    static void activate(Evas_Object* window);
    // Feeds a key to the canvas of OBJECT without running the main loop.
    static void keyDown(Evas_Object* object, const std::string& key);
    static void keyUp(Evas_Object* object, const std::string& key);
};

}  // namespace support
