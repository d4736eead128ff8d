// SPDX-License-Identifier: Apache-2.0
// Holds a screen written from left to right against the same one written from right to left.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "look/Inventory.h"
#include "look/Report.h"
#include "look/Tour.h"

namespace look {

// What one of the two looks like: names with their places.
class Mirror {
  public:
    Mirror(const Inventory& inventory, const Tour::Ways& ways, const Mode& mode);

    // Asks whether OTHER, which is written the other way, is the mirror image of this.
    void compare(const Mirror& other, Report& report) const;

  private:
    using Places = std::vector<std::pair<std::string, Box>>;

    void compareAll(const Places& mine, const Places& others, double tolerance, bool middles,
                    Report& report) const;

    int m_width;
    double m_scale;
    Places m_controls;
    Places m_icons;
    Places m_texts;
    Tour::Ways m_ways;
};

}  // namespace look
