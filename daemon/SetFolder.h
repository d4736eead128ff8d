// SPDX-License-Identifier: Apache-2.0
// Where the daemon finds and keeps the files of one set.
#pragma once

#include <string>

namespace standin {

// All paths are absolute.
struct SetFolder {
    std::string folder;
    std::string registrationFile;  // the set is registered when it exists
    std::string documentFile;      // the registered document, next to the registration file
    std::string documentCopy;      // the same in the set's data folder; may be the same file
    std::string journalFile;
    std::string scenarioFile;  // empty: the ordinary behaviour
};

// Reads FOLDER/config.xml. SCENARIO may be empty. Throws UsageError when a required file is missing
// or broken.
SetFolder openSetFolder(const std::string& folder, const std::string& scenario);

// PATH, or BASE/PATH where PATH is relative.
std::string absolutePath(const std::string& path, const std::string& base);

}  // namespace standin
