// SPDX-License-Identifier: Apache-2.0
// The description of the set: one key file with a default for every value.
#pragma once

#include <string>
#include <vector>

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

// Follows the file: a value is never older than the file at the time of the call. Any thread may
// call it. A broken file leaves the values as they were, a bad value counts as absent; both are
// logged once for each version of the file.
class Description {
  public:
    Description() = delete;

    static std::string text(Field field);
    static int number(Field field);
    static bool flag(Field field);
    // The entries of a list, which are separated by ";".
    static std::vector<std::string> list(Field field);

    // True when the file itself holds a good value.
    static bool isGiven(Field field);

    // Looks a value up by its names in the file. False when there is none of these names.
    static bool find(const std::string& group, const std::string& key, Field* field);

    // Rewrites the file with a new value. Returns an empty text, or why it could not be done.
    static std::string write(Field field, const std::string& value);

    // Reads the file again even if it looks unchanged.
    static void reload();
};

}  // namespace Host
