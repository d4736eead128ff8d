// SPDX-License-Identifier: Apache-2.0
// Waits while registration information is searched for.
#pragma once

#include "gui/Screen.h"

namespace ZOLT::GUI {

class SearchRegInfoScreen : public Screen {
  public:
    // WIDTH and HEIGHT are the screen's size in pixels.
    SearchRegInfoScreen(int width, int height);
    ~SearchRegInfoScreen() override;
};

}  // namespace ZOLT::GUI
