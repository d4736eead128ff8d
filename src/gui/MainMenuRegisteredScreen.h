// SPDX-License-Identifier: Apache-2.0
// The first screen of a TV that is registered to a shop.
#pragma once

#include "gui/Screen.h"

namespace ZOLT::GUI {

class MainMenuRegisteredScreen : public Screen {
  public:
    // WIDTH and HEIGHT are the screen's size in pixels.
    MainMenuRegisteredScreen(int width, int height);
    ~MainMenuRegisteredScreen() override;
};

}  // namespace ZOLT::GUI
