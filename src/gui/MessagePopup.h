// SPDX-License-Identifier: Apache-2.0
// A popup with a text and up to two buttons.
#pragma once

#include "gui/Popup.h"

namespace ZOLT::GUI {

class MessagePopup : public Popup {
  public:
    MessagePopup(Evas_Object* parent, const char* style, int width, int height);
    ~MessagePopup() override;

    // The text is translated now and does not follow a later change of language. It is cut, with
    // its markup, at 510 bytes.
    void setText(const char* text, const char* style) override;
    void addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) override;
};

}  // namespace ZOLT::GUI
