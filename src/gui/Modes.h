// SPDX-License-Identifier: Apache-2.0
// How the person at the television sees and hears it. Screens and popups ask here and never the
// flow, which makes them.
#pragma once

#include <string>

namespace ZOLT::GUI::modes {

// The scale of what is enlarged.
constexpr double ENLARGED_SCALE = 1.2;

// Whether texts are enlarged, as the flow found the setting when it started.
bool enlarged();
// Whether the high contrast look is on now.
bool highContrast();
// Whether the user interface runs right to left now.
bool mirrored();

// Makes TEXT what the screen reader says ahead of the next widget that takes the focus. TEXT is in
// the language of the person already.
void announce(const std::string& text);

}  // namespace ZOLT::GUI::modes
