// SPDX-License-Identifier: Apache-2.0
// Registers and calls event handlers.
#include "host/notices/ApplicationEvents.h"

#include <deque>

struct app_event_handler {
    app_event_type_e type;
    app_event_cb callback;
    void* userData;
};

struct app_event_info {
    app_event_type_e type;
};

namespace {

// Handles point into it, so entries are never removed. Never destroyed.
std::deque<app_event_handler>& handlers() {
    static auto* only = new std::deque<app_event_handler>;
    return *only;
}

}  // namespace

namespace host {

app_event_handler_h addEventHandler(app_event_type_e type, app_event_cb callback, void* userData) {
    handlers().push_back({type, callback, userData});
    return &handlers().back();
}

void deliverEvent(app_event_type_e type) {
    static app_event_info info;
    info.type = type;
    for (const app_event_handler& handler : handlers()) {
        if (handler.type != type || handler.callback == nullptr) {
            continue;
        }
        // Some programs have a language handler with the signature of an older framework, whose
        // first argument is the registered data. This event carries no information, so every
        // handler gets the data there.
        const bool older = type == APP_EVENT_LANGUAGE_CHANGED;
        handler.callback(older ? reinterpret_cast<app_event_info_h>(handler.userData) : &info,
                         handler.userData);
    }
}

}  // namespace host
