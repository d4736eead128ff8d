// SPDX-License-Identifier: Apache-2.0
// A flow whose only screen is the one under test, so that callbacks find it.
#pragma once

#include <memory>

#include "gui/Controller.h"
#include "gui/Screen.h"

namespace support {

// Shows a screen as the current one of a flow of its own, on a bus without a daemon. Ends flow and
// screen together.
class ShownScreen {
  public:
    // SCREEN belongs to this object from here on.
    explicit ShownScreen(ZOLT::GUI::Screen* screen);
    ~ShownScreen();
    ShownScreen(const ShownScreen&) = delete;
    ShownScreen& operator=(const ShownScreen&) = delete;

  private:
    std::unique_ptr<ZOLT::GUI::Controller> m_flow;
};

}  // namespace support
