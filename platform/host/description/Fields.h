// SPDX-License-Identifier: Apache-2.0
// The values of a description, each with its name in the file, its default and its rule.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace host {

enum class Field {
    SCREEN_WIDTH,
    SCREEN_HEIGHT,
    LANGUAGE,
    MENU_LANGUAGE,
    ORIENTATION,
    COUNTRY,
    MODEL,
    USE_MODE,
    DEVICE_ID,
    SERVER_TYPE,
    CLOCK_OFFSET,
    NETWORK_TYPE,
    NETWORK_ADDRESS,
    NETWORK_MASK,
    NETWORK_GATEWAY,
    NETWORK_NAME_SERVERS,
    NETWORK_MAC,
    NETWORK_CONFIGURATION,
    FOCUS_ZOOM,
    HIGH_CONTRAST,
    SCREEN_READER,
    SOUND_ENABLED,
    SOUND_VOLUME,
    USB_STORAGE,
    STALL_SECONDS,
    COUNT
};

constexpr auto FIELD_COUNT = static_cast<std::size_t>(Field::COUNT);

struct FieldName {
    const char* group;
    const char* key;
};

FieldName nameOf(Field field);
const char* fallbackOf(Field field);
std::optional<Field> findField(const std::string& group, const std::string& key);

// The value of a decimal number; nothing when TEXT is anything else.
std::optional<int> parseNumber(const std::string& text);

// The rule that VALUE breaks, such as "true or false"; empty when FIELD can have VALUE.
std::string unmetRule(Field field, const std::string& value);

}  // namespace host
