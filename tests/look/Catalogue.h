// SPDX-License-Identifier: Apache-2.0
// Reads compiled message catalogues and writes made-up ones.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "look/GlyphMeter.h"

namespace look {

// Texts by their id; the entry of the empty id, which is about the file, is left out.
using Messages = std::map<std::string, std::string>;

class Catalogue {
  public:
    Catalogue() = delete;

    // The languages that FOLDER has a catalogue of, in order.
    static std::vector<std::string> languagesIn(const std::string& folder);
    // Throws std::runtime_error when there is none or it is damaged.
    static Messages read(const std::string& folder, const std::string& language);

    // The languages that makeUp makes.
    static const std::vector<std::string>& madeUp();
    // The made-up language that lacks two texts.
    static const char* lacking() { return "missing"; }
    // Writes the made-up languages into FOLDER: "longest" has the widest translation of
    // all in CATALOGUES, "grown" is English as long as it may become elsewhere, and of "missing"
    // two texts are gone. The fonts to measure with are those of GLYPHS.
    static void makeUp(const std::string& folder, const std::string& catalogues,
                       GlyphMeter& glyphs);
    // TEXT as long as a translation may become, in letters that can still be read.
    static std::string grown(const std::string& text);
};

}  // namespace look
