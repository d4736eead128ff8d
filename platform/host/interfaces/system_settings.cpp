// SPDX-License-Identifier: Apache-2.0
// What the owner of the virtual set has chosen.
#include "system_settings.h"

#include <stdexcept>
#include <string>

#include "host/base/HostLog.h"
#include "host/base/Text.h"
#include "host/description/Description.h"

using host::Description;
using host::Field;

extern "C" {

int system_settings_get_value_string(system_settings_key_e key, char** value) {
    if (value == nullptr || key != SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE) {
        return SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER;
    }
    *value = host::copyForCaller(Description::text(Field::COUNTRY));
    return SYSTEM_SETTINGS_ERROR_NONE;
}

int system_settings_set_value_int(system_settings_key_e key, int value) {
    if (key != SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE) {
        return SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER;
    }
    try {
        Description::write(Field::USE_MODE, std::to_string(value));
    } catch (const std::runtime_error& failure) {
        host::logWarning("The use mode is not written: " + std::string(failure.what()));
        return SYSTEM_SETTINGS_ERROR_IO_ERROR;
    }
    return SYSTEM_SETTINGS_ERROR_NONE;
}

}  // extern "C"
