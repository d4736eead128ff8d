// SPDX-License-Identifier: Apache-2.0
// Where one virtual set keeps its files.
#include "host/base/SetFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

std::string SetFolder::variable(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : fallback;
}

std::string SetFolder::path() {
    // Read at the first call: a program that changes its directory later stays with its set. Never
    // destroyed: static destructors and threads of the toolkit may still log when the process ends.
    static const auto* const START = [] {
        std::error_code failure;
        const fs::path here = fs::current_path(failure);
        return new std::string(failure ? "/" : here.string());
    }();
    return (fs::path(*START) / variable("VIRTUAL_SET_DIR", *START)).lexically_normal().string();
}

std::string SetFolder::file(const std::string& name) {
    return (fs::path(path()) / name).lexically_normal().string();
}

std::string SetFolder::description() {
    return file(variable("VIRTUAL_SET_FILE", "set.ini"));
}

std::string SetFolder::keptValues() {
    return file("vconf.ini");
}

}  // namespace host
