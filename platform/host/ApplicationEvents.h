// SPDX-License-Identifier: Apache-2.0
// The event handlers that the program has registered with the application framework.
#pragma once

#include "app.h"

namespace Host {

// Calls the handlers of TYPE in the order of registration.
void deliverEvent(app_event_type_e type);

}  // namespace Host
