// SPDX-License-Identifier: Apache-2.0
// Holds a screen written from left to right against the same one written from right to left.
#include "look/Mirror.h"

#include <cmath>
#include <map>

namespace look {

namespace {

constexpr char LIST[] = "elm_genlist";
constexpr double BOX_TOLERANCE = 2.0;     // pixels
constexpr double ICON_TOLERANCE = 3.0;    // pixels: the control around it is rounded on its own
constexpr double MIDDLE_TOLERANCE = 4.0;  // pixels of a screen of 1080 lines

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

Mirror::Mirror(const Inventory& inventory, const Tour::Ways& ways, const Mode& mode)
    : m_width(mode.width), m_scale(mode.scale()), m_ways(ways) {
    for (const auto* list : {&inventory.controls, &inventory.holders, &inventory.circles}) {
        for (const Control& control : *list) {
            m_controls.emplace_back(control.type + " " + nameOf(inventory, control.object),
                                    control.box);
        }
    }
    for (const Icon& icon : inventory.icons) {
        m_icons.emplace_back("icon of " + nameOf(inventory, icon.control), icon.box);
    }
    for (const Text& text : inventory.texts) {
        if (text.kind != Kind::Mark) {
            m_texts.emplace_back("text " + coreOf(text.words), text.box);
        }
    }
}

void Mirror::compare(const Mirror& other, Report& report) const {
    compareAll(m_controls, other.m_controls, BOX_TOLERANCE, false, report);
    compareAll(m_icons, other.m_icons, ICON_TOLERANCE, false, report);
    compareAll(m_texts, other.m_texts, std::max(BOX_TOLERANCE, MIDDLE_TOLERANCE * m_scale), true,
               report);
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

void Mirror::compareAll(const Places& mine, const Places& others, double tolerance, bool middles,
                        Report& report) const {
    report.check("mirror", mine.size() == others.size(),
                 std::to_string(mine.size()) + " things, and " + std::to_string(others.size()) +
                     " in the mirror image");
    // Of several of one name, each stands for itself in its order.
    std::map<std::string, std::vector<Box>> places;
    for (const auto& [name, box] : others) {
        places[name].push_back(box);
    }
    std::map<std::string, std::size_t> used;
    for (const auto& [name, box] : mine) {
        const std::size_t number = used[name]++;
        const auto& found = places[name];
        if (number >= found.size()) {
            report.check("mirror", false, name + " is not in the mirror image");
            continue;
        }
        const Box wanted = box.mirrored(m_width);
        const Box& there = found[number];
        const bool good =
            middles ? std::abs(wanted.left + wanted.right - there.left - there.right) <=
                              2 * tolerance &&
                          std::abs(wanted.top + wanted.bottom - there.top - there.bottom) <=
                              2 * tolerance
                    : std::abs(wanted.left - there.left) <= tolerance &&
                          std::abs(wanted.right - there.right) <= tolerance &&
                          std::abs(wanted.top - there.top) <= tolerance &&
                          std::abs(wanted.bottom - there.bottom) <= tolerance;
        report.check("mirror", good,
                     name + " at " + box.words() + " should be at " + wanted.words() +
                         " in the mirror image and is at " + there.words());
    }
}

}  // namespace look
