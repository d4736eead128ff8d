// SPDX-License-Identifier: Apache-2.0
// Places: nothing leaves the safe area or lies over another thing, and edges can be seen.
#include <algorithm>
#include <array>
#include <cmath>

#include "look/Checker.h"
#include "look/CheckerWords.h"

namespace look {

Box Checker::safeArea() const {
    const Mode& mode = m_harness.mode();
    // A pixel is left for rounding.
    const int side = static_cast<int>(std::floor(pixels(96))) - 1;
    const int edge = static_cast<int>(std::floor(pixels(54))) - 1;
    return {side, edge, mode.width - side, mode.height - edge};
}

void Checker::checkPlaces(const Inventory& inventory) {
    const Box safe = safeArea();
    for (const Text& text : inventory.texts) {
        if (!text.ink.empty()) {
            check("safe", safe.holds(text.ink), described(text) + ": ink " + text.ink.words());
        }
    }
    for (const auto* list : {&inventory.controls, &inventory.holders, &inventory.spinners}) {
        for (const Control& control : *list) {
            const Box seen = control.box.common(control.clip);
            check("safe", seen.empty() ? control.row : safe.holds(seen),
                  control.type + " at " + control.box.words());
        }
    }
    for (const Icon& icon : inventory.icons) {
        check("safe", icon.ink.empty() || safe.holds(icon.ink), "icon at " + icon.ink.words());
    }
    check("clipped",
          std::any_of(inventory.texts.begin(), inventory.texts.end(),
                      [](const Text& text) { return text.role == Role::TITLE; }),
          "there is no title");
    for (const Control& control : inventory.controls) {
        check("clipped",
              control.type != "elm_button" ||
                  std::any_of(inventory.texts.begin(), inventory.texts.end(),
                              [&](const Text& text) { return text.control == control.object; }),
              control.type + " at " + control.box.words() + " has no words");
    }
    for (const Control& control : inventory.controls) {
        check("controls", control.box.height() >= static_cast<int>(std::floor(pixels(64))),
              control.type + " at " + control.box.words() + " is " +
                  std::to_string(control.box.height()) + " px high, expected " +
                  number(pixels(64)));
    }
    for (const Card& card : inventory.cards) {
        check("card", safe.holds(card.box), "card at " + card.box.words());
        if (card.message) {
            const Mode& mode = m_harness.mode();
            const int across = std::abs(card.box.left + card.box.right - mode.width);
            const int down = std::abs(card.box.top + card.box.bottom - mode.height);
            check("card", across <= 4 && down <= 4,
                  "card at " + card.box.words() + " is not in the middle");
        }
    }
}

void Checker::checkOverlap(const Inventory& inventory) {
    const auto& texts = inventory.texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        for (std::size_t j = i + 1; j < texts.size(); ++j) {
            check("overlap", !texts[i].ink.meets(texts[j].ink),
                  described(texts[i]) + " and " + described(texts[j]) + ": inks " +
                      texts[i].ink.words() + " and " + texts[j].ink.words());
        }
        for (const Icon& icon : inventory.icons) {
            check("overlap", !texts[i].ink.meets(icon.ink),
                  described(texts[i]) + " and the icon at " + icon.ink.words());
        }
        const Control* control =
            texts[i].control != nullptr ? inventory.controlOf(texts[i].control) : nullptr;
        if (control != nullptr && !texts[i].ink.empty()) {
            check("overlap", control->box.holds(texts[i].ink),
                  described(texts[i]) + ": ink " + texts[i].ink.words() + " leaves its " +
                      control->type + " at " + control->box.words());
        }
        for (const Card& card : inventory.cards) {
            check("overlap", texts[i].ink.empty() || card.box.holds(texts[i].ink),
                  described(texts[i]) + ": ink " + texts[i].ink.words() + " leaves the card at " +
                      card.box.words());
        }
    }
    const auto& controls = inventory.controls;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        for (std::size_t j = i + 1; j < controls.size(); ++j) {
            const Box one = controls[i].box.common(controls[i].clip);
            const Box other = controls[j].box.common(controls[j].clip);
            check("overlap", !one.meets(other),
                  controls[i].type + " at " + one.words() + " and " + controls[j].type + " at " +
                      other.words());
        }
        for (const Control& holder : inventory.holders) {
            check("overlap", controls[i].row || !controls[i].box.meets(holder.box),
                  controls[i].type + " at " + controls[i].box.words() + " and " + holder.type +
                      " at " + holder.box.words());
        }
        for (const Text& text : texts) {
            check("overlap",
                  text.control == controls[i].object ||
                      !controls[i].box.common(controls[i].clip).meets(text.ink),
                  controls[i].type + " at " + controls[i].box.words() + " and " + described(text));
        }
    }
}

void Checker::checkEdges(const Inventory& inventory, const Frame& picture) {
    for (const Control& control : inventory.controls) {
        if (control.row || !control.active) {
            continue;
        }
        Box around = control.box;
        for (const Ring& ring : inventory.rings) {
            around = ring.box.holds(control.box) ? ring.box : around;
        }
        checkEdge(control.type, picture, control.box, around);
    }
    for (const Card& card : inventory.cards) {
        checkEdge("card", picture, card.box, card.box);
    }
    // A list has no edge of its own: it fills the card of its popup.
    for (const Control& holder : inventory.holders) {
        if (holder.type == "elm_scroller") {
            Box around = holder.box;
            for (const Ring& ring : inventory.rings) {
                around = ring.box.holds(holder.box) ? ring.box : around;
            }
            checkEdge(holder.type, picture, holder.box, around);
        }
    }
}

// The best line along the border, from AROUND to a little inside BOX, must stand out from what is
// next to AROUND along most of its way. Corners are left out: they are round.
void Checker::checkEdge(const std::string& what, const Frame& picture, const Box& box,
                        const Box& around) {
    const double least = m_harness.mode().contrast ? 4.5 : 3.0;
    const int inside = static_cast<int>(std::lround(pixels(6)));
    // Nearer to it than another control, whose ring may be that far out.
    const std::array<int, 3> beyond = {static_cast<int>(std::lround(pixels(4))),
                                       static_cast<int>(std::lround(pixels(8))),
                                       static_cast<int>(std::lround(pixels(12)))};
    const int corner = static_cast<int>(std::lround(pixels(24)));
    const int reach = box.left - around.left;
    double best = 0.0;
    for (int line = -reach; line <= inside; ++line) {
        long along = 0;
        long clear = 0;
        // STEPX and STEPY lead from the point at the outer border to what is beyond it.
        const auto sample = [&](int x, int y, int borderX, int borderY, int stepX, int stepY) {
            if (!picture.whole().holds({x, y, x + 1, y + 1})) {
                return;
            }
            double contrast = 0.0;
            for (const int distance : beyond) {
                const int otherX = borderX + stepX * distance;
                const int otherY = borderY + stepY * distance;
                if (picture.whole().holds({otherX, otherY, otherX + 1, otherY + 1})) {
                    contrast = std::max(contrast,
                                        contrastOf(picture.at(x, y), picture.at(otherX, otherY)));
                }
            }
            ++along;
            clear += contrast >= least - CONTRAST_TOLERANCE ? 1 : 0;
        };
        for (int x = box.left + corner; x < box.right - corner; x += 2) {
            sample(x, box.top + line, x, around.top, 0, -1);
            sample(x, box.bottom - 1 - line, x, around.bottom - 1, 0, 1);
        }
        for (int y = box.top + corner; y < box.bottom - corner; y += 2) {
            sample(box.left + line, y, around.left, y, -1, 0);
            sample(box.right - 1 - line, y, around.right - 1, y, 1, 0);
        }
        if (along > 0) {
            best = std::max(best, static_cast<double>(clear) / static_cast<double>(along));
        }
    }
    check("edges", best >= 0.9,
          what + " at " + box.words() + ": its edge stands out by " + number(least) + ":1 along " +
              number(best * 100) + " % only");
}

}  // namespace look
