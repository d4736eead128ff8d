// SPDX-License-Identifier: Apache-2.0
// The font of a text, the room that it needs and how it takes the room that it has.
#pragma once

#include <string>

#include <Elementary.h>

#include "look/Box.h"
#include "look/Words.h"

namespace look {

// What a text is for.
enum class Role { TITLE, CONTROL, BODY, SECONDARY };

// How a text takes the room that it has.
enum class Fit { FITS, WRAPS, ELLIPSIS, CUT };

const char* wordOf(Fit fit);

struct Text {
    Evas_Object* object = nullptr;
    std::string words;  // as a person reads them
    Kind kind = Kind::UNKNOWN;
    Role role = Role::BODY;
    std::string part;  // of the group that draws it; empty if unknown
    std::string font;
    double size = 0.0;  // pixels
    Box box;
    Box clip;               // what of it may show at most
    Box natural;            // the room that it would take, from its corner on
    bool ellipsis = false;  // whether one is drawn
    int lines = 1;
    bool turned = false;             // a map places it, so that clips do not tell
    Evas_Object* control = nullptr;  // the control or the row that it names
    Evas_Object* scroller = nullptr;
    Box ink;
    Fit fit = Fit::FITS;
};

// Fills in font, size, lines, ellipsis and natural size of TEXT, whose object and box are set: of a
// text object and of a textblock.
void measureLine(Text& text);
void measureBlock(Text& text);
// How TEXT takes its room, once its ink is known. May depend on how far its scroller has gone.
Fit fitOf(const Text& text);

}  // namespace look
