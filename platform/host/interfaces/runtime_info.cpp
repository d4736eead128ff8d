// SPDX-License-Identifier: Apache-2.0
// What the virtual set is and does at this moment.
#include "runtime_info.h"

#include <array>
#include <map>
#include <mutex>
#include <string>

#include "host/base/Text.h"
#include "host/description/Description.h"
#include "host/description/Languages.h"
#include "host/description/Network.h"
#include "host/notices/ChangeWatch.h"

namespace {

using host::Description;
using host::Field;
using host::Network;

std::string addressOf(bool wireless) {
    const Network network = Network::current();
    for (const auto& candidate : network.interfaces) {
        if (candidate.wireless == wireless && !candidate.address.empty()) {
            return candidate.address;
        }
    }
    return "";
}

struct Value {
    runtime_info_key_e key;
    bool isNumber;
    std::string (*read)();
};

constexpr std::array<Value, 6> VALUES = {{
    {RUNTIME_INFO_KEY_LANGUAGE, false, [] { return Description::text(Field::LANGUAGE); }},
    {RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE, false,
     [] { return host::menuLanguage(Description::values()); }},
    {RUNTIME_INFO_KEY_SYSTEM_USE_MODE, true, [] { return Description::text(Field::USE_MODE); }},
    {RUNTIME_INFO_KEY_WIRELESS_IP, false, [] { return addressOf(true); }},
    {RUNTIME_INFO_KEY_WIRED_IP, false, [] { return addressOf(false); }},
    {RUNTIME_INFO_KEY_NETWORK_TYPE, false, [] { return Network::current().typeName(); }},
}};

const Value* find(runtime_info_key_e key) {
    for (const Value& value : VALUES) {
        if (value.key == key) {
            return &value;
        }
    }
    return nullptr;
}

// Never destroyed: programs may unsubscribe while the process ends.
struct Callbacks {
    std::mutex guard;  // guards watches
    std::map<runtime_info_key_e, unsigned> watches;
};

Callbacks& callbacks() {
    static auto* only = new Callbacks;
    return *only;
}

void replaceWatch(runtime_info_key_e key, unsigned watch) {
    const std::lock_guard<std::mutex> lock(callbacks().guard);
    unsigned& current = callbacks().watches[key];
    host::ChangeWatch::remove(current);
    current = watch;
}

}  // namespace

extern "C" {

int runtime_info_get_value_int(runtime_info_key_e key, int* value) {
    const Value* found = find(key);
    if (found == nullptr || !found->isNumber || value == nullptr) {
        return RUNTIME_INFO_ERROR_INVALID_PARAMETER;
    }
    *value = std::stoi(found->read());
    return RUNTIME_INFO_ERROR_NONE;
}

int runtime_info_get_value_string(runtime_info_key_e key, char** value) {
    const Value* found = find(key);
    if (found == nullptr || found->isNumber || value == nullptr) {
        return RUNTIME_INFO_ERROR_INVALID_PARAMETER;
    }
    *value = host::copyForCaller(found->read());
    return RUNTIME_INFO_ERROR_NONE;
}

int runtime_info_set_changed_cb(runtime_info_key_e key, runtime_info_changed_cb callback,
                                void* user_data) {
    const Value* found = find(key);
    if (found == nullptr || callback == nullptr) {
        return RUNTIME_INFO_ERROR_INVALID_PARAMETER;
    }
    replaceWatch(key, host::ChangeWatch::add(
                          found->read, [key, callback, user_data] { callback(key, user_data); }));
    return RUNTIME_INFO_ERROR_NONE;
}

int runtime_info_unset_changed_cb(runtime_info_key_e key) {
    if (find(key) == nullptr) {
        return RUNTIME_INFO_ERROR_INVALID_PARAMETER;
    }
    replaceWatch(key, 0);
    return RUNTIME_INFO_ERROR_NONE;
}

}  // extern "C"
