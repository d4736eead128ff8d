// SPDX-License-Identifier: Apache-2.0
// Reads a description file and changes one value of it.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/description/Fields.h"

namespace host {

struct DescriptionValues {
    DescriptionValues();  // every value is its default

    const std::string& text(Field field) const { return texts[static_cast<std::size_t>(field)]; }

    std::array<std::string, FIELD_COUNT> texts;
    std::array<bool, FIELD_COUNT> given{};  // the file itself holds a good value
    std::vector<std::string> remarks;       // bad values and unknown keys, a sentence each
};

// An absent file gives the defaults. A bad value or an unknown key is a remark and counts as
// absent. Throws std::runtime_error when the file cannot be read or parsed.
DescriptionValues readDescription(const std::string& path);

// Writes VALUE into the file and keeps the rest of it. Throws std::runtime_error when FIELD cannot
// have that value or the file cannot be changed.
void writeDescription(const std::string& path, Field field, const std::string& value);

}  // namespace host
