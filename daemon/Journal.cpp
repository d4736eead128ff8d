// SPDX-License-Identifier: Apache-2.0
// The daemon's record of calls, replies and events, one line each.
#include "daemon/Journal.h"

#include <sstream>
#include <stdexcept>

#include <glib.h>

namespace standin {
namespace {

std::string now() {
    GDateTime* time = g_date_time_new_now_utc();
    gchar* seconds = g_date_time_format(time, "%Y-%m-%dT%H:%M:%S");
    gchar* text = g_strdup_printf("%s.%03dZ", seconds, g_date_time_get_microsecond(time) / 1000);
    std::string result = text;
    g_free(text);
    g_free(seconds);
    g_date_time_unref(time);
    return result;
}

// The method is the third word of a line whose second is "call".
std::map<std::string, int> countCalls(const std::string& path) {
    std::map<std::string, int> calls;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string time;
        std::string kind;
        std::string method;
        words >> time >> kind >> method;
        if (kind == "call") {
            ++calls[method];
        }
    }
    return calls;
}

}  // namespace

Journal::Journal(const std::string& path)
    : m_file(path, std::ios::app | std::ios::binary), m_calls(countCalls(path)) {
    if (!m_file.is_open()) {
        throw std::runtime_error("cannot write the journal " + path);
    }
}

int Journal::calls(const std::string& method) const {
    const auto found = m_calls.find(method);
    return found != m_calls.end() ? found->second : 0;
}

void Journal::write(const std::string& kind, const std::string& text) {
    if (kind == "call") {
        ++m_calls[text.substr(0, text.find(' '))];
    }
    m_file << now() << ' ' << kind << (text.empty() ? "" : " ") << onOneLine(text) << '\n'
           << std::flush;
}

std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char character : text) {
        switch (character) {
            case '\\':
                line += "\\\\";
                break;
            case '\n':
                line += "\\n";
                break;
            case '\r':
                line += "\\r";
                break;
            default:
                line += character;
        }
    }
    return line;
}

}  // namespace standin
