// SPDX-License-Identifier: Apache-2.0
// Compares a screen written from left to right with the same one written from right to left.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "look/FocusWalk.h"
#include "look/Frame.h"
#include "look/Inventory.h"
#include "look/Report.h"

namespace look {

// What one of the two looks like: names with their places, and the picture.
class MirrorCheck {
  public:
    // PICTURE is what INVENTORY was made of; WAYS is where arrows lead.
    MirrorCheck(const Inventory& inventory, Frame picture, FocusWalk::Ways ways, const Mode& mode);

    // Asks whether OTHER, which is written the other way, is the mirror image of this.
    void compare(const MirrorCheck& other, Report& report) const;

  private:
    struct Place {
        std::string name;
        Box box;
        bool directed = false;   // a drawing that turns round
        bool stretches = false;  // one whose height is not its own
    };
    using Places = std::vector<Place>;
    using Compare = std::function<void(const Place& mine, const Place& other)>;

    // Finds the counterpart of each and calls COMPARE for the two.
    static void compareAll(const Places& mine, const Places& others, Report& report,
                           const Compare& compare);
    // How far OTHER is from where MINE belongs, in pixels.
    int distance(const Place& mine, const Place& other) const;
    // The same of their middles.
    double distanceOfMiddles(const Place& mine, const Place& other) const;
    void compareWays(const MirrorCheck& other, Report& report) const;

    int m_width;
    double m_scale;
    Frame m_picture;
    Places m_controls;
    Places m_icons;
    Places m_texts;
    FocusWalk::Ways m_ways;
};

}  // namespace look
