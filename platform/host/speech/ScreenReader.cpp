// SPDX-License-Identifier: Apache-2.0
// Follows the focus, gets the text of the focused widget, and speaks it.
#include "host/speech/ScreenReader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "host/base/HostLog.h"
#include "host/description/Description.h"
#include "host/toolkit/ToolkitWindows.h"
#include "host/toolkit/WidgetTexts.h"

namespace host {

namespace {

// Between two ticks the main loop is idle, and draws, at least once: by then a new screen or popup
// has its final place and focus.
constexpr double TICK = 0.025;
constexpr int TICKS_AT_REST = 3;

ScreenReader* s_running = nullptr;

bool isA(const Evas_Object* widget, const char* name) {
    const char* type = evas_object_type_get(widget);
    return type != nullptr && std::strcmp(type, name) == 0;
}

// Copies TEXT and releases it.
std::string takeText(char* text) {
    std::string result = text != nullptr ? text : "";
    std::free(text);
    return result;
}

const Elm_Object_Item* focusedRow(const Evas_Object* list) {
    const Elm_Object_Item* found = nullptr;
    Eina_List* items = elm_genlist_realized_items_get(list);
    void* entry = nullptr;
    EINA_LIST_FREE(items, entry) {
        const auto* item = static_cast<const Elm_Object_Item*>(entry);
        if (elm_object_item_focus_get(item) != EINA_FALSE) {
            found = item;
        }
    }
    return found;
}

std::string rowText(const Elm_Object_Item* row) {
    const char* text = elm_object_item_part_text_get(row, "elm.text");
    return text != nullptr ? text : "";
}

// A drop-down shows its text as it was set, also what looks like markup.
std::string widgetText(Evas_Object* widget) {
    if (isA(widget, "elm_hoversel")) {
        const char* text = elm_object_text_get(widget);
        return text != nullptr ? text : "";
    }
    if (isA(widget, "elm_scroller")) {
        return textsWithin(widget);
    }
    return takeText(elm_access_info_get(widget, ELM_ACCESS_INFO));
}

}  // namespace

ScreenReader::ScreenReader() : m_idle(ecore_idle_enterer_add(onIdle, this)) {
    s_running = this;
}

ScreenReader::~ScreenReader() {
    s_running = nullptr;
    ecore_idle_enterer_del(m_idle);
    rest();
}

ScreenReader* ScreenReader::running() {
    return s_running;
}

void ScreenReader::say(const std::string& text) {
    if (text.empty() || !Description::flag(Field::SCREEN_READER)) {
        return;
    }
    logInfo("Screen reader: says \"" + text + "\"");
    m_program.speak(text);
}

Eina_Bool ScreenReader::onIdle(void* self) {
    auto* reader = static_cast<ScreenReader*>(self);
    if (Description::flag(Field::SCREEN_READER)) {
        reader->follow(reader->focusedPlace());
    } else {
        reader->rest();
        reader->m_place = reader->m_read = {};
    }
    return ECORE_CALLBACK_RENEW;
}

// The widget that receives keys. When one screen replaces another, the focus of the old one may
// move once more while the new window waits for the keyboard; that move is not read.
Evas_Object* ScreenReader::focusedWidget() {
    Evas_Object* keyboard = nullptr;
    std::vector<Evas_Object*> shown;
    for (const ToolkitWindow& entry : toolkitWindows()) {
        if (elm_win_focus_get(entry.window) != EINA_FALSE) {
            keyboard = entry.window;
        }
        if (evas_object_visible_get(entry.window) != EINA_FALSE) {
            shown.push_back(entry.window);
        }
    }
    const bool isNewShown = std::any_of(shown.begin(), shown.end(), [this](Evas_Object* window) {
        return std::find(m_windows.begin(), m_windows.end(), window) == m_windows.end();
    });
    if (keyboard == nullptr || (isNewShown && keyboard == m_keyboard)) {
        return nullptr;
    }
    m_keyboard = keyboard;
    m_windows = std::move(shown);
    return elm_object_focused_object_get(keyboard);
}

ScreenReader::Place ScreenReader::focusedPlace() {
    Evas_Object* widget = focusedWidget();
    return {widget, widget != nullptr && isA(widget, "elm_genlist") ? focusedRow(widget) : nullptr};
}

void ScreenReader::follow(const Place& place) {
    if (place == m_place) {
        return;
    }
    m_place = place;
    m_ticks = 0;
    if (m_timer == nullptr) {
        m_timer = ecore_timer_add(TICK, onTick, this);
    }
}

Eina_Bool ScreenReader::onTick(void* self) {
    auto* reader = static_cast<ScreenReader*>(self);
    const Place place = reader->focusedPlace();
    reader->follow(place);
    if (++reader->m_ticks < TICKS_AT_REST) {
        return ECORE_CALLBACK_RENEW;
    }
    reader->m_timer = nullptr;
    if (!(place == reader->m_read)) {
        reader->m_read = place;
        if (place.row != nullptr) {
            reader->say(rowText(place.row));
        } else if (place.widget != nullptr) {
            reader->say(widgetText(place.widget));
        }
    }
    return ECORE_CALLBACK_CANCEL;
}

void ScreenReader::rest() {
    if (m_timer != nullptr) {
        ecore_timer_del(m_timer);
        m_timer = nullptr;
    }
}

}  // namespace host

// Replaces the toolkit's function in a program that is linked with this library, since the toolkit
// passes texts only to the modules of its own installation. Weak, so that a program can replace it
// in turn, as a test does.
extern "C" __attribute__((weak)) void elm_access_say(const char* text) {
    if (text != nullptr && host::ScreenReader::running() != nullptr) {
        host::ScreenReader::running()->say(text);
    }
}
