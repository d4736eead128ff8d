// SPDX-License-Identifier: Apache-2.0
// The folder in which one virtual set lives.
#pragma once

#include <string>

namespace host {

// Any thread may call it.
class SetFolder {
  public:
    SetFolder() = delete;

    // VIRTUAL_SET_DIR, or the working directory at the first call. Absolute.
    static std::string path();

    // NAME in the set's folder, or NAME itself when it is absolute.
    static std::string file(const std::string& name);

    // The file that describes the set: VIRTUAL_SET_FILE, or set.ini.
    static std::string description();

    // The file with the values that programs have written.
    static std::string keptValues();

    // The value of an environment variable, or FALLBACK when it is absent or empty.
    static std::string variable(const char* name, const std::string& fallback);
};

}  // namespace host
