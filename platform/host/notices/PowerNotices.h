// SPDX-License-Identifier: Apache-2.0
// The subscribers of the power service's notices.
#pragma once

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "device_power.h"

namespace host {

// Any thread may call it.
template <typename Callback>
class Subscribers {
  public:
    void add(Callback callback, void* data) {
        const std::lock_guard<std::mutex> lock(m_guard);
        m_list.emplace_back(callback, data);
    }

    // Removes the oldest subscription of CALLBACK. False when there is none.
    bool remove(Callback callback) {
        const std::lock_guard<std::mutex> lock(m_guard);
        const auto found = std::find_if(m_list.begin(), m_list.end(),
                                        [&](const auto& entry) { return entry.first == callback; });
        if (found == m_list.end()) {
            return false;
        }
        m_list.erase(found);
        return true;
    }

    // Calls everybody who is subscribed now, in the order of subscription, on this thread.
    void notify(int state) {
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

Subscribers<device_power_poweroff_cb>& poweroffSubscribers();
Subscribers<device_power_wakeup_cb>& wakeupSubscribers();

}  // namespace host
