// SPDX-License-Identifier: Apache-2.0
// Settings that the owner of the set has chosen.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE = 19,
    SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE = 323
} system_settings_key_e;

typedef enum {
    SYSTEM_SETTINGS_ERROR_NONE = 0,
    SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER = -22,
    SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY = -12,
    SYSTEM_SETTINGS_ERROR_IO_ERROR = -5
} system_settings_error_e;

// *VALUE is to be released with free.
int system_settings_get_value_string(system_settings_key_e key, char** value);
int system_settings_set_value_int(system_settings_key_e key, int value);

#ifdef __cplusplus
}
#endif
