// SPDX-License-Identifier: Apache-2.0
// Checks one picture of a screen: fit, words, sizes and order of its texts.
#include "look/Checker.h"

#include <cstdio>
#include <regex>

#include "look/Catalogue.h"
#include "look/CheckerWords.h"

namespace look {

namespace {

bool isRead(const Text& text) {
    return text.role != Role::SECONDARY && text.kind != Kind::PUNCTUATION;
}

std::string keyOf(const Text& text) {
    return text.part + "/" + coreOf(text.words);
}

}  // namespace

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.2f", value);
    return text;
}

std::string described(const Text& text) {
    constexpr std::size_t MOST = 60;
    return std::string(wordOf(text.kind)) + " \"" + text.words.substr(0, MOST) +
           (text.words.size() > MOST ? "…" : "") + "\" at " + text.box.words();
}

Sizes sizesOf(const Inventory& inventory) {
    Sizes sizes;
    for (const Text& text : inventory.texts) {
        sizes[keyOf(text)] = text.size;
    }
    return sizes;
}

Checker::Checker(ScreenHarness& harness, GlyphMeter& glyphs, Report& report, const Sizes* ordinary)
    : m_harness(harness), m_glyphs(glyphs), m_report(report), m_ordinary(ordinary) {}

bool Checker::check(const std::string& name, bool good, const std::string& detail) {
    m_report.check(name, good, detail);
    return good;
}

void Checker::look(Inventory& inventory, const Frame& picture) {
    m_report.countPicture();
    checkContrastMode(picture);
    findInk(inventory, picture);
    for (Text& text : inventory.texts) {
        checkFit(text);
        checkWords(text);
        checkSize(text);
        checkOrder(text);
    }
    checkPlaces(inventory);
    checkOverlap(inventory);
    checkEdges(inventory, picture);
    for (const Control& control : inventory.controls) {
        if (!control.active) {
            m_outOfReach.insert(control.object);
        }
        check("focus",
              control.object != m_harness.focused() || m_outOfReach.count(control.object) == 0,
              control.type + " at " + control.box.words() + " looked out of reach and is not");
    }
}

void Checker::checkFit(Text& text) {
    text.fit = fitOf(text);
    m_report.countText(wordOf(text.kind), wordOf(text.fit));
    const bool mayEnd = text.kind == Kind::NAME;
    check("clipped", text.fit != Fit::CUT && (mayEnd || text.fit != Fit::ELLIPSIS),
          described(text) + ": " + wordOf(text.fit) + ", asks for " + text.natural.words() +
              ", may show in " + text.clip.words() + ", ink " + text.ink.words());
    if (mayEnd && text.fit != Fit::FITS) {
        m_report.note(described(text) + ": " + wordOf(text.fit));
    }
}

void Checker::checkWords(const Text& text) {
    static const std::regex id("(TV_|COM_|SID_)[A-Z0-9_]{3,}|ZOLT_CONTENT_SPACER");
    check("ids", text.kind != Kind::UNKNOWN,
          described(text) + ": neither a translation nor a name");
    if (text.kind == Kind::NAME) {
        return;
    }
    // Where a catalogue lacks a text its id is shown. In the language that lacks two on purpose
    // that is only noted.
    const bool hasId = std::regex_search(text.words, id);
    if (m_harness.mode().language == Catalogue::lacking()) {
        m_report.note(described(text) + (hasId ? ": an id, " : ": a text, ") + wordOf(text.fit));
    } else {
        check("ids", !hasId, described(text) + ": an id");
    }
    for (const char* rest : {"<br", "&amp;", "&lt;", "%s", "\xEF\xBF\xBD"}) {
        check("ids", text.words.find(rest) == std::string::npos, described(text) + ": has " + rest);
    }
    int place = 0;
    Eina_Unicode before = 0;
    while (const Eina_Unicode letter = eina_unicode_utf8_next_get(text.words.c_str(), &place)) {
        if (letter > ' ') {
            check("ids", m_glyphs.draws(text.font, before, letter),
                  described(text) + ": no font has letter " + std::to_string(letter));
        }
        before = letter;
    }
}

void Checker::checkSize(const Text& text) {
    const double at1080 = text.size / m_harness.mode().scale();
    const double factor = m_harness.mode().enlarged ? 1.2 : 1.0;
    const double least = text.role == Role::TITLE         ? 48.0
                         : text.role == Role::SECONDARY   ? 26.0
                         : text.kind == Kind::PUNCTUATION ? 24.0
                                                          : 30.0;
    check("size", at1080 >= least * factor - 0.2,
          described(text) + ": " + number(at1080) + " px at 1080 lines, expected " +
              number(least * factor));
    if (m_ordinary == nullptr) {
        return;
    }
    const auto ordinary = m_ordinary->find(keyOf(text));
    if (ordinary != m_ordinary->end()) {
        check("size", text.size >= ordinary->second * 1.19,
              described(text) + ": enlarged to " + number(text.size) + " from " +
                  number(ordinary->second));
    }
    if (isRead(text)) {
        const double capital = at1080 * m_glyphs.capitalHeight(text.font);
        check("size", capital >= 38.0 - 0.2,
              described(text) + ": capitals of " + number(capital) +
                  " px at 1080 lines, expected 38");
    }
}

// A code is read from left to right, whatever stands around it.
void Checker::checkOrder(const Text& text) {
    if (text.kind != Kind::CODE || std::string(evas_object_type_get(text.object)) != "textblock") {
        return;
    }
    Evas_Textblock_Cursor* cursor = evas_object_textblock_cursor_new(text.object);
    int last = -1;
    bool ordered = true;
    for (int place = 0; place < eina_unicode_utf8_get_len(text.words.c_str()); ++place) {
        int x = 0;
        evas_textblock_cursor_pos_set(cursor, place);
        evas_textblock_cursor_char_geometry_get(cursor, &x, nullptr, nullptr, nullptr);
        ordered = ordered && x > last;
        last = x;
    }
    evas_textblock_cursor_free(cursor);
    check("mirror", ordered, described(text) + ": its characters are not in order");
}

}  // namespace look
