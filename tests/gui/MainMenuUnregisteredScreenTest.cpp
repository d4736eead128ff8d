// SPDX-License-Identifier: Apache-2.0
// The menu of a set that is tied to no shop.
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/MenuChecks.h"

namespace {

using namespace ZOLT::GUI;

class MainMenuUnregisteredScreenTest : public support::MenuFixture {};

const std::vector<support::MenuRow> rows = {
    {"newRegBtn", "TV_SID_NEW_REGISTRATION", "i_create_account", "i_create_account",
     "pinRequestingScreenRequested"},
    {"existRegBtn", "TV_SID_EXISTING_REGISTRATION", "i_go", "i_go_r",
     "displayShopsFromLANRequested"},
    {"cancelBtn", "SID_CANCEL", "i_close_cancel", "i_close_cancel", "quitRequested"}};

TEST_F(MainMenuUnregisteredScreenTest, HasItsTitleItsGroupAndItsButtons) {
    checkMenu<MainMenuUnregisteredScreen>("MainMenuUnregisteredScreen",
                                          "MainMenuUnregisteredWindow", rows);
}

TEST_F(MainMenuUnregisteredScreenTest, OnlyTheFirstButtonIsGivenTheFocus) {
    checkFirstFocus<MainMenuUnregisteredScreen>(rows);
}

TEST_F(MainMenuUnregisteredScreenTest, RightToLeftTheDirectionIconIsMirrored) {
    checkMirroredIcons<MainMenuUnregisteredScreen>(rows);
}

TEST_F(MainMenuUnregisteredScreenTest, EachButtonCallsBack) {
    checkCallbacks<MainMenuUnregisteredScreen>(rows);
}

TEST_F(MainMenuUnregisteredScreenTest, EveryButtonIsReachedWithTheArrowsAndLeftAgain) {
    checkWalk<MainMenuUnregisteredScreen>(rows);
}

}  // namespace
