// SPDX-License-Identifier: Apache-2.0
// The application framework of the virtual set.
#include "app.h"

#include "host/notices/ApplicationEvents.h"
#include "host/process/Application.h"

namespace {

bool isEvent(app_event_type_e type) {
    return type >= APP_EVENT_LOW_MEMORY && type <= APP_EVENT_REGION_FORMAT_CHANGED;
}

}  // namespace

extern "C" {

int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callback, void* user_data) {
    static bool running = false;
    if (argc < 1 || argv == nullptr || callback == nullptr || callback->create == nullptr ||
        callback->app_control == nullptr) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    if (running) {
        return APP_ERROR_ALREADY_RUNNING;
    }
    struct RunningHold {
        RunningHold() { running = true; }
        ~RunningHold() { running = false; }
    };
    const RunningHold hold;
    return host::runApplication(argc, argv, *callback, user_data);
}

int ui_app_add_event_handler(app_event_handler_h* handler, app_event_type_e event_type,
                             app_event_cb callback, void* user_data) {
    if (handler == nullptr || !isEvent(event_type)) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    *handler = host::addEventHandler(event_type, callback, user_data);
    return APP_ERROR_NONE;
}

}  // extern "C"
