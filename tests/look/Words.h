// SPDX-License-Identifier: Apache-2.0
// The words of texts: without markup, and whether they are the program's own.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "look/Scene.h"

namespace look {

// Whose words a text holds.
enum class Kind {
    TRANSLATION,  // one of the catalogues' texts, alone or composed
    NAME,         // given by others: of a shop or a level
    CODE,         // to be read character by character
    PUNCTUATION,  // blanks and colons between others
    UNKNOWN,      // none of these: nothing of the kind should be on a screen
};

const char* wordOf(Kind kind);

// The translations in the language of the moment.
class Vocabulary {
  public:
    // IDS are those of the catalogues.
    explicit Vocabulary(const std::vector<std::string>& ids);
    // Whether TEXT, without markup, is a translation or composed of one.
    bool has(const std::string& text) const;

  private:
    std::set<std::string> m_texts;
};

bool startsWith(const std::string& text, const std::string& start);
// MARKUP as it is read on the screen.
std::string withoutMarkup(const std::string& markup);
// Without blanks at either end and without marks of direction.
std::string trimmed(std::string text);
// WORDS without blanks, colons and marks of direction at their ends: the same in either direction.
std::string coreOf(const std::string& words);
Kind kindOf(const std::string& words, const Scene& scene, const Vocabulary& vocabulary);

}  // namespace look
