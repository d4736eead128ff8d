// SPDX-License-Identifier: Apache-2.0
// Renames keys before the canvas sees them.
#include "host/RemoteKeys.h"

#include <cstring>

#include <Ecore_Input.h>

namespace Host {

namespace {

constexpr const char* kKeyboardBack = "Escape";
constexpr const char* kRemoteBack = "XF86Back";

Eina_Bool rename(void*, void*, int type, void* event) {
    if (type != ECORE_EVENT_KEY_DOWN && type != ECORE_EVENT_KEY_UP) {
        return EINA_TRUE;
    }
    auto* key = static_cast<Ecore_Event_Key*>(event);
    if (key->key != nullptr && std::strcmp(key->key, kKeyboardBack) == 0) {
        // The texts of an event lie within it and go with it, so they may be exchanged.
        key->key = kRemoteBack;
        key->keyname = kRemoteBack;
        key->string = nullptr;
        key->compose = nullptr;
    }
    return EINA_TRUE;
}

void* begin(void*) {
    return nullptr;
}

void end(void*, void*) {}

}  // namespace

RemoteKeys::RemoteKeys() : m_filter(ecore_event_filter_add(begin, rename, end, nullptr)) {}

RemoteKeys::~RemoteKeys() {
    ecore_event_filter_del(m_filter);
}

}  // namespace Host
