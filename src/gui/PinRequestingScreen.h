// SPDX-License-Identifier: Apache-2.0
// Waits while the daemon obtains a PIN.
#pragma once

#include "gui/Handle.h"
#include "gui/Screen.h"

namespace ZOLT::GUI {

class PinRequestingScreen : public Screen {
  public:
    // WIDTH and HEIGHT are the screen's size in pixels.
    PinRequestingScreen(int width, int height);
    ~PinRequestingScreen() override;

    // Stops the circle, which stays visible.
    void RemoveProgressBar();

  protected:
    Handle m_progress;  // belongs to the layout
};

}  // namespace ZOLT::GUI
