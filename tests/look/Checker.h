// SPDX-License-Identifier: Apache-2.0
// Checks one picture of a screen: fit, words, sizes and order of its texts.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "look/Frame.h"
#include "look/GlyphMeter.h"
#include "look/Inventory.h"
#include "look/Report.h"
#include "look/ScreenHarness.h"

namespace look {

// Sizes of texts in the ordinary mode, by their words.
using Sizes = std::map<std::string, double>;
Sizes sizesOf(const Inventory& inventory);

class Checker {
  public:
    // ORDINARY are the sizes in the ordinary mode; null unless the screen is enlarged.
    Checker(ScreenHarness& harness, GlyphMeter& glyphs, Report& report, const Sizes* ordinary);

    // Looks at the screen as it stands now. PICTURE is what it shows.
    void look(Inventory& inventory, const Frame& picture);

  private:
    void checkContrastMode(const Frame& picture);
    struct Drawn {
        Evas_Object* object;
        Box box;  // where its ink is expected
        Box* ink;
    };

    // The ink of texts and icons, found by leaving them out of the picture.
    void findInk(Inventory& inventory, const Frame& picture);
    // Finds the ink of THINGS, and calls LOOK with the place of each and a picture without it.
    void leaveOut(const std::vector<Drawn>& things, const Frame& picture,
                  const std::function<void(std::size_t, const Frame&)>& look);
    void checkContrast(const std::string& name, const std::string& what, const Frame& picture,
                       const Frame& without, const Box& ink, double least);
    void checkFit(Text& text);
    void checkWords(const Text& text);
    void checkSize(const Text& text);
    void checkOrder(const Text& text);
    void checkPlaces(const Inventory& inventory);
    void checkOverlap(const Inventory& inventory);
    void checkEdges(const Inventory& inventory, const Frame& picture);
    void checkEdge(const std::string& what, const Frame& picture, const Box& box,
                   const Box& around);
    Box safeArea() const;
    bool check(const std::string& name, bool good, const std::string& detail);
    double pixels(double at1080) const { return m_harness.mode().pixels(at1080); }

    ScreenHarness& m_harness;
    GlyphMeter& m_glyphs;
    Report& m_report;
    std::set<const Evas_Object*> m_outOfReach;  // what looked out of reach in an earlier state
    const Sizes* m_ordinary;
};

}  // namespace look
