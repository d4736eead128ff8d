// SPDX-License-Identifier: Apache-2.0
// The font of a text, the room that it needs and how it takes the room that it has.
#include "look/TextMeasure.h"

#include <cstdlib>
#include <cstring>

#include "look/Geometry.h"

namespace look {

namespace {

// The last value of KEY in a style, such as "font_size"; what stands in quotes inside is left out.
std::string styleValue(const std::string& style, const std::string& key) {
    std::string value;
    const std::string sought = " " + key + "=";
    const std::string padded = " " + style;
    for (auto at = padded.find(sought); at != std::string::npos; at = padded.find(sought, at + 1)) {
        const auto start = at + sought.size();
        value = padded.substr(start, padded.find_first_of(" '", start) - start);
    }
    return value;
}

// The default format of a textblock, with what the widget has laid over it.
std::string formatOf(const Evas_Object* block) {
    std::string format;
    const Evas_Textblock_Style* styles[] = {evas_object_textblock_style_get(block),
                                            evas_object_textblock_style_user_peek(block)};
    for (const Evas_Textblock_Style* style : styles) {
        const char* text = style != nullptr ? evas_textblock_style_get(style) : nullptr;
        const char* start = text != nullptr ? std::strstr(text, "DEFAULT='") : nullptr;
        if (start != nullptr) {
            start += std::strlen("DEFAULT='");
            const char* end = std::strchr(start, '\'');
            format += std::string(" ") + std::string(start, end != nullptr ? end - start : 0);
        }
    }
    return format;
}

int linesOf(const Evas_Object* block) {
    int lines = 0;
    while (evas_object_textblock_line_number_geometry_get(block, lines, nullptr, nullptr, nullptr,
                                                          nullptr)) {
        ++lines;
    }
    return lines;
}

// The number that TEXT begins with, or OTHERWISE.
double numberIn(const std::string& text, double otherwise) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return end != text.c_str() ? number : otherwise;
}

bool scrollsFurther(Evas_Object* scroller, bool down) {
    int y = 0;
    int height = 0;
    int whole = 0;
    elm_scroller_region_get(scroller, nullptr, &y, nullptr, &height);
    elm_scroller_child_size_get(scroller, nullptr, &whole);
    return down ? y + height < whole : y > 0;
}

}  // namespace

const char* wordOf(Fit fit) {
    switch (fit) {
        case Fit::FITS:
            return "fits";
        case Fit::WRAPS:
            return "wraps";
        case Fit::ELLIPSIS:
            return "ellipsis";
        default:
            return "CUT";
    }
}

// Measures a block without its ellipsis, in the same width.
void measureBlock(Text& text) {
    const std::string format = formatOf(text.object);
    text.font = styleValue(format, "font");
    text.size = numberIn(styleValue(format, "font_size"), 0.0) * evas_object_scale_get(text.object);
    const std::string ellipsis = styleValue(format, "ellipsis");
    const bool mayEnd = numberIn(ellipsis, -1.0) >= 0.0;
    const Box plain = plainBoxOf(text.object);
    text.lines = linesOf(text.object);
    int width = 0;
    int height = 0;
    evas_object_textblock_size_formatted_get(text.object, &width, &height);

    Evas_Object* free = evas_object_textblock_add(evas_object_evas_get(text.object));
    Evas_Textblock_Style* style = evas_textblock_style_new();
    evas_textblock_style_set(
        style,
        ("DEFAULT='" + format + " ellipsis=-1.0' br='\n' b='+ font_weight=Bold' tab='\t'").c_str());
    evas_object_textblock_style_set(free, style);
    evas_object_scale_set(free, evas_object_scale_get(text.object));
    evas_object_textblock_text_markup_set(free, evas_object_textblock_text_markup_get(text.object));
    evas_object_resize(free, plain.width(), 100 * std::max(1, plain.height()));
    int freeWidth = 0;
    int freeHeight = 0;
    evas_object_textblock_size_formatted_get(free, &freeWidth, &freeHeight);
    const int freeLines = linesOf(free);
    evas_object_del(free);
    evas_textblock_style_free(style);

    text.ellipsis = mayEnd && (text.lines < freeLines || width + 2 < freeWidth);
    text.natural = {text.box.left, text.box.top, text.box.left + freeWidth,
                    text.box.top + freeHeight};
}

void measureLine(Text& text) {
    const char* font = nullptr;
    Evas_Font_Size size = 0;
    evas_object_text_font_get(text.object, &font, &size);
    text.font = font != nullptr ? font : "";
    text.size = size * evas_object_scale_get(text.object);

    Evas_Object* free = evas_object_text_add(evas_object_evas_get(text.object));
    evas_object_text_font_set(free, font, size);
    evas_object_scale_set(free, evas_object_scale_get(text.object));
    evas_object_text_text_set(free, evas_object_text_text_get(text.object));
    const Box natural = plainBoxOf(free);
    evas_object_del(free);
    const bool mayEnd = evas_object_text_ellipsis_get(text.object) >= 0.0;
    text.ellipsis = mayEnd && natural.width() > text.box.width() + 1;
    text.natural = {text.box.left, text.box.top, text.box.left + natural.width(),
                    text.box.top + natural.height()};
}

Fit fitOf(const Text& text) {
    if (!text.turned && !text.ink.empty()) {
        const bool above = text.natural.top < text.clip.top && text.ink.top <= text.clip.top;
        const bool below =
            text.natural.bottom > text.clip.bottom && text.ink.bottom >= text.clip.bottom;
        const bool aside = (text.box.left < text.clip.left && text.ink.left <= text.clip.left) ||
                           (std::max(text.natural.right, text.box.right) > text.clip.right &&
                            text.ink.right >= text.clip.right);
        const bool scrolls = text.scroller != nullptr;
        if (aside || (above && !(scrolls && scrollsFurther(text.scroller, false))) ||
            (below && !(scrolls && scrollsFurther(text.scroller, true)))) {
            return Fit::CUT;
        }
    }
    if (text.ellipsis) {
        return Fit::ELLIPSIS;
    }
    return text.lines > 1 ? Fit::WRAPS : Fit::FITS;
}

}  // namespace look
