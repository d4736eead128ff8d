// SPDX-License-Identifier: Apache-2.0
// Hears what a screen has the screen reader say.
#pragma once

#include <string>

#include "gui/GuiFixture.h"

namespace support {

class SpeechFixture : public GuiFixture {
  protected:
    void SetUp() override;
    // What the screen reader was told to say since the test began, each text on a line of its own
    // but for the last.
    static std::string spoken();
};

}  // namespace support
