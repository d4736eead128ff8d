// SPDX-License-Identifier: Apache-2.0
// Hears what a screen has the screen reader say.
#include "gui/Speech.h"

namespace {

std::string& heard() {
    static std::string text;
    return text;
}

}  // namespace

// Takes the place of the toolkit's function for all callers in this program: without a screen
// reader the toolkit drops the text.
void elm_access_say(const char* txt) {
    heard() += (heard().empty() ? "" : "\n") + std::string(txt);
}

namespace support {

void SpeechFixture::SetUp() {
    GuiFixture::SetUp();
    heard().clear();
}

std::string SpeechFixture::spoken() {
    return heard();
}

}  // namespace support
