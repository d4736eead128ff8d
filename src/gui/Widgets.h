// SPDX-License-Identifier: Apache-2.0
// Small steps that screens and popups take with every widget.
#pragma once

#include <libintl.h>

#include <Elementary.h>

namespace ZOLT::GUI {

// Text domain of every translation id.
inline constexpr char TEXT_DOMAIN[] = "ZOLT";

// The text behind ID in the language of this moment; ID itself when there is none.
inline const char* translated(const char* id) {
    return dgettext(TEXT_DOMAIN, id);
}

// Sets ID on PART, null for the default one; the widget follows the language by itself.
inline void setTranslatable(Evas_Object* object, const char* part, const char* id) {
    elm_object_domain_translatable_part_text_set(object, part, TEXT_DOMAIN, id);
}

// Lets the part that holds BUTTON decide its size. A television's toolkit forgets an application's
// minimum as soon as it has evaluated the button's own; newer ones keep it, and a part cannot be
// smaller than what it holds.
inline void leaveSizeToPart(Evas_Object* button) {
    evas_object_size_hint_min_set(button, 0, 0);
}

// Key under which a window notes that its screen has the high contrast look. The setting may have
// changed since, so a popup looks at its own window.
inline constexpr char HIGH_CONTRAST_KEY[] = "zolt-high-contrast";

// Gives WIDGET the high contrast look if its window has it: the theme learns of the mode from the
// program only.
inline void followContrast(Evas_Object* widget) {
    if (evas_object_data_get(elm_object_top_widget_get(widget), HIGH_CONTRAST_KEY) != nullptr) {
        elm_layout_signal_emit(widget, "WIN_CONTRAST_1", "");
        elm_layout_signal_emit(widget, "WIN_CONTRAST_2", "");
    }
}

// Makes BUTTON look like one that cannot be reached, until it gets the focus: the toolkit does not
// tell the theme.
inline void showBlocked(Evas_Object* button) {
    elm_layout_signal_emit(button, "button,blocked", "");
}

}  // namespace ZOLT::GUI
