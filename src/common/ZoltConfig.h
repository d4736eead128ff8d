// SPDX-License-Identifier: Apache-2.0
// The program's settings: one flat table of texts, read once from an XML file.
#pragma once

#include <map>
#include <string>

// Written at start, before any other thread, and only read after that. No key has a default: the
// getters throw std::out_of_range "map::at" for an absent one.
class ZoltConfig {
  public:
    ZoltConfig() = delete;

    // Names the file to read. Ignored, with a warning, once the table holds anything.
    static void initialize(std::string path);

    static void load();

    // Adds every child element of the file's root to the table: attribute "name" is the key, the
    // text content its value. Throws ZOLT::Exception if the file cannot be parsed, and
    // std::logic_error at an element without a name; what was read before that stays.
    static void loadConfiguration();

    static std::string get(std::string key);

    // The number that the value begins with, in base 10. Throw as std::stoi and std::stoull do.
    static int getInt(std::string key);
    static unsigned long long getUll(std::string key);

    // Whether the value equals EXPECTED exactly.
    static bool is(std::string key, std::string expected);

    // Forgets table and path.
    static void deinitialize();

  private:
    static std::map<std::string, std::string> m_storage;
    static std::string m_configFilePath;
};
