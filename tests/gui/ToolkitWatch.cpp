// SPDX-License-Identifier: Apache-2.0
// Records calls to the toolkit whose effect no widget shows, and can make factories return null.
#include "gui/ToolkitWatch.h"

#include <sstream>

#include <dlfcn.h>

namespace {

support::ToolkitWatch* current = nullptr;

bool taken(const std::string& function, Evas_Object* widget) {
    return current == nullptr || current->take(function, widget);
}

// The toolkit's own function NAME, with the type of FUNCTION.
template <typename Function>
Function* behind(Function* /*function*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::string quoted(const char* text) {
    return text != nullptr ? '"' + std::string(text) + '"' : "null";
}

std::string written(double number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

std::string written(int number) {
    return std::to_string(number);
}

std::string written(Eina_Bool truth) {
    return truth != EINA_FALSE ? "true" : "false";
}

std::string written(const char* text) {
    return quoted(text);
}

std::string written(const void* object) {
    return support::ToolkitWatch::pointer(object);
}

std::string written(Evas_Callback_Type event) {
    switch (event) {
        case EVAS_CALLBACK_KEY_DOWN:
            return "KEY_DOWN";
        case EVAS_CALLBACK_KEY_UP:
            return "KEY_UP";
        default:
            return std::to_string(event);
    }
}

// Whether the address CALLER is in this program and not in a library.
bool isOurs(const void* caller) {
    Dl_info there = {};
    Dl_info here = {};
    return dladdr(caller, &there) != 0 && dladdr(reinterpret_cast<void*>(isOurs), &here) != 0 &&
           there.dli_fbase == here.dli_fbase;
}

template <typename... Arguments>
void note(const void* caller, const char* function, const void* object, Arguments... arguments) {
    if (current == nullptr || !isOurs(caller)) {
        return;
    }
    std::string list;
    ((list += (list.empty() ? "" : ", ") + written(arguments)), ...);
    current->note(object, std::string(function) + "(" + list + ")");
}

}  // namespace

// These replace the toolkit's functions for all callers in this program.
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

// The following calls are only recorded. The first parameter is the widget or the item.
#define NOTED(result, function, parameters, ...)                   \
    result function parameters {                                   \
        static auto* const next = behind(function, #function);     \
        note(__builtin_return_address(0), #function, __VA_ARGS__); \
        return next(__VA_ARGS__);                                  \
    }

NOTED(void, evas_object_size_hint_weight_set, (Evas_Object * o, double x, double y), o, x, y)
NOTED(void, evas_object_size_hint_align_set, (Evas_Object * o, double x, double y), o, x, y)
NOTED(void, evas_object_size_hint_min_set, (Evas_Object * o, int w, int h), o, w, h)
NOTED(void, evas_object_resize, (Evas_Object * o, int w, int h), o, w, h)
NOTED(void, evas_object_show, (Evas_Object * o), o)
NOTED(void, elm_win_resize_object_add, (Evas_Object * o, Evas_Object* content), o, content)
NOTED(void, elm_layout_sizing_eval, (Evas_Object * o), o)
NOTED(void, elm_object_part_content_set, (Evas_Object * o, const char* part, Evas_Object* content),
      o, part, content)
NOTED(void, elm_object_focus_allow_set, (Evas_Object * o, Eina_Bool allowed), o, allowed)
NOTED(void, elm_object_focus_set, (Evas_Object * o, Eina_Bool focused), o, focused)
NOTED(void, elm_object_item_focus_set, (Elm_Object_Item * item, Eina_Bool focused), item, focused)
NOTED(void, elm_genlist_item_selected_set, (Elm_Object_Item * item, Eina_Bool selected), item,
      selected)
NOTED(void, elm_scroller_region_show, (Evas_Object * o, int x, int y, int w, int h), o, x, y, w, h)
NOTED(Eina_Bool, elm_icon_standard_set, (Evas_Object * o, const char* name), o, name)
NOTED(Eina_Bool, elm_win_focus_highlight_style_set, (Evas_Object * o, const char* style), o, style)

// Of a callback the event and the data are recorded, not the function.
void evas_object_smart_callback_add(Evas_Object* o, const char* event, Evas_Smart_Cb callback,
                                    const void* data) {
    static auto* const next =
        behind(evas_object_smart_callback_add, "evas_object_smart_callback_add");
    note(__builtin_return_address(0), "evas_object_smart_callback_add", o, event, data);
    next(o, event, callback, data);
}

void evas_object_event_callback_add(Evas_Object* o, Evas_Callback_Type type,
                                    Evas_Object_Event_Cb callback, const void* data) {
    static auto* const next =
        behind(evas_object_event_callback_add, "evas_object_event_callback_add");
    note(__builtin_return_address(0), "evas_object_event_callback_add", o, type);
    next(o, type, callback, data);
}

namespace support {

std::string ToolkitWatch::pointer(const void* object) {
    std::ostringstream text;
    text << object;
    return text.str();
}

std::vector<std::string> ToolkitWatch::requestsFor(const void* object) const {
    std::vector<std::string> calls;
    for (const Request& request : m_requests) {
        if (request.object == object) {
            calls.push_back(request.call);
        }
    }
    return calls;
}

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
