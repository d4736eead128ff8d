// SPDX-License-Identifier: Apache-2.0
// Shows the PIN with which the TV is registered to a shop.
#pragma once

#include <string>

#include "gui/Screen.h"

namespace ZOLT::GUI {

class PinDisplayingScreen : public Screen {
  public:
    // PIN is shown whole and its first eight characters are spoken; a shorter one throws
    // std::out_of_range. REGISTRATIONINFO names the present shop and is empty when there is none.
    // WIDTH and HEIGHT are the screen's size in pixels.
    PinDisplayingScreen(std::string pin, std::string registrationInfo, int width, int height);
    ~PinDisplayingScreen() override;

    static constexpr char VERSION_ID[] = "SID_SOFTWARE_VERSION";
    // The version line in the current language. No widget can translate it, because it is composed:
    // call this again when the language changes.
    static std::string versionLine();
};

}  // namespace ZOLT::GUI
