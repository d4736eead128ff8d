// SPDX-License-Identifier: Apache-2.0
// Enlarged texts, high contrast, mirrored layout and speech. Screens and popups ask these functions
// and never the flow, which makes them.
#pragma once

#include <string>

namespace ZOLT::GUI::modes {

// The scale of widgets in enlarged mode.
constexpr double ENLARGED_SCALE = 1.2;

// Whether texts are enlarged, as the flow found the setting when it started.
bool enlarged();
// Whether the high contrast look is on now.
bool highContrast();
// Whether the user interface runs right to left now.
bool mirrored();

// Makes the screen reader say TEXT, which is already translated, before the next widget that takes
// the focus.
void announce(const std::string& text);

}  // namespace ZOLT::GUI::modes
