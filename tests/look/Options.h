// SPDX-License-Identifier: Apache-2.0
// The options of the command line.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "look/Mode.h"

namespace look {

// One scene in one mode.
struct Item {
    std::size_t scene = 0;
    Mode mode;
    std::string from;  // the language before a live change to that of the mode; empty: no change
};

// What to break on purpose that no change of the theme can break.
enum class Defect {
    NONE,
    ARROWS,   // the arrow keys do not move the focus
    SPINNER,  // a key stops it
};

struct Options {
    // Throws std::invalid_argument when an option is wrong.
    Options(int argc, char** argv);

    // The work in its order. SHIPPED are the languages of the catalogues.
    std::vector<Item> items(const std::vector<std::string>& shipped) const;
    static std::string usage();

    bool help = false;
    bool namesOnly = false;  // of the scenes
    std::string themeFolder;
    std::string catalogues;
    std::string pictures;  // folder, or empty
    std::string report;    // file, or empty
    Defect defect = Defect::NONE;
    bool states = true;  // every state of the focus, or the opening one alone

  private:
    struct Size {
        int width, height;
    };
    struct Look {
        bool contrast, enlarged;
    };

    std::vector<std::string> languagesOf(const std::vector<std::string>& shipped) const;
    std::vector<Item> liveChanges() const;
    std::vector<std::size_t> chosenScenes() const;
    void set(const std::string& option, const std::string& value);
    void setSizes(const std::string& list);
    void setDirections(const std::string& list);
    void setModes(const std::string& list);
    void setShare(const std::string& share);
    void setLive(const std::string& which);

    std::vector<Size> m_sizes = {{1920, 1080}};
    std::vector<std::string> m_languages = {"en"};
    std::vector<Direction> m_directions = {Direction::OF_LANGUAGE};
    std::vector<Look> m_looks = {{false, false}};
    std::vector<std::string> m_scenes = {"all"};
    std::vector<std::pair<std::string, std::string>> m_changes;  // live, from and to a language
    bool m_liveOnly = false;
    std::size_t m_part = 1;
    std::size_t m_parts = 1;
};

}  // namespace look
