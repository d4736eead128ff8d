// SPDX-License-Identifier: Apache-2.0
// Turns the toolkit's main loop and feeds keys to it.
#pragma once

#include <string>

#include <Elementary.h>

namespace support {

// Main loop thread only.
class ToolkitLoop {
  public:
    ToolkitLoop() = delete;

    // Turns the main loop until nothing is left to do at once.
    static void settle();
    // Gives WINDOW, which is shown, the keyboard.
    static void activate(Evas_Object* window);
    // Feeds a key to the canvas of OBJECT and turns no loop.
    static void keyDown(Evas_Object* object, const std::string& key);
    static void keyUp(Evas_Object* object, const std::string& key);
};

}  // namespace support
