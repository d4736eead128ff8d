// SPDX-License-Identifier: Apache-2.0
// The two lists of subscribers. Never destroyed: programs may unsubscribe while the process ends.
#include "host/notices/PowerNotices.h"

namespace host {

Subscribers<device_power_poweroff_cb>& poweroffSubscribers() {
    static auto* only = new Subscribers<device_power_poweroff_cb>;
    return *only;
}

Subscribers<device_power_wakeup_cb>& wakeupSubscribers() {
    static auto* only = new Subscribers<device_power_wakeup_cb>;
    return *only;
}

}  // namespace host
