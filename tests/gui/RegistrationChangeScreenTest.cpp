// SPDX-License-Identifier: Apache-2.0
// The menu that offers a new registration or a look at the present one.
#include "gui/MenuChecks.h"
#include "gui/RegistrationChangeScreen.h"

namespace {

using namespace ZOLT::GUI;

class RegistrationChangeScreenTest : public support::MenuFixture {};

const std::vector<support::MenuRow> rows = {
    {"reRegBtn", "COM_RE_REGISTRATION", "i_create_account", "i_create_account",
     "reRegistrationRequested"},
    {"regInfoBtn", "COM_REGISTRATION_INFORMATION", "i_go", "i_go_r",
     "registrationInformationScreenRequested"},
    {"cancelBtn", "SID_CANCEL", "i_close_cancel", "i_close_cancel", "quitRequested"}};

TEST_F(RegistrationChangeScreenTest, HasItsTitleItsGroupAndItsButtons) {
    checkMenu<RegistrationChangeScreen>("RegistrationChangeScreen", "RegChangeWindow", rows);
}

TEST_F(RegistrationChangeScreenTest, OnlyTheFirstButtonIsGivenTheFocus) {
    checkFirstFocus<RegistrationChangeScreen>(rows);
}

TEST_F(RegistrationChangeScreenTest, RightToLeftTheDirectionIconIsMirrored) {
    checkMirroredIcons<RegistrationChangeScreen>(rows);
}

TEST_F(RegistrationChangeScreenTest, EachButtonCallsBack) {
    checkCallbacks<RegistrationChangeScreen>(rows);
}

TEST_F(RegistrationChangeScreenTest, EveryButtonIsReachedWithTheArrowsAndLeftAgain) {
    checkWalk<RegistrationChangeScreen>(rows);
}

}  // namespace
