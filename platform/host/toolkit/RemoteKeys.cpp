// SPDX-License-Identifier: Apache-2.0
// Renames keys before the canvas sees them.
#include "host/toolkit/RemoteKeys.h"

#include <cstring>

#include <Ecore_Input.h>
#include <Ecore_X.h>

namespace host {

namespace {

constexpr const char* KEYBOARD_BACK = "Escape";
constexpr const char* REMOTE_BACK = "XF86Back";

void rename(Ecore_Event_Key* key) {
    if (key->key != nullptr && std::strcmp(key->key, KEYBOARD_BACK) == 0) {
        // The texts are part of the event's own memory, so replacing the pointers leaks nothing.
        key->key = REMOTE_BACK;
        key->keyname = REMOTE_BACK;
        key->string = nullptr;
        key->compose = nullptr;
    }
}

bool comesFromGrab(Ecore_X_Event_Mode mode) {
    return mode == ECORE_X_EVENT_MODE_GRAB || mode == ECORE_X_EVENT_MODE_UNGRAB;
}

// Returns false for an event that the program must not see.
Eina_Bool pass(void*, void*, int type, void* event) {
    if (type == ECORE_EVENT_KEY_DOWN || type == ECORE_EVENT_KEY_UP) {
        rename(static_cast<Ecore_Event_Key*>(event));
        return EINA_TRUE;
    }
    if (type == ECORE_X_EVENT_WINDOW_FOCUS_IN) {
        return comesFromGrab(static_cast<Ecore_X_Event_Window_Focus_In*>(event)->mode) ? EINA_FALSE
                                                                                       : EINA_TRUE;
    }
    if (type == ECORE_X_EVENT_WINDOW_FOCUS_OUT) {
        return comesFromGrab(static_cast<Ecore_X_Event_Window_Focus_Out*>(event)->mode) ? EINA_FALSE
                                                                                        : EINA_TRUE;
    }
    return EINA_TRUE;
}

void* begin(void*) {
    return nullptr;
}

void end(void*, void*) {}

}  // namespace

RemoteKeys::RemoteKeys() : m_filter(ecore_event_filter_add(begin, pass, end, nullptr)) {}

RemoteKeys::~RemoteKeys() {
    ecore_event_filter_del(m_filter);
}

}  // namespace host
