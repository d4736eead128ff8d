// SPDX-License-Identifier: Apache-2.0
// The scenes: every screen and popup, as the flow makes them, with good and bad input.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "gui/Screen.h"

namespace look {

class ScreenHarness;

struct Scene {
    std::string name;
    // Makes the screen, not shown yet.
    std::function<ZOLT::GUI::Screen*(ScreenHarness&)> make;
    // What happens on the screen once it is shown: a popup, keys. May be missing.
    std::function<void(ScreenHarness&)> after;
    // What others have named, as opposed to texts of ours. Such a text may end in an ellipsis.
    std::vector<std::string> names;
    // What is read character by character, always from left to right and whole.
    std::vector<std::string> codes;
    // Whether the spinner turns.
    bool waits = false;
    // Whether the scene has texts of ours that no other scene of this kind has.
    bool rich = true;
    // Whether the after-steps scroll: a change of language keeps how far, so it is not compared.
    bool scrolled = false;
    // Ids of texts that stay in the language in which the screen was made when it changes.
    std::vector<std::string> keeps = {};
    // The same of a screen that is written from the right.
    std::vector<std::string> keepsMirrored = {};
};

const std::vector<Scene>& scenes();

}  // namespace look
