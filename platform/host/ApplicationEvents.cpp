// SPDX-License-Identifier: Apache-2.0
// Registering and calling event handlers.
#include "host/ApplicationEvents.h"

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

// Handles point into it, so it only grows. Never destroyed.
std::deque<app_event_handler>& handlers() {
    static auto* only = new std::deque<app_event_handler>;
    return *only;
}

bool isEvent(app_event_type_e type) {
    return type >= APP_EVENT_LOW_MEMORY && type <= APP_EVENT_REGION_FORMAT_CHANGED;
}

}  // namespace

namespace Host {

void deliverEvent(app_event_type_e type) {
    static app_event_info info;
    info.type = type;
    for (const app_event_handler& handler : handlers()) {
        if (handler.type != type || handler.callback == nullptr) {
            continue;
        }
        // There are programs whose language handler has the form of an older framework and takes
        // its first argument for the registered data. The event carries nothing else, so it is
        // that.
        const bool older = type == APP_EVENT_LANGUAGE_CHANGED;
        handler.callback(older ? reinterpret_cast<app_event_info_h>(handler.userData) : &info,
                         handler.userData);
    }
}

}  // namespace Host

extern "C" int ui_app_add_event_handler(app_event_handler_h* handler, app_event_type_e event_type,
                                        app_event_cb callback, void* user_data) {
    if (handler == nullptr || !isEvent(event_type)) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    handlers().push_back({event_type, callback, user_data});
    *handler = &handlers().back();
    return APP_ERROR_NONE;
}
