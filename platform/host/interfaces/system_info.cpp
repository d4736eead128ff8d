// SPDX-License-Identifier: Apache-2.0
// What never changes about the virtual set.
#include "system_info.h"

#include "host/base/Text.h"
#include "host/description/Description.h"

using host::Description;
using host::Field;

extern "C" {

int system_info_get_value_int(system_info_key_e key, int* value) {
    if (value == nullptr) {
        return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    }
    switch (key) {
        case SYSTEM_INFO_KEY_SCREEN_WIDTH:
        case SYSTEM_INFO_KEY_PANEL_WIDTH:
            *value = Description::number(Field::SCREEN_WIDTH);
            return SYSTEM_INFO_ERROR_NONE;
        case SYSTEM_INFO_KEY_SCREEN_HEIGHT:
        case SYSTEM_INFO_KEY_PANEL_HEIGHT:
            *value = Description::number(Field::SCREEN_HEIGHT);
            return SYSTEM_INFO_ERROR_NONE;
        default:
            return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    }
}

int system_info_get_value_string(system_info_key_e key, char** value) {
    if (value == nullptr || key != SYSTEM_INFO_KEY_MODEL) {
        return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    }
    *value = host::copyForCaller(Description::text(Field::MODEL));
    return SYSTEM_INFO_ERROR_NONE;
}

}  // extern "C"
