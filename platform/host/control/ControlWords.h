// SPDX-License-Identifier: Apache-2.0
// Puts the words of a control request on one line.
#pragma once

#include <string>
#include <vector>

namespace host {

std::string escapeWord(const std::string& word);
std::string unescapeWord(const std::string& word);

// Escaped words, separated by tabs.
std::string joinWords(const std::vector<std::string>& words);
std::vector<std::string> splitWords(const std::string& line);

}  // namespace host
