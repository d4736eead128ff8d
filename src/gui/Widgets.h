// SPDX-License-Identifier: Apache-2.0
// Small steps that screens and popups take with every widget.
#pragma once

#include <libintl.h>

#include <Elementary.h>

#include "gui/Modes.h"

namespace ZOLT::GUI {

// Text domain of every translation id.
inline constexpr char TEXT_DOMAIN[] = "ZOLT";

// The text behind ID in the language of this moment; ID itself when there is none.
inline const char* translated(const char* id) {
    return dgettext(TEXT_DOMAIN, id);
}

// Sets ID on PART, null for the default one; the widget follows the language by itself. An empty ID
// is an empty text in every language: gettext answers it with the head of its catalogue, which a
// change of language would show.
inline void setTranslatable(Evas_Object* object, const char* part, const char* id) {
    if (id != nullptr && id[0] == '\0') {
        elm_object_domain_translatable_part_text_set(object, part, TEXT_DOMAIN, nullptr);
        elm_object_part_text_set(object, part, id);
        return;
    }
    elm_object_domain_translatable_part_text_set(object, part, TEXT_DOMAIN, id);
}

// Lets LABEL, which a box of the theme holds, become narrower with its words when the language
// changes: such a box makes what it holds larger, but never smaller again, unless it starts anew.
inline void followLanguage(Evas_Object* label) {
    evas_object_smart_callback_add(
        label, "language,changed",
        [](void* /*data*/, Evas_Object* object, void* /*info*/) {
            evas_object_smart_calculate(object);  // how large the new words are
            evas_object_resize(object, 0, 0);
        },
        nullptr);
}

// Lets the part that holds BUTTON decide its size. A television's toolkit forgets an application's
// minimum as soon as it has evaluated the button's own; newer ones keep it, and a part cannot be
// smaller than what it holds: at 1280x720 the four buttons of a menu would be 1080x720 each, lie
// over one another, and two of them could not be reached with the arrows.
inline void leaveSizeToPart(Evas_Object* button) {
    evas_object_size_hint_min_set(button, 0, 0);
}

// Key under which a window notes that its screen has the high contrast look. The setting may have
// changed since, so a popup looks at its own window.
inline constexpr char HIGH_CONTRAST_KEY[] = "zolt-high-contrast";

// Gives WIDGET the high contrast look if its window has it. Each widget is told, since a signal to
// a layout does not reach the groups of the widgets that it holds.
inline void followContrast(Evas_Object* widget) {
    if (evas_object_data_get(elm_object_top_widget_get(widget), HIGH_CONTRAST_KEY) != nullptr) {
        elm_layout_signal_emit(widget, "WIN_CONTRAST_1", "");
        elm_layout_signal_emit(widget, "WIN_CONTRAST_2", "");
    }
}

// Tells WIDGET of enlarged mode, which changes more of it than its scale.
inline void followEnlargement(Evas_Object* widget) {
    if (modes::enlarged()) {
        elm_layout_signal_emit(widget, "WIN_ENLARGED", "");
    }
}

// Makes BUTTON look like one that cannot be reached, until it gets the focus: the toolkit does not
// tell the theme.
inline void showBlocked(Evas_Object* button) {
    elm_layout_signal_emit(button, "button,blocked", "");
}

}  // namespace ZOLT::GUI
