// SPDX-License-Identifier: Apache-2.0
// Settings shared by the processes of a set, by key.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

// The changed key with its new value. Belongs to the platform.
typedef struct _keynode_t keynode_t;

typedef void (*vconf_callback_fn)(keynode_t* node, void* user_data);

// All of these return 0 on success and a negative value otherwise.
int vconf_get_int(const char* key, int* value);
int vconf_set_int(const char* key, int value);

// The text of KEY, to be released with free, or null.
char* vconf_get_str(const char* key);

int vconf_notify_key_changed(const char* key, vconf_callback_fn callback, void* user_data);
int vconf_ignore_key_changed(const char* key, vconf_callback_fn callback);

#ifdef __cplusplus
}
#endif
