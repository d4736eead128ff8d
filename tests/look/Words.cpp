// SPDX-License-Identifier: Apache-2.0
// The words of texts: without markup, and whether they are the program's own.
#include "look/Words.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include <libintl.h>

#include <Evas.h>

namespace look {

namespace {

constexpr char VERSION[] = "1.2.3";  // that of the configuration that the screens read

// Without a colon at either end.
std::string withoutColon(const std::string& text) {
    std::string rest = trimmed(text);
    if (!rest.empty() && rest.front() == ':') {
        rest = trimmed(rest.substr(1));
    }
    if (!rest.empty() && rest.back() == ':') {
        rest = trimmed(rest.substr(0, rest.size() - 1));
    }
    return rest;
}

std::string withoutEntities(std::string text) {
    const std::pair<const char*, const char*> entities[] = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
    for (const auto& [entity, letter] : entities) {
        for (auto at = text.find(entity); at != std::string::npos; at = text.find(entity, at + 1)) {
            text.replace(at, std::strlen(entity), letter);
        }
    }
    return text;
}

bool isName(const std::string& words, const Scene& scene) {
    constexpr std::size_t LEAST = 16;  // a row that cuts a name keeps more than that
    for (const std::string& name : scene.names) {
        for (const std::string& form :
             {trimmed(name), trimmed(withoutMarkup(name)), trimmed(withoutEntities(name))}) {
            if (words == form || (words.size() >= LEAST && startsWith(form, words))) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

const char* wordOf(Kind kind) {
    switch (kind) {
        case Kind::TRANSLATION:
            return "translation";
        case Kind::NAME:
            return "name";
        case Kind::CODE:
            return "code";
        case Kind::PUNCTUATION:
            return "mark";
        default:
            return "stranger";
    }
}

bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

std::string withoutMarkup(const std::string& markup) {
    char* plain = evas_textblock_text_markup_to_utf8(nullptr, markup.c_str());
    std::string text(plain != nullptr ? plain : "");
    std::free(plain);
    return text;
}

// Without blanks at either end and without marks of direction.
std::string trimmed(std::string text) {
    for (const char* mark : {"\xE2\x80\x8E", "\xE2\x80\x8F", "\xC2\xA0", "\xE2\x80\xA9"}) {
        for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
            text.replace(at, std::strlen(mark), std::strlen(mark) == 2 ? " " : "");
        }
    }
    const auto first = text.find_first_not_of(" \n\t");
    const auto last = text.find_last_not_of(" \n\t");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::string coreOf(const std::string& words) {
    return withoutColon(words);
}

Kind kindOf(const std::string& words, const Scene& scene, const Vocabulary& vocabulary) {
    const std::string core = withoutColon(words);
    if (core.empty()) {
        return Kind::PUNCTUATION;
    }
    for (const std::string& code : scene.codes) {
        if (core == code) {
            return Kind::CODE;
        }
    }
    if (vocabulary.has(trimmed(words)) || vocabulary.has(core)) {
        return Kind::TRANSLATION;
    }
    if (isName(trimmed(words), scene) || isName(core, scene)) {
        return Kind::NAME;
    }
    return Kind::UNKNOWN;
}

Vocabulary::Vocabulary(const std::vector<std::string>& ids) {
    for (const std::string& id : ids) {
        const std::string text = trimmed(withoutMarkup(dgettext("ZOLT", id.c_str())));
        m_texts.insert(text);
        m_texts.insert(text + " : " + VERSION);
        m_texts.insert(withoutColon(text));
    }
}

bool Vocabulary::has(const std::string& text) const {
    return m_texts.count(text) != 0;
}

}  // namespace look
