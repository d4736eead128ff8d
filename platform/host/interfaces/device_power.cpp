// SPDX-License-Identifier: Apache-2.0
// The power service of the virtual set. The control program triggers its notices.
#include "device_power.h"

#include "host/notices/PowerNotices.h"

namespace {

constexpr int INVALID = -22;

template <typename Callback>
int subscribe(host::Subscribers<Callback>& subscribers, Callback callback, void* data) {
    if (callback == nullptr) {
        return INVALID;
    }
    subscribers.add(callback, data);
    return 0;
}

template <typename Callback>
int unsubscribe(host::Subscribers<Callback>& subscribers, Callback callback) {
    return subscribers.remove(callback) ? 0 : INVALID;
}

}  // namespace

extern "C" {

int device_power_subscribe_poweroff(device_power_poweroff_cb callback, void* user_data) {
    return subscribe(host::poweroffSubscribers(), callback, user_data);
}

int device_power_unsubscribe_poweroff(device_power_poweroff_cb callback) {
    return unsubscribe(host::poweroffSubscribers(), callback);
}

int device_power_subscribe_wakeup(device_power_wakeup_cb callback, void* user_data) {
    return subscribe(host::wakeupSubscribers(), callback, user_data);
}

int device_power_unsubscribe_wakeup(device_power_wakeup_cb callback) {
    return unsubscribe(host::wakeupSubscribers(), callback);
}

}  // extern "C"
