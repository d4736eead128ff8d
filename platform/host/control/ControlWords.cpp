// SPDX-License-Identifier: Apache-2.0
// Escapes, joins and splits the words of a control request.
#include "host/control/ControlWords.h"

#include <algorithm>
#include <memory>
#include <string>

#include <glib.h>

namespace host {

namespace {

std::string takeText(gchar* text) {
    const std::unique_ptr<gchar, decltype(&g_free)> owner(text, &g_free);
    return owner.get();
}

}  // namespace

std::string escapeWord(const std::string& word) {
    return takeText(g_strescape(word.c_str(), nullptr));
}

std::string unescapeWord(const std::string& word) {
    return takeText(g_strcompress(word.c_str()));
}

std::string joinWords(const std::vector<std::string>& words) {
    std::string line;
    for (std::size_t index = 0; index < words.size(); ++index) {
        line += (index == 0 ? "" : "\t") + escapeWord(words[index]);
    }
    return line;
}

std::vector<std::string> splitWords(const std::string& line) {
    std::vector<std::string> words;
    std::size_t start = 0;
    while (start <= line.size()) {
        const std::size_t end = std::min(line.find('\t', start), line.size());
        words.push_back(unescapeWord(line.substr(start, end - start)));
        start = end + 1;
    }
    return words;
}

}  // namespace host
