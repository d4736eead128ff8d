// SPDX-License-Identifier: Apache-2.0
// The settings of a set under which a screen is drawn.
#pragma once

#include <string>

namespace look {

enum class Direction { OF_LANGUAGE, LEFT_TO_RIGHT, RIGHT_TO_LEFT };

// One combination of settings.
struct Mode {
    int width = 1920;
    int height = 1080;
    std::string language = "en";
    Direction direction = Direction::OF_LANGUAGE;
    bool contrast = false;
    bool enlarged = false;

    // The toolkit's scale on a screen of this size.
    double scale() const;
    // Pixels of a 1920x1080 screen as pixels of this one, not cut to whole ones.
    double pixels(double at1080) const { return at1080 * scale(); }
    bool mirrored() const;
    // Such as "1920x1080-ar-rtl-contrast-enlarged"; fit for a file's name.
    std::string name() const;
    // Makes the toolkit, the set and the catalogues follow this mode. CATALOGUES holds the folder
    // of each language; screens made from now on have it.
    void apply(const std::string& catalogues) const;
    // Makes the catalogues alone follow it.
    void useLanguage(const std::string& catalogues) const;
};

}  // namespace look
