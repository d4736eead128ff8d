// SPDX-License-Identifier: Apache-2.0
// A popup with a text and up to two buttons.
#include "gui/MessagePopup.h"

#include <cstdio>

#include "common/Logger.h"
#include "gui/Modes.h"
#include "gui/Screen.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

MessagePopup::MessagePopup(Evas_Object* parent, const char* style, int width, int height)
    : Popup(parent, style, width, height) {
    ZOLT_TRACE();
}

MessagePopup::~MessagePopup() {
    ZOLT_TRACE();
}

void MessagePopup::setText(const char* text, const char* style) {
    ZOLT_TRACE();
    Evas_Object* label = Screen::createLabel(m_popup, text, style);
    const std::string words = translated(text);
    modes::announce(words);
    evas_object_size_hint_align_set(label, 0.5, 0.5);
    evas_object_size_hint_weight_set(label, 1.0, 1.0);

    // The limit is one below the buffer's size, in bytes: a longer text loses its end, including
    // the closing tag.
    char centred[512] = {};
    std::snprintf(centred, sizeof(centred) - 1, "<align=center>%s</align>", words.c_str());
    // Newer toolkits keep the translation id when a plain text is set: at the next change of
    // language they would set the translated text, without the markup and the limit.
    setTranslatable(label, nullptr, nullptr);
    elm_object_text_set(label, centred);
    elm_object_content_set(m_popup, label);
    evas_object_show(label);
}

void MessagePopup::addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) {
    ZOLT_TRACE();
    Evas_Object* button =
        Screen::createButton(m_popup, text, callback, data, icon, "c_button_icontext");
    evas_object_size_hint_max_set(button, 500, 100);
    evas_object_size_hint_min_set(button, 250, 56);
    appendButton(button);
}

}  // namespace ZOLT::GUI
