// SPDX-License-Identifier: Apache-2.0
// Parses and rewrites a description file.
#include "host/description/DescriptionFile.h"

#include <memory>
#include <stdexcept>

#include "host/base/KeyFile.h"

namespace host {

namespace {

std::string inFull(FieldName name) {
    return std::string("[") + name.group + "] " + name.key;
}

void readField(Field field, GKeyFile* file, DescriptionValues* values) {
    const FieldName name = nameOf(field);
    GError* error = nullptr;
    const std::unique_ptr<gchar, decltype(&g_free)> given(
        g_key_file_get_string(file, name.group, name.key, &error), &g_free);
    if (!given) {
        const bool isAbsent =
            g_error_matches(error, G_KEY_FILE_ERROR, G_KEY_FILE_ERROR_KEY_NOT_FOUND) != FALSE ||
            g_error_matches(error, G_KEY_FILE_ERROR, G_KEY_FILE_ERROR_GROUP_NOT_FOUND) != FALSE;
        if (!isAbsent) {
            values->remarks.push_back(inFull(name) + " is not UTF-8; its default is used");
        }
        g_clear_error(&error);
        return;
    }
    const std::string rule = unmetRule(field, given.get());
    if (!rule.empty()) {
        values->remarks.push_back(inFull(name) + "=" + given.get() + " is not " + rule + "; " +
                                  fallbackOf(field) + " is used");
        return;
    }
    values->texts[static_cast<std::size_t>(field)] = given.get();
    values->given[static_cast<std::size_t>(field)] = true;
}

struct StringsRelease {
    void operator()(gchar** strings) const { g_strfreev(strings); }
};
using Strings = std::unique_ptr<gchar*, StringsRelease>;

void remarkUnknown(GKeyFile* file, DescriptionValues* values) {
    const Strings groups(g_key_file_get_groups(file, nullptr));
    for (gchar** group = groups.get(); *group != nullptr; ++group) {
        const Strings keys(g_key_file_get_keys(file, *group, nullptr, nullptr));
        for (gchar** key = keys.get(); key != nullptr && *key != nullptr; ++key) {
            if (!findField(*group, *key)) {
                values->remarks.push_back(inFull({*group, *key}) + " is an unknown key, ignored");
            }
        }
    }
}

}  // namespace

DescriptionValues::DescriptionValues() {
    for (std::size_t index = 0; index < FIELD_COUNT; ++index) {
        texts[index] = fallbackOf(static_cast<Field>(index));
    }
}

DescriptionValues readDescription(const std::string& path) {
    const KeyFilePtr file = readKeyFile(path);
    DescriptionValues values;
    for (std::size_t index = 0; index < FIELD_COUNT; ++index) {
        readField(static_cast<Field>(index), file.get(), &values);
    }
    remarkUnknown(file.get(), &values);
    return values;
}

void writeDescription(const std::string& path, Field field, const std::string& value) {
    const FieldName name = nameOf(field);
    const std::string rule = unmetRule(field, value);
    if (!rule.empty()) {
        throw std::runtime_error(std::string(name.group) + " " + name.key + " has to be " + rule);
    }
    changeKeyFile(path, BrokenFile::KEEP, [&](GKeyFile* file) {
        g_key_file_set_string(file, name.group, name.key, value.c_str());
    });
}

}  // namespace host
