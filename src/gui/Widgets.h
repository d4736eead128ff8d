// SPDX-License-Identifier: Apache-2.0
// Helpers with which screens and popups set up their widgets.
#pragma once

#include <libintl.h>

#include <Elementary.h>

#include "gui/Modes.h"

namespace ZOLT::GUI {

// Text domain of every translation id.
inline constexpr char TEXT_DOMAIN[] = "ZOLT";

// The text for ID in the current language; ID itself if there is none.
inline const char* translated(const char* id) {
    return dgettext(TEXT_DOMAIN, id);
}

// Sets ID on PART, null for the default part; the widget then follows changes of language. An empty
// ID becomes a plain empty text, because gettext translates "" to the header of its catalogue,
// which would appear when the language changes.
inline void setTranslatable(Evas_Object* object, const char* part, const char* id) {
    if (id != nullptr && id[0] == '\0') {
        elm_object_domain_translatable_part_text_set(object, part, TEXT_DOMAIN, nullptr);
        elm_object_part_text_set(object, part, id);
        return;
    }
    elm_object_domain_translatable_part_text_set(object, part, TEXT_DOMAIN, id);
}

// Lets LABEL, which is in a box of the theme, become narrower when a change of language makes its
// text shorter. Without this the box would make it wider but never narrower again.
inline void followLanguage(Evas_Object* label) {
    evas_object_smart_callback_add(
        label, "language,changed",
        [](void* /*data*/, Evas_Object* object, void* /*info*/) {
            evas_object_smart_calculate(object);  // measures the new text
            evas_object_resize(object, 0, 0);
        },
        nullptr);
}

// Lets the part that holds BUTTON decide its size. A television's toolkit drops the application's
// minimum size once it has computed the button's own. Newer ones keep it, and a part cannot be
// smaller than its content: at 1280x720 the four buttons of a menu would be 1080x720 each and
// overlap, and the arrow keys could not reach two of them.
inline void leaveSizeToPart(Evas_Object* button) {
    evas_object_size_hint_min_set(button, 0, 0);
}

// Key of the data that marks a window as drawn in high contrast. A popup looks at its own window,
// because the setting may have changed since the window was made.
inline constexpr char HIGH_CONTRAST_KEY[] = "zolt-high-contrast";

// Gives WIDGET the high contrast look if its window has it. Each widget needs its own signal,
// because a signal to a layout does not reach the groups of the widgets in it.
inline void followContrast(Evas_Object* widget) {
    if (evas_object_data_get(elm_object_top_widget_get(widget), HIGH_CONTRAST_KEY) != nullptr) {
        elm_layout_signal_emit(widget, "WIN_CONTRAST_1", "");
        elm_layout_signal_emit(widget, "WIN_CONTRAST_2", "");
    }
}

// Signals enlarged mode to WIDGET; the theme then changes more than the scale.
inline void followEnlargement(Evas_Object* widget) {
    if (modes::enlarged()) {
        elm_layout_signal_emit(widget, "WIN_ENLARGED", "");
    }
}

// Draws BUTTON as unreachable until it gets the focus. The toolkit does not send the theme a signal
// for this.
inline void showBlocked(Evas_Object* button) {
    elm_layout_signal_emit(button, "button,blocked", "");
}

}  // namespace ZOLT::GUI
