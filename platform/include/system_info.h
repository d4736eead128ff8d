// SPDX-License-Identifier: Apache-2.0
// Properties of the set that never change.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SYSTEM_INFO_KEY_MODEL = 0,
    SYSTEM_INFO_KEY_SCREEN_HEIGHT = 353,
    SYSTEM_INFO_KEY_SCREEN_WIDTH = 354,
    SYSTEM_INFO_KEY_PANEL_WIDTH = 380,
    SYSTEM_INFO_KEY_PANEL_HEIGHT = 381
} system_info_key_e;

typedef enum {
    SYSTEM_INFO_ERROR_NONE = 0,
    SYSTEM_INFO_ERROR_INVALID_PARAMETER = -22,
    SYSTEM_INFO_ERROR_OUT_OF_MEMORY = -12,
    SYSTEM_INFO_ERROR_IO_ERROR = -5
} system_info_error_e;

int system_info_get_value_int(system_info_key_e key, int* value);

// *VALUE is to be released with free.
int system_info_get_value_string(system_info_key_e key, char** value);

#ifdef __cplusplus
}
#endif
