// SPDX-License-Identifier: Apache-2.0
// Records what the program makes the screen reader say.
#include "gui/Speech.h"

#include <map>

#include <dlfcn.h>

namespace {

std::string& heard() {
    static std::string text;
    return text;
}

std::map<const Evas_Object*, support::SpeechBinding>& bindings() {
    static std::map<const Evas_Object*, support::SpeechBinding> made;
    return made;
}

}  // namespace

// These replace the toolkit's functions for all callers in this program. Without a screen reader
// the toolkit drops the text, and it has no query for the callback of a widget.
void elm_access_say(const char* txt) {
    heard() += (heard().empty() ? "" : "\n") + std::string(txt);
}

void elm_access_info_cb_set(Evas_Object* obj, int type, Elm_Access_Info_Cb func, const void* data) {
    const auto* const text = static_cast<const char*>(data);
    bindings()[obj] = {type, func, text != nullptr ? text : ""};
    static const auto next = reinterpret_cast<decltype(&elm_access_info_cb_set)>(
        dlsym(RTLD_NEXT, "elm_access_info_cb_set"));
    next(obj, type, func, data);
}

namespace support {

std::string spoken() {
    return heard();
}

void forgetSpeech() {
    heard().clear();
    bindings().clear();
}

SpeechBinding speechOf(const Evas_Object* widget) {
    return bindings()[widget];
}

}  // namespace support
