// SPDX-License-Identifier: Apache-2.0
// The options of the command line.
#include "look/Options.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>

#include "look/Catalogue.h"
#include "look/Scene.h"

namespace look {

namespace {

// A few that strain a layout in different ways: long words, no blanks, tall letters, from the
// right.
const std::vector<std::string> SAMPLE = {"en", "ar", "de", "ko", "ru", "th", "hi", "vi"};

// Languages between which a screen changes while it is shown: Latin letters, two that are written
// from the right, Korean and Japanese, an Indic script. Arabic and Persian stand side by side: the
// change from the one to the other leaves the direction as it is.
const std::vector<std::string> LIVE = {"en", "ar", "fa", "ko", "de", "hi", "ja", "vi"};

std::vector<std::string> split(const std::string& list, char at = ',') {
    std::vector<std::string> items;
    std::istringstream stream(list);
    for (std::string item; std::getline(stream, item, at);) {
        items.push_back(item);
    }
    if (items.empty()) {
        throw std::invalid_argument("an empty list");
    }
    return items;
}

bool has(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

std::size_t wholeNumber(const std::string& text) {
    if (text.empty() || text.size() > 4 ||
        text.find_first_not_of("0123456789") != std::string::npos || std::stoul(text) == 0) {
        throw std::invalid_argument(text + " is no number");
    }
    return std::stoul(text);
}

// Of PARTS equal shares of ALL, the PARTth.
std::vector<Item> shareOf(const std::vector<Item>& all, std::size_t part, std::size_t parts) {
    std::vector<Item> share;
    for (std::size_t place = part - 1; place < all.size(); place += parts) {
        share.push_back(all[place]);
    }
    return share;
}

template <typename Value>
Value named(const std::map<std::string, Value>& values, const std::string& name) {
    const auto found = values.find(name);
    if (found == values.end()) {
        throw std::invalid_argument("there is no " + name);
    }
    return found->second;
}

}  // namespace

std::string Options::usage() {
    return "Usage: look-check --theme-folder DIR --catalogues DIR [OPTION ...]\n"
           "Draws every screen and popup in memory and checks the pictures.\n\n"
           "  --sizes WxH,...        1280x720, 1920x1080 or any other (default: 1920x1080)\n"
           "  --languages LIST       all (of the catalogues), sample, made-up (longest, grown,\n"
           "                         missing), or names (default: en)\n"
           "  --directions LIST      own (that of the language), ltr, rtl (default: own)\n"
           "  --modes LIST           all, ordinary, contrast, enlarged, both (default: ordinary)\n"
           "  --scenes LIST          all, rich (those with texts of their own), or names; with a\n"
           "                         * at the end all that begin so (default: all)\n"
           "  --states WHICH         all states of the focus, or the opening one (default: all)\n"
           "  --live WHICH           change the language while a screen is shown and compare it "
           "with\n"
           "                         one made in the new language: pairs (each two of eight\n"
           "                         languages) or ring (from each of the eight to the next);\n"
           "                         in the first of the sizes and modes\n"
           "  --share N/M            of M shares of the work, the Nth\n"
           "  --all                  everything: both sizes, all modes and languages, live "
           "changes\n"
           "  --sample               all modes in English and Arabic\n"
           "  --pictures DIR         keep every picture, whole and small\n"
           "  --defect WHAT          break the screens on purpose: arrows, spinner\n"
           "  --list                 print the names of the scenes\n"
           "  --report FILE          write what was found as JSON\n"
           "Exit status: 0 when nothing failed, 1 when something did, 2 when an option is wrong.\n";
}

Options::Options(int argc, char** argv) {
    for (int place = 1; place < argc; ++place) {
        const std::string option = argv[place];
        if (option == "--help") {
            help = true;
        } else if (option == "--list") {
            namesOnly = true;
        } else if (option == "--all") {
            set("--sizes", "1280x720,1920x1080");
            set("--languages", "all,made-up");
            set("--modes", "all");
            set("--live", "pairs");
            m_liveOnly = false;
        } else if (option == "--sample") {
            set("--languages", "en,ar");
            set("--modes", "all");
        } else if (place + 1 < argc) {
            set(option, argv[++place]);
        } else {
            throw std::invalid_argument(option + " is unknown or needs a value");
        }
    }
    if (!help && !namesOnly && (themeFolder.empty() || catalogues.empty())) {
        throw std::invalid_argument("--theme-folder and --catalogues are needed");
    }
}

void Options::set(const std::string& option, const std::string& value) {
    using Set = void (*)(Options&, const std::string&);
    static const std::map<std::string, Set> setters = {
        {"--theme-folder",
         [](Options& all, const std::string& name) {
             all.themeFolder = std::filesystem::absolute(name);
         }},
        {"--catalogues",
         [](Options& all, const std::string& name) {
             all.catalogues = std::filesystem::absolute(name);
         }},
        {"--pictures",
         [](Options& all, const std::string& name) {
             all.pictures = std::filesystem::absolute(name);
         }},
        {"--report", [](Options& all, const std::string& name) { all.report = name; }},
        {"--defect",
         [](Options& all, const std::string& name) {
             all.defect =
                 named<Defect>({{"arrows", Defect::ARROWS}, {"spinner", Defect::SPINNER}}, name);
         }},
        {"--sizes", [](Options& all, const std::string& list) { all.setSizes(list); }},
        {"--languages",
         [](Options& all, const std::string& list) { all.m_languages = split(list); }},
        {"--directions", [](Options& all, const std::string& list) { all.setDirections(list); }},
        {"--modes", [](Options& all, const std::string& list) { all.setModes(list); }},
        {"--scenes", [](Options& all, const std::string& list) { all.m_scenes = split(list); }},
        {"--states",
         [](Options& all, const std::string& name) {
             all.states = named<bool>({{"all", true}, {"opening", false}}, name);
         }},
        {"--live",
         [](Options& all, const std::string& which) {
             all.setLive(which);
             all.m_liveOnly = true;
         }},
        {"--share", [](Options& all, const std::string& share) { all.setShare(share); }}};
    const auto found = setters.find(option);
    if (found == setters.end()) {
        throw std::invalid_argument("there is no option " + option);
    }
    found->second(*this, value);
}

void Options::setSizes(const std::string& list) {
    m_sizes.clear();
    for (const std::string& size : split(list)) {
        const auto sides = split(size, 'x');
        if (sides.size() != 2) {
            throw std::invalid_argument(size + " is no size");
        }
        m_sizes.push_back(
            {static_cast<int>(wholeNumber(sides[0])), static_cast<int>(wholeNumber(sides[1]))});
    }
}

void Options::setDirections(const std::string& list) {
    m_directions.clear();
    for (const std::string& name : split(list)) {
        m_directions.push_back(named<Direction>({{"own", Direction::OF_LANGUAGE},
                                                 {"ltr", Direction::LEFT_TO_RIGHT},
                                                 {"rtl", Direction::RIGHT_TO_LEFT}},
                                                name));
    }
}

void Options::setModes(const std::string& list) {
    m_looks.clear();
    for (const std::string& name :
         split(list == "all" ? "ordinary,contrast,enlarged,both" : list)) {
        m_looks.push_back(named<Look>({{"ordinary", {false, false}},
                                       {"contrast", {true, false}},
                                       {"enlarged", {false, true}},
                                       {"both", {true, true}}},
                                      name));
    }
}

void Options::setShare(const std::string& share) {
    const auto numbers = split(share, '/');
    if (numbers.size() != 2 || wholeNumber(numbers[0]) > wholeNumber(numbers[1])) {
        throw std::invalid_argument(share + " is no share");
    }
    m_part = wholeNumber(numbers[0]);
    m_parts = wholeNumber(numbers[1]);
}

void Options::setLive(const std::string& which) {
    const bool pairs = named<bool>({{"pairs", true}, {"ring", false}}, which);
    for (std::size_t from = 0; from < LIVE.size(); ++from) {
        const std::size_t steps = pairs ? LIVE.size() - 1 : 1;
        for (std::size_t step = 1; step <= steps; ++step) {
            m_changes.emplace_back(LIVE[from], LIVE[(from + step) % LIVE.size()]);
        }
    }
}

std::vector<std::string> Options::languagesOf(const std::vector<std::string>& shipped) const {
    std::vector<std::string> languages;
    const auto add = [&](const std::vector<std::string>& more, bool mustBe) {
        for (const std::string& language : more) {
            const bool there = has(shipped, language) || has(Catalogue::madeUp(), language);
            if (!there && mustBe) {
                throw std::invalid_argument("there is no catalogue of " + language);
            }
            if (there && !has(languages, language)) {
                languages.push_back(language);
            }
        }
    };
    for (const std::string& name : m_languages) {
        if (name == "all") {
            add(shipped, true);
        } else if (name == "made-up") {
            add(Catalogue::madeUp(), true);
        } else if (name == "sample") {
            add(SAMPLE, false);
        } else {
            add({name}, true);
        }
    }
    return languages;
}

std::vector<std::size_t> Options::chosenScenes() const {
    std::vector<std::size_t> chosen;
    for (const std::string& name : m_scenes) {
        bool found = false;
        for (std::size_t place = 0; place < scenes().size(); ++place) {
            const Scene& scene = scenes()[place];
            const bool start =
                !name.empty() && name.back() == '*' &&
                scene.name.compare(0, name.size() - 1, name, 0, name.size() - 1) == 0;
            if (name == "all" || (name == "rich" && scene.rich) || scene.name == name || start) {
                chosen.push_back(place);
                found = true;
            }
        }
        if (!found) {
            throw std::invalid_argument("there is no scene " + name);
        }
    }
    return chosen;
}

// The changes of one scene stand together: a screen that was made to compare with is used again.
std::vector<Item> Options::liveChanges() const {
    std::vector<Item> all;
    for (const std::size_t scene : chosenScenes()) {
        if (scenes()[scene].scrolled) {
            continue;
        }
        for (const auto& [from, to] : m_changes) {
            all.push_back(
                {scene,
                 {m_sizes.front().width, m_sizes.front().height, to, Direction::OF_LANGUAGE,
                  m_looks.front().contrast, m_looks.front().enlarged},
                 from});
        }
    }
    return all;
}

std::vector<Item> Options::items(const std::vector<std::string>& shipped) const {
    std::vector<Item> all = liveChanges();
    if (m_liveOnly) {
        return shareOf(all, m_part, m_parts);
    }
    for (const std::string& language : languagesOf(shipped)) {
        for (const Size& size : m_sizes) {
            for (const Look& look : m_looks) {
                for (const Direction direction : m_directions) {
                    for (const std::size_t scene : chosenScenes()) {
                        all.push_back({scene,
                                       {size.width, size.height, language, direction, look.contrast,
                                        look.enlarged},
                                       ""});
                    }
                }
            }
        }
    }
    return shareOf(all, m_part, m_parts);
}

}  // namespace look
