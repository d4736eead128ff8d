// SPDX-License-Identifier: Apache-2.0
// Offers a new registration or a look at the present one.
#pragma once

#include "gui/Screen.h"

namespace ZOLT::GUI {

class RegistrationChangeScreen : public Screen {
  public:
    // WIDTH and HEIGHT are the screen's size in pixels.
    RegistrationChangeScreen(int width, int height);
    ~RegistrationChangeScreen() override;
};

}  // namespace ZOLT::GUI
