// SPDX-License-Identifier: Apache-2.0
// Compares a screen written from left to right with the same one written from right to left.
#include "look/MirrorCheck.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace look {

namespace {

constexpr char LIST[] = "elm_genlist";
// The middle of an odd number of pixels is rounded to one side.
constexpr int ROUNDED = 1;                // pixel
constexpr double MIDDLE_TOLERANCE = 4.0;  // pixels of a screen of 1080 lines
constexpr int OTHER_COLOUR = 64;          // of 255
constexpr double OTHER_DRAWING = 0.02;    // of its pixels

std::string nameOf(const Inventory& inventory, const Evas_Object* control) {
    for (const Text& text : inventory.texts) {
        if (text.control == control && control != nullptr) {
            return coreOf(text.words);
        }
    }
    return "";
}

std::string turned(const std::string& arrow) {
    return arrow == "Left" ? "Right" : arrow == "Right" ? "Left" : arrow;
}

}  // namespace

MirrorCheck::MirrorCheck(const Inventory& inventory, Frame picture, FocusWalk::Ways ways,
                         const Mode& mode)
    : m_width(mode.width),
      m_scale(mode.scale()),
      m_picture(std::move(picture)),
      m_ways(std::move(ways)) {
    for (const auto* list : {&inventory.controls, &inventory.holders, &inventory.spinners}) {
        for (const Control& control : *list) {
            m_controls.push_back(
                {control.type + " " + nameOf(inventory, control.object), control.box});
        }
    }
    for (const Icon& icon : inventory.icons) {
        m_icons.push_back({"icon of " + nameOf(inventory, icon.control), icon.box, icon.directed,
                           icon.stretches});
    }
    for (const Text& text : inventory.texts) {
        if (text.kind != Kind::PUNCTUATION) {
            m_texts.push_back({"text " + coreOf(text.words), text.box});
        }
    }
}

void MirrorCheck::compare(const MirrorCheck& other, Report& report) const {
    const auto judge = [&](const Place& mine, const Place& there, bool good) {
        report.check("mirror", good,
                     mine.name + " at " + mine.box.words() + " should be at " +
                         mine.box.mirrored(m_width).words() + " in the mirror image and is at " +
                         there.box.words());
        return good;
    };
    compareAll(m_controls, other.m_controls, report, [&](const Place& mine, const Place& there) {
        judge(mine, there, distance(mine, there) <= ROUNDED);
    });
    compareAll(m_texts, other.m_texts, report, [&](const Place& mine, const Place& there) {
        judge(mine, there, distanceOfMiddles(mine, there) <= MIDDLE_TOLERANCE * m_scale);
    });
    compareAll(m_icons, other.m_icons, report, [&](const Place& mine, const Place& there) {
        // A control is rounded, and the drawing in it once more.
        if (!judge(mine, there, distance(mine, there) <= 2 * ROUNDED)) {
            return;
        }
        const double changed = m_picture.shareThatDiffers(mine.box, other.m_picture, there.box,
                                                          mine.directed, OTHER_COLOUR);
        report.check("mirror", changed <= OTHER_DRAWING,
                     mine.name + " at " + mine.box.words() +
                         (mine.directed ? " does not turn round" : " is another drawing") +
                         " in the mirror image: " + std::to_string(changed) + " of its pixels");
    });
    compareWays(other, report);
}

void MirrorCheck::compareWays(const MirrorCheck& other, Report& report) const {
    for (const auto& [step, to] : m_ways) {
        // The buttons of the popup stand below its list in either direction, and one key leads to
        // them: its sounds say the same.
        if (step.first == LIST) {
            continue;
        }
        const auto found = other.m_ways.find({step.first, turned(step.second)});
        const std::string there = found != other.m_ways.end() ? found->second : "no way";
        std::string told = step.second;
        told.append(" leads from ").append(step.first).append(" to ").append(to);
        told.append(", and ").append(turned(step.second)).append(" in the mirror image to ");
        report.check("reach", there == to, told.append(there));
    }
}

int MirrorCheck::distance(const Place& mine, const Place& other) const {
    const Box expected = mine.box.mirrored(m_width);
    const int across = std::max(std::abs(expected.left - other.box.left),
                                std::abs(expected.right - other.box.right));
    // The colon stands before the words or after them, and lines may break elsewhere.
    return mine.stretches ? across
                          : std::max({across, std::abs(expected.top - other.box.top),
                                      std::abs(expected.bottom - other.box.bottom)});
}

double MirrorCheck::distanceOfMiddles(const Place& mine, const Place& other) const {
    const Box expected = mine.box.mirrored(m_width);
    return std::max(std::abs(expected.left + expected.right - other.box.left - other.box.right),
                    std::abs(expected.top + expected.bottom - other.box.top - other.box.bottom)) /
           2.0;
}

void MirrorCheck::compareAll(const Places& mine, const Places& others, Report& report,
                             const Compare& compare) {
    report.check("mirror", mine.size() == others.size(),
                 std::to_string(mine.size()) + " things, and " + std::to_string(others.size()) +
                     " in the mirror image");
    // Several of one name are compared in their order.
    std::map<std::string, std::vector<const Place*>> places;
    for (const Place& other : others) {
        places[other.name].push_back(&other);
    }
    std::map<std::string, std::size_t> used;
    for (const Place& place : mine) {
        const std::size_t number = used[place.name]++;
        const auto& found = places[place.name];
        if (number >= found.size()) {
            report.check("mirror", false, place.name + " is not in the mirror image");
            continue;
        }
        compare(place, *found[number]);
    }
}

}  // namespace look
