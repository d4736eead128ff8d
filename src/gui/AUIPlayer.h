// SPDX-License-Identifier: Apache-2.0
// The short sounds that answer keys, buttons and popups.
#pragma once

namespace ZOLT::GUI {

enum AUISoundType {
    AUI_SOUND_MOVE = 0,     // the focus moved to another widget or row
    AUI_SOUND_BACK = 1,     // a back key was pressed
    AUI_SOUND_BLOCKED = 2,  // an arrow key had no effect
    AUI_SOUND_SELECT = 3,   // a button or a row was activated
    AUI_SOUND_POPUP = 4     // a popup appeared
};

// Plays sounds through the TV's feedback service. Has no state.
class AUIPlayer {
  public:
    // Plays TYPE and returns 0, or the code of the feedback function that failed. Throws
    // std::out_of_range for any other TYPE. Blocks as long as the service does.
    int play(AUISoundType type);
};

}  // namespace ZOLT::GUI
