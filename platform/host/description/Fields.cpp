// SPDX-License-Identifier: Apache-2.0
// The table of the description's values: names, defaults and rules.
#include "host/description/Fields.h"

#include <array>
#include <charconv>
#include <sstream>
#include <system_error>

namespace host {

namespace {

enum class Kind { TEXT, NUMBER, FLAG, CHOICE };

struct FieldRow {
    Field field;
    const char* group;
    const char* key;
    Kind kind;
    const char* fallback;
    const char* choices;  // of a CHOICE, separated by "|"
    int low;              // of a NUMBER
    int high;
};

// In the order of the enumeration, which is the index.
constexpr std::array<FieldRow, FIELD_COUNT> FIELDS = {{
    {Field::SCREEN_WIDTH, "Screen", "Width", Kind::NUMBER, "1920", "", 1, 16384},
    {Field::SCREEN_HEIGHT, "Screen", "Height", Kind::NUMBER, "1080", "", 1, 16384},
    {Field::LANGUAGE, "Language", "Language", Kind::TEXT, "en_US.utf8", "", 0, 0},
    {Field::MENU_LANGUAGE, "Language", "MenuLanguage", Kind::TEXT, "", "", 0, 0},
    {Field::ORIENTATION, "Language", "Orientation", Kind::CHOICE, "auto", "auto|ltr|rtl", 0, 0},
    {Field::COUNTRY, "Set", "Country", Kind::TEXT, "US", "", 0, 0},
    {Field::MODEL, "Set", "Model", Kind::TEXT, "VIRTUAL-SET", "", 0, 0},
    {Field::USE_MODE, "Set", "UseMode", Kind::NUMBER, "1", "", 0, 255},
    {Field::DEVICE_ID, "Set", "DeviceId", Kind::TEXT, "VIRTUALSET0001", "", 0, 0},
    {Field::SERVER_TYPE, "Set", "ServerType", Kind::CHOICE, "operating", "operating|development", 0,
     0},
    {Field::CLOCK_OFFSET, "Set", "ClockOffset", Kind::NUMBER, "0", "", -2000000000, 2000000000},
    {Field::NETWORK_TYPE, "Network", "Type", Kind::CHOICE, "auto", "auto|wired|wireless|none", 0,
     0},
    {Field::NETWORK_ADDRESS, "Network", "Address", Kind::TEXT, "192.0.2.10", "", 0, 0},
    {Field::NETWORK_MASK, "Network", "Mask", Kind::TEXT, "255.255.255.0", "", 0, 0},
    {Field::NETWORK_GATEWAY, "Network", "Gateway", Kind::TEXT, "192.0.2.1", "", 0, 0},
    {Field::NETWORK_NAME_SERVERS, "Network", "NameServers", Kind::TEXT, "192.0.2.1", "", 0, 0},
    {Field::NETWORK_MAC, "Network", "Mac", Kind::TEXT, "02:00:00:00:00:01", "", 0, 0},
    {Field::NETWORK_CONFIGURATION, "Network", "Configuration", Kind::CHOICE, "dynamic",
     "dynamic|static", 0, 0},
    {Field::FOCUS_ZOOM, "Accessibility", "FocusZoom", Kind::NUMBER, "0", "", 0, 255},
    {Field::HIGH_CONTRAST, "Accessibility", "HighContrast", Kind::NUMBER, "0", "", 0, 255},
    {Field::SCREEN_READER, "Accessibility", "ScreenReader", Kind::FLAG, "false", "", 0, 0},
    {Field::SOUND_ENABLED, "Sound", "Enabled", Kind::FLAG, "true", "", 0, 0},
    {Field::SOUND_VOLUME, "Sound", "Volume", Kind::NUMBER, "100", "", 0, 100},
    {Field::USB_STORAGE, "Usb", "Storage", Kind::TEXT, "", "", 0, 0},
    {Field::STALL_SECONDS, "Framework", "StallSeconds", Kind::NUMBER, "150", "", 0, 86400},
}};

const FieldRow& rowOf(Field field) {
    return FIELDS[static_cast<std::size_t>(field)];
}

bool isOneOf(const std::string& value, const std::string& choices) {
    std::istringstream stream(choices);
    std::string choice;
    while (std::getline(stream, choice, '|')) {
        if (choice == value) {
            return true;
        }
    }
    return false;
}

}  // namespace

FieldName nameOf(Field field) {
    return {rowOf(field).group, rowOf(field).key};
}

const char* fallbackOf(Field field) {
    return rowOf(field).fallback;
}

std::optional<Field> findField(const std::string& group, const std::string& key) {
    for (const FieldRow& row : FIELDS) {
        if (group == row.group && key == row.key) {
            return row.field;
        }
    }
    return std::nullopt;
}

std::optional<int> parseNumber(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional<int>(number)
                                                         : std::nullopt;
}

std::string unmetRule(Field field, const std::string& value) {
    const FieldRow& row = rowOf(field);
    switch (row.kind) {
        case Kind::NUMBER: {
            const auto number = parseNumber(value);
            return number && *number >= row.low && *number <= row.high
                       ? ""
                       : "a number from " + std::to_string(row.low) + " to " +
                             std::to_string(row.high);
        }
        case Kind::FLAG:
            return value == "true" || value == "false" ? "" : "true or false";
        case Kind::CHOICE:
            return isOneOf(value, row.choices) ? "" : std::string("one of ") + row.choices;
        case Kind::TEXT:
            break;
    }
    // A language that is given but empty would leave the program without one.
    return value.empty() && field == Field::LANGUAGE ? "a language" : "";
}

}  // namespace host
