// SPDX-License-Identifier: Apache-2.0
// The daemon's record of calls, replies and events, one line each.
#pragma once

#include <fstream>
#include <map>
#include <string>

namespace standin {

// Appends lines of the form "TIME KIND TEXT" to a file and flushes each, so that a reader sees a
// line before the message that it records is on the bus. TIME is UTC with milliseconds.
class Journal {
  public:
    // Throws std::runtime_error when the file cannot be opened.
    explicit Journal(const std::string& path);

    // The number of calls of METHOD in the file, including calls to earlier processes.
    int calls(const std::string& method) const;

    void write(const std::string& kind, const std::string& text = "");

  private:
    std::ofstream m_file;
    std::map<std::string, int> m_calls;
};

// TEXT on one line: a backslash and the ends of lines become "\\", "\n" and "\r".
std::string onOneLine(const std::string& text);

}  // namespace standin
