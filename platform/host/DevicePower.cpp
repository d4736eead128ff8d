// SPDX-License-Identifier: Apache-2.0
// The power service of the virtual set, driven by its control program.
#include "host/DevicePower.h"

#include <mutex>
#include <utility>
#include <vector>

#include "device_power.h"

namespace {

constexpr int kInvalid = -22;

template <typename Callback>
class Subscribers {
  public:
    int add(Callback callback, void* data) {
        if (callback == nullptr) {
            return kInvalid;
        }
        const std::lock_guard<std::mutex> lock(m_guard);
        m_list.emplace_back(callback, data);
        return 0;
    }

    int remove(Callback callback) {
        const std::lock_guard<std::mutex> lock(m_guard);
        for (auto entry = m_list.begin(); entry != m_list.end(); ++entry) {
            if (entry->first == callback) {
                m_list.erase(entry);
                return 0;
            }
        }
        return kInvalid;
    }

    void tell(int state) {
        std::vector<std::pair<Callback, void*>> now;
        {
            const std::lock_guard<std::mutex> lock(m_guard);
            now = m_list;
        }
        for (const auto& [callback, data] : now) {
            callback(state, data);
        }
    }

  private:
    std::mutex m_guard;  // guards m_list
    std::vector<std::pair<Callback, void*>> m_list;
};

// Never destroyed: programs may unsubscribe while the process ends.
Subscribers<device_power_poweroff_cb>& poweroff() {
    static auto* only = new Subscribers<device_power_poweroff_cb>;
    return *only;
}

Subscribers<device_power_wakeup_cb>& wakeup() {
    static auto* only = new Subscribers<device_power_wakeup_cb>;
    return *only;
}

}  // namespace

namespace Host {

void announcePoweroff(int state) {
    poweroff().tell(state);
}

void announceWakeup(int state) {
    wakeup().tell(state);
}

}  // namespace Host

extern "C" {

int device_power_subscribe_poweroff(device_power_poweroff_cb callback, void* user_data) {
    return poweroff().add(callback, user_data);
}

int device_power_unsubscribe_poweroff(device_power_poweroff_cb callback) {
    return poweroff().remove(callback);
}

int device_power_subscribe_wakeup(device_power_wakeup_cb callback, void* user_data) {
    return wakeup().add(callback, user_data);
}

int device_power_unsubscribe_wakeup(device_power_wakeup_cb callback) {
    return wakeup().remove(callback);
}

}  // extern "C"
