// SPDX-License-Identifier: Apache-2.0
// The values of a description, each with its name in the file, its default and its rule.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Host {

enum class Field {
    ScreenWidth,
    ScreenHeight,
    Language,
    MenuLanguage,
    Orientation,
    Country,
    Model,
    UseMode,
    DeviceId,
    ServerType,
    ClockOffset,
    NetworkType,
    NetworkAddress,
    NetworkMask,
    NetworkGateway,
    NetworkNameServers,
    NetworkMac,
    NetworkConfiguration,
    FocusZoom,
    HighContrast,
    ScreenReader,
    SoundEnabled,
    SoundVolume,
    UsbStorage,
    StallSeconds,
    Count
};

constexpr auto FIELD_COUNT = static_cast<std::size_t>(Field::Count);

struct FieldName {
    const char* group;
    const char* key;
};

FieldName nameOf(Field field);
const char* fallbackOf(Field field);
std::optional<Field> findField(const std::string& group, const std::string& key);

// The number that is the whole of TEXT.
std::optional<int> parseNumber(const std::string& text);

// What a value of FIELD has to be, such as "true or false", when VALUE is not; else empty.
std::string unmetRule(Field field, const std::string& value);

}  // namespace Host
