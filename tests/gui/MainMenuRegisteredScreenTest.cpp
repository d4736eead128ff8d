// SPDX-License-Identifier: Apache-2.0
// The menu of a set that is tied to a shop.
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MenuChecks.h"

namespace {

using namespace ZOLT::GUI;

class MainMenuRegisteredScreenTest : public support::MenuFixture {};

const std::vector<support::MenuRow> rows = {
    {"regChangeBtn", "TV_SID_REGISTRATION_CHANGE", "i_change", "i_change",
     "reRegistrationScreenRequested"},
    {"deregBtn", "TV_SID_DEREGISTRATION", "i_remove_account", "i_remove_account",
     "deregistrationPopupRequested"},
    {"regInfoBtn", "COM_REGISTRATION_INFORMATION", "i_more_info", "i_more_info",
     "registrationInformationScreenRequested"},
    {"cancelBtn", "SID_CANCEL", "i_close_cancel", "i_close_cancel", "quitRequested"}};

TEST_F(MainMenuRegisteredScreenTest, HasItsTitleItsGroupAndItsButtons) {
    checkMenu<MainMenuRegisteredScreen>("MainMenuRegisteredWindow", "MainMenuRegisteredWindow",
                                        rows);
}

TEST_F(MainMenuRegisteredScreenTest, OnlyTheFirstButtonIsGivenTheFocus) {
    checkFirstFocus<MainMenuRegisteredScreen>(rows);
}

TEST_F(MainMenuRegisteredScreenTest, RightToLeftTheInformationKeepsItsIcon) {
    checkMirroredIcons<MainMenuRegisteredScreen>(rows);
}

TEST_F(MainMenuRegisteredScreenTest, EachButtonCallsBack) {
    checkCallbacks<MainMenuRegisteredScreen>(rows);
}

TEST_F(MainMenuRegisteredScreenTest, EveryButtonIsReachedWithTheArrowsAndLeftAgain) {
    checkWalk<MainMenuRegisteredScreen>(rows);
}

}  // namespace
