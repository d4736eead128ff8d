// SPDX-License-Identifier: Apache-2.0
// Sees the calls of which no widget tells afterwards, and can have the toolkit make nothing.
#include "gui/ToolkitWatch.h"

#include <dlfcn.h>

namespace {

support::ToolkitWatch* current = nullptr;

bool taken(const std::string& function, Evas_Object* widget) {
    return current == nullptr || current->take(function, widget);
}

// The toolkit's own function of this name and of the type of FUNCTION.
template <typename Function>
Function* behind(Function* /*function*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::string quoted(const char* text) {
    return '"' + std::string(text) + '"';
}

}  // namespace

// These take the place of the toolkit's functions for all callers in this program.
Evas_Object* elm_win_util_standard_add(const char* name, const char* title) {
    static auto* const next = behind(elm_win_util_standard_add, "elm_win_util_standard_add");
    return taken("elm_win_util_standard_add", nullptr) ? next(name, title) : nullptr;
}

Evas_Object* elm_layout_add(Evas_Object* parent) {
    static auto* const next = behind(elm_layout_add, "elm_layout_add");
    return taken("elm_layout_add", parent) ? next(parent) : nullptr;
}

Evas_Object* elm_popup_add(Evas_Object* parent) {
    static auto* const next = behind(elm_popup_add, "elm_popup_add");
    return taken("elm_popup_add", parent) ? next(parent) : nullptr;
}

Evas_Object* elm_button_add(Evas_Object* parent) {
    static auto* const next = behind(elm_button_add, "elm_button_add");
    return taken("elm_button_add", parent) ? next(parent) : nullptr;
}

Evas_Object* elm_scroller_add(Evas_Object* parent) {
    static auto* const next = behind(elm_scroller_add, "elm_scroller_add");
    return taken("elm_scroller_add", parent) ? next(parent) : nullptr;
}

void elm_progressbar_pulse(Evas_Object* obj, Eina_Bool state) {
    static auto* const next = behind(elm_progressbar_pulse, "elm_progressbar_pulse");
    if (state == EINA_FALSE || taken("elm_progressbar_pulse", obj)) {
        next(obj, state);
    }
}

void elm_layout_signal_emit(Evas_Object* obj, const char* emission, const char* source) {
    static auto* const next = behind(elm_layout_signal_emit, "elm_layout_signal_emit");
    if (taken("elm_layout_signal_emit(" + quoted(emission) + ", " + quoted(source) + ")", obj)) {
        next(obj, emission, source);
    }
}

namespace support {

ToolkitWatch::ToolkitWatch() {
    current = this;
}

ToolkitWatch::~ToolkitWatch() {
    current = nullptr;
}

std::vector<Evas_Object*> ToolkitWatch::callsOf(const std::string& function) const {
    const auto calls = m_calls.find(function);
    return calls != m_calls.end() ? calls->second : std::vector<Evas_Object*>();
}

bool ToolkitWatch::take(const std::string& function, Evas_Object* widget) {
    m_calls[function].push_back(widget);
    return function != m_refused;
}

}  // namespace support
