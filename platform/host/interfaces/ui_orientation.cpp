// SPDX-License-Identifier: Apache-2.0
// The reading direction of the set's screens.
#include "ui_orientation.h"

#include "host/description/Description.h"
#include "host/description/Languages.h"

extern "C" int ua_UI_orientation_get(void) {
    return host::readsRightToLeft(host::Description::values()) ? 1 : 0;
}
