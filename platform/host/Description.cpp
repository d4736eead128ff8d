// SPDX-License-Identifier: Apache-2.0
// Reading, checking and rewriting the description of the set.
#include "host/Description.h"

#include <array>
#include <charconv>
#include <cstring>
#include <memory>
#include <mutex>
#include <sstream>

#include <sys/stat.h>

#include "host/HostLog.h"
#include "host/KeyFile.h"
#include "host/SetFolder.h"

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

constexpr auto kFieldCount = static_cast<std::size_t>(Field::Count);

// In the order of the enumeration, which is the index.
constexpr std::array<FieldRow, kFieldCount> kFields = {{
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

const FieldRow& row(Field field) {
    return kFields[static_cast<std::size_t>(field)];
}

bool parse(const std::string& text, int* value) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, *value);
    return result.ec == std::errc() && result.ptr == end;
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

// Empty when VALUE may stand for the field, otherwise what it has to be.
std::string complaint(const FieldRow& fieldRow, const std::string& value) {
    int number = 0;
    switch (fieldRow.kind) {
        case Kind::Number:
            if (!parse(value, &number) || number < fieldRow.low || number > fieldRow.high) {
                return "a number from " + std::to_string(fieldRow.low) + " to " +
                       std::to_string(fieldRow.high);
            }
            return "";
        case Kind::Flag:
            return value == "true" || value == "false" ? "" : "true or false";
        case Kind::Choice:
            return isOneOf(value, fieldRow.choices) ? ""
                                                    : std::string("one of ") + fieldRow.choices;
        case Kind::Text:
            break;
    }
    // A language that is given but empty would leave the program without one.
    return value.empty() && fieldRow.field == Field::Language ? "a language" : "";
}

struct Values {
    std::array<std::string, kFieldCount> text;
    std::array<bool, kFieldCount> given{};
};

Values defaults() {
    Values values;
    for (const FieldRow& fieldRow : kFields) {
        values.text[static_cast<std::size_t>(fieldRow.field)] = fieldRow.fallback;
    }
    return values;
}

void take(const FieldRow& fieldRow, GKeyFile* file, Values* values) {
    const std::unique_ptr<gchar, decltype(&g_free)> given(
        g_key_file_get_string(file, fieldRow.group, fieldRow.key, nullptr), &g_free);
    if (!given) {
        return;
    }
    const std::string wanted = complaint(fieldRow, given.get());
    if (!wanted.empty()) {
        logWarning(std::string("[") + fieldRow.group + "] " + fieldRow.key + "=" + given.get() +
                   " is not " + wanted + "; " + fieldRow.fallback + " is used");
        return;
    }
    const auto index = static_cast<std::size_t>(fieldRow.field);
    values->text[index] = given.get();
    values->given[index] = true;
}

struct StringsRelease {
    void operator()(gchar** strings) const { g_strfreev(strings); }
};
using Strings = std::unique_ptr<gchar*, StringsRelease>;

void warnOfUnknown(GKeyFile* file) {
    const Strings groups(g_key_file_get_groups(file, nullptr));
    for (gchar** group = groups.get(); *group != nullptr; ++group) {
        const Strings keys(g_key_file_get_keys(file, *group, nullptr, nullptr));
        for (gchar** key = keys.get(); key != nullptr && *key != nullptr; ++key) {
            Field field = Field::Count;
            if (!Description::find(*group, *key, &field)) {
                logWarning(std::string("[") + *group + "] " + *key +
                           " is no value of a set and is ignored");
            }
        }
    }
}

// What tells one version of the file from another.
struct Stamp {
    std::string path;
    struct stat status;
    bool exists;
};

Stamp stampOf(const std::string& path) {
    Stamp stamp{path, {}, false};
    stamp.exists = stat(path.c_str(), &stamp.status) == 0;
    return stamp;
}

bool sameTime(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool same(const Stamp& one, const Stamp& other) {
    return one.path == other.path && one.exists == other.exists &&
           (!one.exists ||
            (one.status.st_dev == other.status.st_dev && one.status.st_ino == other.status.st_ino &&
             one.status.st_size == other.status.st_size &&
             sameTime(one.status.st_mtim, other.status.st_mtim) &&
             sameTime(one.status.st_ctim, other.status.st_ctim)));
}

// The last version that was read. Never destroyed, since threads may ask until the very end.
struct Cache {
    std::mutex guard;  // guards the members below
    Stamp stamp{"", {}, false};
    bool stale = true;
    Values values = defaults();
};

Cache& cache() {
    static auto* only = new Cache;
    return *only;
}

void read(Cache* kept, const Stamp& now) {
    const bool otherFile = kept->stamp.path != now.path;
    kept->stamp = now;
    kept->stale = false;
    if (otherFile) {
        kept->values = defaults();
    }
    std::string failure;
    const KeyFilePtr file = readKeyFile(now.path, &failure);
    if (!file) {
        logWarning("The description of the set cannot be read, its values stay as they were: " +
                   failure);
        return;
    }
    Values fresh = defaults();
    for (const FieldRow& fieldRow : kFields) {
        take(fieldRow, file.get(), &fresh);
    }
    warnOfUnknown(file.get());
    kept->values = fresh;
}

template <typename Result>
Result ask(Result (*answer)(const Values&, std::size_t), Field field) {
    Cache& kept = cache();
    const Stamp now = stampOf(SetFolder::description());
    const std::lock_guard<std::mutex> lock(kept.guard);
    if (kept.stale || !same(kept.stamp, now)) {
        read(&kept, now);
    }
    return answer(kept.values, static_cast<std::size_t>(field));
}

}  // namespace

std::string Description::text(Field field) {
    return ask<std::string>(
        [](const Values& values, std::size_t index) { return values.text[index]; }, field);
}

int Description::number(Field field) {
    int value = 0;
    parse(text(field), &value);
    return value;
}

bool Description::flag(Field field) {
    return text(field) == "true";
}

std::vector<std::string> Description::list(Field field) {
    std::vector<std::string> entries;
    std::istringstream stream(text(field));
    std::string entry;
    while (std::getline(stream, entry, ';')) {
        if (!entry.empty()) {
            entries.push_back(entry);
        }
    }
    return entries;
}

bool Description::isGiven(Field field) {
    return ask<bool>([](const Values& values, std::size_t index) { return values.given[index]; },
                     field);
}

bool Description::find(const std::string& group, const std::string& key, Field* field) {
    for (const FieldRow& fieldRow : kFields) {
        if (group == fieldRow.group && key == fieldRow.key) {
            *field = fieldRow.field;
            return true;
        }
    }
    return false;
}

std::string Description::write(Field field, const std::string& value) {
    const FieldRow& fieldRow = row(field);
    const std::string wanted = complaint(fieldRow, value);
    if (!wanted.empty()) {
        return std::string(fieldRow.group) + " " + fieldRow.key + " has to be " + wanted;
    }
    std::string failure;
    changeKeyFile(
        SetFolder::description(), BrokenFile::Keep,
        [&](GKeyFile* file) {
            g_key_file_set_string(file, fieldRow.group, fieldRow.key, value.c_str());
        },
        &failure);
    return failure;
}

void Description::reload() {
    Cache& kept = cache();
    const std::lock_guard<std::mutex> lock(kept.guard);
    kept.stale = true;
}

}  // namespace Host
