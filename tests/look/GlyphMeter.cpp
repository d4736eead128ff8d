// SPDX-License-Identifier: Apache-2.0
// A small canvas beside the screens, on which letters are drawn to be measured.
#include "look/GlyphMeter.h"

#include <cstdlib>

#include <Eina.h>
#include <glib.h>

namespace look {

namespace {

constexpr int CANVAS_SIZE = 128;            // pixels on each side
constexpr int LETTER = 64;                  // size of a letter to be recognised
constexpr int MEASURE = 40;                 // size of a text to be measured
constexpr Eina_Unicode NO_LETTER = 0xFFFF;  // never a letter, in any font

std::string encoded(Eina_Unicode letter) {
    int length = 0;
    char* text = eina_unicode_unicode_to_utf8_range(&letter, 1, &length);
    std::string result(text != nullptr ? text : "");
    std::free(text);
    return result;
}

}  // namespace

GlyphMeter::GlyphMeter() : m_canvas(ecore_evas_buffer_new(CANVAS_SIZE, CANVAS_SIZE)) {
    ecore_evas_manual_render_set(m_canvas, EINA_TRUE);
    Evas* canvas = ecore_evas_get(m_canvas);
    m_background = evas_object_rectangle_add(canvas);
    evas_object_color_set(m_background, 0, 0, 0, 255);
    evas_object_resize(m_background, CANVAS_SIZE, CANVAS_SIZE);
    evas_object_show(m_background);
    m_text = evas_object_text_add(canvas);
    evas_object_color_set(m_text, 255, 255, 255, 255);
    evas_object_move(m_text, 8, 0);
    evas_object_show(m_text);
    ecore_evas_show(m_canvas);
}

GlyphMeter::~GlyphMeter() {
    ecore_evas_free(m_canvas);
}

Frame GlyphMeter::drawn(const std::string& font, const std::string& text) {
    evas_object_text_font_set(m_text, font.c_str(), LETTER);
    evas_object_text_text_set(m_text, text.c_str());
    ecore_evas_manual_render(m_canvas);
    return {CANVAS_SIZE, CANVAS_SIZE, ecore_evas_buffer_pixels_get(m_canvas)};
}

double GlyphMeter::capitalHeight(const std::string& font) {
    const auto known = m_capitals.find(font);
    if (known != m_capitals.end()) {
        return known->second;
    }
    const Frame blank = drawn(font, "").copy();
    const Box ink = drawn(font, "H").differenceTo(blank);
    return m_capitals[font] = static_cast<double>(ink.height()) / LETTER;
}

bool GlyphMeter::draws(const std::string& font, Eina_Unicode before, Eina_Unicode letter) {
    const std::string base = g_unichar_ismark(letter) != FALSE ? encoded(before) : "";
    const std::string letters = base + encoded(letter);
    const auto known = m_letters.find({font, letters});
    if (known != m_letters.end()) {
        return known->second;
    }
    const Frame missing = drawn(font, base + encoded(NO_LETTER)).copy();
    const Frame blank = drawn(font, "").copy();
    const Frame real = drawn(font, letters);
    const bool looksMissing =
        real.differenceTo(missing).empty() && !missing.differenceTo(blank).empty();
    return m_letters[{font, letters}] = !looksMissing;
}

int GlyphMeter::widthOf(const std::string& font, const std::string& text) {
    evas_object_text_font_set(m_text, font.c_str(), MEASURE);
    evas_object_text_text_set(m_text, text.c_str());
    int width = 0;
    evas_object_geometry_get(m_text, nullptr, nullptr, &width, nullptr);
    return width;
}

}  // namespace look
