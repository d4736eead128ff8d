// SPDX-License-Identifier: Apache-2.0
// The current state of the set.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    RUNTIME_INFO_KEY_LANGUAGE = 0,
    RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE = 34,
    RUNTIME_INFO_KEY_SYSTEM_USE_MODE = 59,
    RUNTIME_INFO_KEY_WIRELESS_IP = 181,
    RUNTIME_INFO_KEY_WIRED_IP = 187,
    RUNTIME_INFO_KEY_NETWORK_TYPE = 191
} runtime_info_key_e;

typedef enum {
    RUNTIME_INFO_ERROR_NONE = 0,
    RUNTIME_INFO_ERROR_INVALID_PARAMETER = -22,
    RUNTIME_INFO_ERROR_OUT_OF_MEMORY = -12,
    RUNTIME_INFO_ERROR_IO_ERROR = -5
} runtime_info_error_e;

typedef void (*runtime_info_changed_cb)(runtime_info_key_e key, void* user_data);

int runtime_info_get_value_int(runtime_info_key_e key, int* value);

// *VALUE is to be released with free.
int runtime_info_get_value_string(runtime_info_key_e key, char** value);

// One callback for a key; a second call replaces the first. May be called on any thread.
int runtime_info_set_changed_cb(runtime_info_key_e key, runtime_info_changed_cb callback,
                                void* user_data);
int runtime_info_unset_changed_cb(runtime_info_key_e key);

#ifdef __cplusplus
}
#endif
