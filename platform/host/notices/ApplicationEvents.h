// SPDX-License-Identifier: Apache-2.0
// The event handlers that the program has registered with the application framework.
#pragma once

#include "app.h"

namespace host {

// CALLBACK may be null. The result belongs to the framework and stays valid.
app_event_handler_h addEventHandler(app_event_type_e type, app_event_cb callback, void* userData);

// Calls the handlers of TYPE in the order of registration.
void deliverEvent(app_event_type_e type);

}  // namespace host
