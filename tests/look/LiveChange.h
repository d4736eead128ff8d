// SPDX-License-Identifier: Apache-2.0
// Compares a screen whose language has changed while it was shown with one made in that language.
#pragma once

#include <string>
#include <vector>

#include "look/Inventory.h"
#include "look/Report.h"

namespace look {

// What a screen shows at one moment.
class Snapshot {
  public:
    Snapshot() = default;
    Snapshot(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary);

    // Whether this screen, after the change, shows what FRESH does. KEPT are the words of texts
    // that stay in the language in which the screen was made, in both languages. They give a popup
    // another size, so with one of them only the words of the others are compared.
    void compare(const Snapshot& fresh, const std::vector<std::string>& kept, Report& report) const;

  private:
    // Whether OTHER has the same texts in the same places.
    void compareTexts(const Snapshot& other, const std::vector<std::string>& kept,
                      const std::string& complaint, Report& report) const;

    struct Words {
        std::string words;
        Box box;
    };

    std::vector<Words> m_texts;
    std::vector<Box> m_spinners;
    Frame m_picture;
};

}  // namespace look
