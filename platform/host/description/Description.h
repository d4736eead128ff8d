// SPDX-License-Identifier: Apache-2.0
// The description of the running set: one key file with a default for every value.
#pragma once

#include <string>
#include <vector>

#include "host/description/DescriptionFile.h"
#include "host/description/Fields.h"

namespace host {

// Follows the file: a value is never older than the file at the time of the call. Any thread may
// call it. A broken file leaves the values as they were, a bad value counts as absent; both are
// logged once for each version of the file.
class Description {
  public:
    Description() = delete;

    // All values of one version of the file.
    static DescriptionValues values();

    static std::string text(Field field);
    static int number(Field field);
    static bool flag(Field field);
    // The entries of a list, which are separated by ";".
    static std::vector<std::string> list(Field field);

    // True when the file itself holds a good value.
    static bool isGiven(Field field);

    // Rewrites the file with a new value. Throws as writeDescription does.
    static void write(Field field, const std::string& value);

    // Reads the file again even if it looks unchanged.
    static void reload();
};

}  // namespace host
