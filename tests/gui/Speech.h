// SPDX-License-Identifier: Apache-2.0
// Hears what the program has the screen reader say.
#pragma once

#include <string>

#include <Elementary.h>

namespace support {

// What the screen reader was told to say since the test began, each text on a line of its own but
// for the last.
std::string spoken();
void forgetSpeech();

// How a widget tells the screen reader about itself.
struct SpeechBinding {
    int type = -1;
    Elm_Access_Info_Cb callback = nullptr;
    std::string data;
};
// The last binding that the program made for WIDGET.
SpeechBinding speechOf(const Evas_Object* widget);

}  // namespace support
