// SPDX-License-Identifier: Apache-2.0
// File operations that answer with a bool and never throw.
#include "common/File.h"

#include <cstdio>
#include <fstream>
#include <utility>

#include "common/Logger.h"

namespace ZOLT {

namespace {

bool canBeRead(const std::string& path) {
    return std::ifstream(path).is_open();
}

}  // namespace

File::File(std::string path) : m_path(std::move(path)) {}

bool File::remove() {
    ZOLT_TRACE();
    return std::remove(m_path.c_str()) == 0;
}

bool File::save(std::string data) {
    ZOLT_TRACE();
    std::ofstream stream(m_path, std::ios::out | std::ios::trunc);
    if (!stream.is_open()) {
        ZOLT_WARN("Cannot open file, path is: %s", m_path.c_str());
        return false;
    }
    stream << data;
    if (stream.fail()) {
        ZOLT_WARN("Cannot save data to file, data is: %s", data.c_str());
        return false;
    }
    return true;
}

bool File::exists() {
    ZOLT_TRACE();
    return canBeRead(m_path);
}

std::string File::getPath() {
    return m_path;
}

bool File::exists(std::string path) {
    ZOLT_TRACE();
    return canBeRead(path);
}

}  // namespace ZOLT
