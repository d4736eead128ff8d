// SPDX-License-Identifier: Apache-2.0
// The table of the description's values: names, defaults and what each may be.
#include "host/description/Fields.h"

#include <array>
#include <charconv>
#include <sstream>
#include <system_error>

namespace Host {

namespace {

enum class Kind { Text, Number, Flag, Choice };

struct FieldRow {
    Field field;
    const char* group;
    const char* key;
    Kind kind;
    const char* fallback;
    const char* choices;  // of a Choice, separated by "|"
    int low;              // of a Number
    int high;
};

// In the order of the enumeration, which is the index.
constexpr std::array<FieldRow, FIELD_COUNT> FIELDS = {{
    {Field::ScreenWidth, "Screen", "Width", Kind::Number, "1920", "", 1, 16384},
    {Field::ScreenHeight, "Screen", "Height", Kind::Number, "1080", "", 1, 16384},
    {Field::Language, "Language", "Language", Kind::Text, "en_US.utf8", "", 0, 0},
    {Field::MenuLanguage, "Language", "MenuLanguage", Kind::Text, "", "", 0, 0},
    {Field::Orientation, "Language", "Orientation", Kind::Choice, "auto", "auto|ltr|rtl", 0, 0},
    {Field::Country, "Set", "Country", Kind::Text, "US", "", 0, 0},
    {Field::Model, "Set", "Model", Kind::Text, "VIRTUAL-SET", "", 0, 0},
    {Field::UseMode, "Set", "UseMode", Kind::Number, "1", "", 0, 255},
    {Field::DeviceId, "Set", "DeviceId", Kind::Text, "VIRTUALSET0001", "", 0, 0},
    {Field::ServerType, "Set", "ServerType", Kind::Choice, "operating", "operating|development", 0,
     0},
    {Field::ClockOffset, "Set", "ClockOffset", Kind::Number, "0", "", -2000000000, 2000000000},
    {Field::NetworkType, "Network", "Type", Kind::Choice, "auto", "auto|wired|wireless|none", 0, 0},
    {Field::NetworkAddress, "Network", "Address", Kind::Text, "192.0.2.10", "", 0, 0},
    {Field::NetworkMask, "Network", "Mask", Kind::Text, "255.255.255.0", "", 0, 0},
    {Field::NetworkGateway, "Network", "Gateway", Kind::Text, "192.0.2.1", "", 0, 0},
    {Field::NetworkNameServers, "Network", "NameServers", Kind::Text, "192.0.2.1", "", 0, 0},
    {Field::NetworkMac, "Network", "Mac", Kind::Text, "02:00:00:00:00:01", "", 0, 0},
    {Field::NetworkConfiguration, "Network", "Configuration", Kind::Choice, "dynamic",
     "dynamic|static", 0, 0},
    {Field::FocusZoom, "Accessibility", "FocusZoom", Kind::Number, "0", "", 0, 255},
    {Field::HighContrast, "Accessibility", "HighContrast", Kind::Number, "0", "", 0, 255},
    {Field::ScreenReader, "Accessibility", "ScreenReader", Kind::Flag, "false", "", 0, 0},
    {Field::SoundEnabled, "Sound", "Enabled", Kind::Flag, "true", "", 0, 0},
    {Field::SoundVolume, "Sound", "Volume", Kind::Number, "100", "", 0, 100},
    {Field::UsbStorage, "Usb", "Storage", Kind::Text, "", "", 0, 0},
    {Field::StallSeconds, "Framework", "StallSeconds", Kind::Number, "150", "", 0, 86400},
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
        case Kind::Number: {
            const auto number = parseNumber(value);
            return number && *number >= row.low && *number <= row.high
                       ? ""
                       : "a number from " + std::to_string(row.low) + " to " +
                             std::to_string(row.high);
        }
        case Kind::Flag:
            return value == "true" || value == "false" ? "" : "true or false";
        case Kind::Choice:
            return isOneOf(value, row.choices) ? "" : std::string("one of ") + row.choices;
        case Kind::Text:
            break;
    }
    // A language that is given but empty would leave the program without one.
    return value.empty() && field == Field::Language ? "a language" : "";
}

}  // namespace Host
