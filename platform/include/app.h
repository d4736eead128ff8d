// SPDX-License-Identifier: Apache-2.0
// Application framework: the life of a process with a user interface.
#pragma once

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

// What a launch asks for. Belongs to the framework and is valid during the callback only.
typedef struct app_control_s* app_control_h;

// What an event carries. Belongs to the framework.
typedef struct app_event_info* app_event_info_h;

// A registered event handler. Belongs to the framework.
typedef struct app_event_handler* app_event_handler_h;

typedef enum {
    APP_EVENT_LOW_MEMORY = 0,
    APP_EVENT_LOW_BATTERY = 1,
    APP_EVENT_LANGUAGE_CHANGED = 2,
    APP_EVENT_DEVICE_ORIENTATION_CHANGED = 3,
    APP_EVENT_REGION_FORMAT_CHANGED = 4
} app_event_type_e;

typedef enum {
    APP_ERROR_NONE = 0,
    APP_ERROR_INVALID_PARAMETER = -22,
    APP_ERROR_INVALID_CONTEXT = -17760255,
    APP_ERROR_ALREADY_RUNNING = -17760251
} app_error_e;

typedef void (*app_event_cb)(app_event_info_h event_info, void* user_data);

typedef struct {
    bool (*create)(void* user_data);     // before the first frame; false ends the application
    void (*terminate)(void* user_data);  // after the main loop has ended
    void (*pause)(void* user_data);      // the last visible window went out of sight
    void (*resume)(void* user_data);     // a window came into sight
    void (*app_control)(app_control_h app_control, void* user_data);  // each launch request
} ui_app_lifecycle_callback_s;

// Runs the application until its main loop ends. Returns APP_ERROR_NONE, or why it could not run.
// Exceptions thrown by a callback pass through to the caller.
int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callback, void* user_data);

// Registers CALLBACK, which may be null, for an event. *HANDLER belongs to the framework.
int ui_app_add_event_handler(app_event_handler_h* handler, app_event_type_e event_type,
                             app_event_cb callback, void* user_data);

#ifdef __cplusplus
}
#endif
