// SPDX-License-Identifier: Apache-2.0
// Small steps that screens and popups take with every widget.
#pragma once

#include <libintl.h>

#include <Elementary.h>

namespace ZOLT::GUI {

// Text domain of every translation id.
inline constexpr char textDomain[] = "ZOLT";

// The text behind ID in the language of this moment; ID itself when there is none.
inline char const* translated(char const* id) {
    return dgettext(textDomain, id);
}

// Sets ID on PART, null for the default one; the widget follows the language by itself.
inline void setTranslatable(Evas_Object* object, char const* part, char const* id) {
    elm_object_domain_translatable_part_text_set(object, part, textDomain, id);
}

// Set for good once an exception has left the main loop through the toolkit's own functions. Their
// records of what they were doing then point into a stack that is gone, and a widget that is still
// touched can bring the process down before main has told what went wrong. The process ends at once
// and takes its widgets along.
inline bool toolkitLost = false;

// Lets the part that holds BUTTON decide its size. A television's toolkit forgets an application's
// minimum as soon as it has evaluated the button's own; newer ones keep it, and a part cannot be
// smaller than what it holds.
inline void leaveSizeToPart(Evas_Object* button) {
    evas_object_size_hint_min_set(button, 0, 0);
}

// An evas event callback that clears the handle at DATA.
inline void forgetHandle(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*info*/) {
    *static_cast<Evas_Object**>(data) = nullptr;
}

// Clears HANDLE when its widget goes in another way than through dropHandle, as all widgets of a
// window do that the window manager closes. HANDLE must stay in its place until then.
inline void watchHandle(Evas_Object*& handle) {
    evas_object_event_callback_add(handle, EVAS_CALLBACK_DEL, forgetHandle, &handle);
}

// Ends the watch on HANDLE, whose widget belongs to somebody else, and clears it.
inline void unwatchHandle(Evas_Object*& handle) {
    if (handle != nullptr && !toolkitLost) {
        evas_object_event_callback_del_full(handle, EVAS_CALLBACK_DEL, forgetHandle, &handle);
    }
    handle = nullptr;
}

// Deletes the widget of a watched handle, if it is still there, and clears the handle. The toolkit
// may put the deletion off while it is inside one of the widget's callbacks, so the watch ends
// first.
inline void dropHandle(Evas_Object*& handle) {
    if (handle != nullptr && !toolkitLost) {
        evas_object_event_callback_del_full(handle, EVAS_CALLBACK_DEL, forgetHandle, &handle);
        evas_object_del(handle);
    }
    handle = nullptr;
}

// Whether the screens have the high contrast look, as the last one that was made found it.
inline bool highContrast = false;

// Gives WIDGET the high contrast look if the screens have it: the theme is told by the program
// alone.
inline void followContrast(Evas_Object* widget) {
    if (highContrast) {
        elm_layout_signal_emit(widget, "WIN_CONTRAST_1", "");
        elm_layout_signal_emit(widget, "WIN_CONTRAST_2", "");
    }
}

// Makes BUTTON look like one that cannot be reached, until it gets the focus: the theme is not told
// of that by the toolkit.
inline void showBlocked(Evas_Object* button) {
    elm_layout_signal_emit(button, "button,blocked", "");
}

}  // namespace ZOLT::GUI
