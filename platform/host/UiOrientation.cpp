// SPDX-License-Identifier: Apache-2.0
// The reading direction of the set's screens.
#include "host/Description.h"
#include "host/Languages.h"
#include "ui_orientation.h"

extern "C" int ua_UI_orientation_get(void) {
    return Host::readsRightToLeft(Host::Description::values()) ? 1 : 0;
}
