// SPDX-License-Identifier: Apache-2.0
// The first screen of a TV that is not registered.
#pragma once

#include "gui/Screen.h"

namespace ZOLT::GUI {

class MainMenuUnregisteredScreen : public Screen {
  public:
    // WIDTH and HEIGHT are the screen's size in pixels.
    MainMenuUnregisteredScreen(int width, int height);
    ~MainMenuUnregisteredScreen() override;
};

}  // namespace ZOLT::GUI
