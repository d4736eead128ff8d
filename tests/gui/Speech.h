// SPDX-License-Identifier: Apache-2.0
// Records what the program makes the screen reader say.
#pragma once

#include <string>

#include <Elementary.h>

namespace support {

// What the screen reader had to say since the test began, separated by line ends.
std::string spoken();
void forgetSpeech();

// The callback with which the screen reader asks for a widget's text.
struct SpeechBinding {
    int type = -1;
    Elm_Access_Info_Cb callback = nullptr;
    std::string data;
};
// The last callback that the program set for WIDGET.
SpeechBinding speechOf(const Evas_Object* widget);

}  // namespace support
