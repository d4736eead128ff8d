// SPDX-License-Identifier: Apache-2.0
// What the command line asks for.
#pragma once

#include <string>
#include <vector>

#include "look/Mode.h"

namespace look {

// One scene in one mode, to be looked at by one worker.
struct Item {
    std::size_t scene = 0;
    Mode mode;
};

// What to break on purpose, where no theme can.
enum class Spoil {
    Nothing,
    Arrows,  // which lead nowhere
    Circle,  // which a key stops
    Worker,  // which dies
};

struct Options {
    // Throws std::invalid_argument when an option is wrong.
    Options(int argc, char** argv);

    // All that is to be looked at, in order. SHIPPED are the languages of the catalogues.
    std::vector<Item> items(const std::vector<std::string>& shipped) const;
    static std::string usage();

    bool help = false;
    bool namesOnly = false;  // of the scenes
    std::string themeFolder;
    std::string catalogues;
    std::string pictures;  // folder, or empty
    std::string report;    // file, or empty
    std::size_t jobs = 0;  // 0: one for each core
    Spoil spoil = Spoil::Nothing;
    bool states = true;  // every state of the focus, or the opening one alone

  private:
    struct Size {
        int width, height;
    };
    struct Look {
        bool contrast, enlarged;
    };

    std::vector<std::string> languagesOf(const std::vector<std::string>& shipped) const;
    std::vector<std::size_t> chosenScenes() const;
    void set(const std::string& option, const std::string& value);
    void setSizes(const std::string& list);
    void setDirections(const std::string& list);
    void setModes(const std::string& list);
    void setShare(const std::string& share);

    std::vector<Size> m_sizes = {{1920, 1080}};
    std::vector<std::string> m_languages = {"en"};
    std::vector<Direction> m_directions = {Direction::OfLanguage};
    std::vector<Look> m_looks = {{false, false}};
    std::vector<std::string> m_scenes = {"all"};
    std::size_t m_part = 1;
    std::size_t m_parts = 1;
};

}  // namespace look
