// SPDX-License-Identifier: Apache-2.0
// Settings by key: some are values of the set's description, the others are kept in a file.
#include "vconf.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/base/HostLog.h"
#include "host/base/KeyFile.h"
#include "host/base/SetFolder.h"
#include "host/base/Text.h"
#include "host/description/Description.h"
#include "host/notices/ChangeWatch.h"

struct _keynode_t {
    std::string key;
    std::string value;
};

namespace {

using host::Description;
using host::Field;

constexpr const char* GROUP = "vconf";

const std::map<std::string, Field>& described() {
    static const auto* table = new std::map<std::string, Field>{
        {"db/menu/system/accessibility/focuszoom", Field::FOCUS_ZOOM},
        {"db/menu/system/accessibility/highcontrast", Field::HIGH_CONTRAST},
        {"db/comss/duid", Field::DEVICE_ID},
    };
    return *table;
}

// Keys that exist on every set from its first start on.
const std::map<std::string, std::string>& fromFactory() {
    static const auto* table = new std::map<std::string, std::string>{
        {"memory/zolt/zolt_screensaver_blocking", "0"},
    };
    return *table;
}

std::optional<std::string> kept(const std::string& key) {
    try {
        const host::KeyFilePtr file = host::readKeyFile(host::SetFolder::keptValues());
        const std::unique_ptr<gchar, decltype(&g_free)> text(
            g_key_file_get_string(file.get(), GROUP, key.c_str(), nullptr), &g_free);
        return text ? std::optional<std::string>(text.get()) : std::nullopt;
    } catch (const std::runtime_error& failure) {
        host::logWarning("The kept values cannot be read: " + std::string(failure.what()));
        return std::nullopt;
    }
}

std::optional<std::string> valueOf(const std::string& key) {
    const auto field = described().find(key);
    if (field != described().end()) {
        return Description::text(field->second);
    }
    if (auto text = kept(key)) {
        return text;
    }
    const auto factory = fromFactory().find(key);
    return factory != fromFactory().end() ? std::optional<std::string>(factory->second)
                                          : std::nullopt;
}

struct Subscription {
    std::string key;
    vconf_callback_fn callback;
    unsigned watch;
};

// Never destroyed: programs may unsubscribe while the process ends.
struct Subscriptions {
    std::mutex guard;  // guards list
    std::vector<Subscription> list;
};

Subscriptions& subscriptions() {
    static auto* only = new Subscriptions;
    return *only;
}

// An absent value differs from an empty one.
std::string comparable(const std::string& key) {
    const auto value = valueOf(key);
    return value ? "=" + *value : "";
}

void setInt(const std::string& key, int value) {
    const auto field = described().find(key);
    if (field != described().end()) {
        Description::write(field->second, std::to_string(value));
        return;
    }
    host::changeKeyFile(
        host::SetFolder::keptValues(), host::BrokenFile::REPLACE,
        [&](GKeyFile* file) { g_key_file_set_integer(file, GROUP, key.c_str(), value); });
}

}  // namespace

extern "C" {

int vconf_get_int(const char* key, int* value) {
    if (key == nullptr || value == nullptr) {
        return -1;
    }
    const auto text = valueOf(key);
    if (!text) {
        return -1;
    }
    const auto number = host::parseNumber(*text);
    if (!number) {
        return -1;
    }
    *value = *number;
    return 0;
}

int vconf_set_int(const char* key, int value) {
    if (key == nullptr || *key == '\0') {
        return -1;
    }
    try {
        setInt(key, value);
    } catch (const std::runtime_error& failure) {
        host::logWarning(std::string(key) + " is not written: " + failure.what());
        return -1;
    }
    return 0;
}

char* vconf_get_str(const char* key) {
    if (key == nullptr) {
        return nullptr;
    }
    const auto text = valueOf(key);
    return text ? host::copyForCaller(*text) : nullptr;
}

int vconf_notify_key_changed(const char* key, vconf_callback_fn callback, void* user_data) {
    if (key == nullptr || callback == nullptr) {
        return -1;
    }
    const std::string name = key;
    const unsigned watch =
        host::ChangeWatch::add([name] { return comparable(name); },
                               [name, callback, user_data] {
                                   keynode_t node{name, valueOf(name).value_or("")};
                                   callback(&node, user_data);
                               });
    const std::lock_guard<std::mutex> lock(subscriptions().guard);
    subscriptions().list.push_back({name, callback, watch});
    return 0;
}

int vconf_ignore_key_changed(const char* key, vconf_callback_fn callback) {
    if (key == nullptr || callback == nullptr) {
        return -1;
    }
    const std::lock_guard<std::mutex> lock(subscriptions().guard);
    auto& list = subscriptions().list;
    for (auto entry = list.begin(); entry != list.end(); ++entry) {
        if (entry->key == key && entry->callback == callback) {
            host::ChangeWatch::remove(entry->watch);
            list.erase(entry);
            return 0;
        }
    }
    return -1;
}

}  // extern "C"
