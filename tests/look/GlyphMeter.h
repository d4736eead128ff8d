// SPDX-License-Identifier: Apache-2.0
// A small canvas beside the screens, on which letters are drawn to be measured.
#pragma once

#include <map>
#include <string>
#include <utility>

#include <Ecore_Evas.h>
#include <Evas.h>

#include "look/Frame.h"

namespace look {

// Main loop thread only.
class GlyphMeter {
  public:
    GlyphMeter();
    ~GlyphMeter();
    GlyphMeter(const GlyphMeter&) = delete;
    GlyphMeter& operator=(const GlyphMeter&) = delete;

    // The height of a capital letter as a share of the size of FONT.
    double capitalHeight(const std::string& font);
    // Whether FONT, or another font in its place, draws LETTER, which follows BEFORE, as more than
    // the box for a missing one. A sign that goes on top of another is drawn with that one.
    bool draws(const std::string& font, Eina_Unicode before, Eina_Unicode letter);
    // How wide TEXT is on one line in FONT, in pixels of size 40.
    int widthOf(const std::string& font, const std::string& text);

  private:
    Frame drawn(const std::string& font, const std::string& text);

    Ecore_Evas* m_canvas;       // deleted by the destructor
    Evas_Object* m_text;        // deleted with the board
    Evas_Object* m_background;  // deleted with the board
    std::map<std::string, double> m_capitals;
    std::map<std::pair<std::string, std::string>, bool> m_letters;  // by font and letters
};

}  // namespace look
