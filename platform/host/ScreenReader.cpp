// SPDX-License-Identifier: Apache-2.0
// Leads the reading highlight along with the keyboard focus.
#include "host/ScreenReader.h"

#include <cstring>
#include <string>

#include <Elementary.h>

#include "host/HostLog.h"
#include "host/ToolkitWindows.h"

namespace Host {

namespace {

// The widget with the focus in the window that has the keyboard.
Evas_Object* focusedWidget() {
    for (const ToolkitWindow& entry : toolkitWindows()) {
        if (elm_win_focus_get(entry.window) != EINA_FALSE) {
            return elm_object_focused_object_get(entry.window);
        }
    }
    return nullptr;
}

bool isButton(const Evas_Object* widget) {
    const char* type = evas_object_type_get(widget);
    return type != nullptr && std::strcmp(type, "elm_button") == 0;
}

bool isOk(const char* key) {
    return key != nullptr && (std::strcmp(key, "Return") == 0 || std::strcmp(key, "KP_Enter") == 0);
}

}  // namespace

ScreenReader::ScreenReader() : m_idle(ecore_idle_enterer_add(onIdle, this)) {}

ScreenReader::~ScreenReader() {
    ecore_idle_enterer_del(m_idle);
    leave();
}

Eina_Bool ScreenReader::onIdle(void* self) {
    auto* reader = static_cast<ScreenReader*>(self);
    if (elm_config_access_get() != EINA_FALSE) {
        reader->follow(focusedWidget());
    } else {
        reader->leave();
    }
    return ECORE_CALLBACK_RENEW;
}

void ScreenReader::follow(Evas_Object* widget) {
    if (widget == m_current) {
        return;
    }
    leave();
    m_current = widget;
    if (widget == nullptr) {
        return;
    }
    evas_object_event_callback_add(widget, EVAS_CALLBACK_KEY_DOWN, onKeyDown, this);
    evas_object_event_callback_add(widget, EVAS_CALLBACK_DEL, onDeleted, this);
    logInfo(std::string("Screen reader: reads ") + evas_object_type_get(widget));
    elm_access_highlight_set(widget);
}

void ScreenReader::leave() {
    if (m_current != nullptr) {
        evas_object_event_callback_del_full(m_current, EVAS_CALLBACK_KEY_DOWN, onKeyDown, this);
        evas_object_event_callback_del_full(m_current, EVAS_CALLBACK_DEL, onDeleted, this);
        m_current = nullptr;
    }
}

void ScreenReader::onDeleted(void* self, Evas*, Evas_Object*, void*) {
    static_cast<ScreenReader*>(self)->leave();
}

void ScreenReader::onKeyDown(void*, Evas*, Evas_Object* widget, void* event) {
    auto* key = static_cast<Evas_Event_Key_Down*>(event);
    if (!isOk(key->key) || !isButton(widget)) {
        return;
    }
    // The button itself would take this for the first of two taps.
    key->event_flags = static_cast<Evas_Event_Flags>(key->event_flags | EVAS_EVENT_FLAG_ON_HOLD);
    Elm_Access_Action_Info action{};
    action.action_type = ELM_ACCESS_ACTION_ACTIVATE;
    elm_access_action(widget, ELM_ACCESS_ACTION_ACTIVATE, &action);
}

}  // namespace Host
