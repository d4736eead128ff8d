// SPDX-License-Identifier: Apache-2.0
// Notifications of the set's power service.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef int (*device_power_poweroff_cb)(int state, void* user_data);
typedef void (*device_power_wakeup_cb)(int state, void* user_data);

// All of these return 0 on success and a negative value otherwise.
int device_power_subscribe_poweroff(device_power_poweroff_cb callback, void* user_data);
int device_power_unsubscribe_poweroff(device_power_poweroff_cb callback);
int device_power_subscribe_wakeup(device_power_wakeup_cb callback, void* user_data);
int device_power_unsubscribe_wakeup(device_power_wakeup_cb callback);

#ifdef __cplusplus
}
#endif
