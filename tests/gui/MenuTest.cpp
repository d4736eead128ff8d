// SPDX-License-Identifier: Apache-2.0
// The three menus: a table of what each holds, and what all have in common.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

#include "common/Exception.h"
#include "gui/Controller.h"
#include "gui/GuiFixture.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/RegistrationChangeScreen.h"

namespace {

using namespace ZOLT::GUI;

// One button, in the order from the top.
struct Button {
    const char* part;
    const char* text;
    const char* icon;
    const char* mirroredIcon;
    const char* callback;  // the unqualified name of the function that a click calls
};

struct Menu {
    const char* name;
    const char* title;
    const char* group;
    std::function<std::unique_ptr<Screen>()> make;
    std::vector<Button> buttons;
};

template <typename ScreenType>
std::unique_ptr<Screen> make() {
    return std::make_unique<ScreenType>(1920, 1080);
}

const Button CANCEL = {"cancelBtn", "SID_CANCEL", "i_close_cancel", "i_close_cancel",
                       "quitRequested"};

const std::vector<Menu> MENUS = {{"Registered",
                                  "MainMenuRegisteredWindow",
                                  "MainMenuRegisteredWindow",
                                  make<MainMenuRegisteredScreen>,
                                  {{"regChangeBtn", "TV_SID_REGISTRATION_CHANGE", "i_change",
                                    "i_change", "reRegistrationScreenRequested"},
                                   {"deregBtn", "TV_SID_DEREGISTRATION", "i_remove_account",
                                    "i_remove_account", "deregistrationPopupRequested"},
                                   {"regInfoBtn", "COM_REGISTRATION_INFORMATION", "i_more_info",
                                    "i_more_info", "registrationInformationScreenRequested"},
                                   CANCEL}},
                                 {"Unregistered",
                                  "MainMenuUnregisteredScreen",
                                  "MainMenuUnregisteredWindow",
                                  make<MainMenuUnregisteredScreen>,
                                  {{"newRegBtn", "TV_SID_NEW_REGISTRATION", "i_create_account",
                                    "i_create_account", "pinRequestingScreenRequested"},
                                   {"existRegBtn", "TV_SID_EXISTING_REGISTRATION", "i_go", "i_go_r",
                                    "displayShopsFromLANRequested"},
                                   CANCEL}},
                                 {"Change",
                                  "RegistrationChangeScreen",
                                  "RegChangeWindow",
                                  make<RegistrationChangeScreen>,
                                  {{"reRegBtn", "COM_RE_REGISTRATION", "i_create_account",
                                    "i_create_account", "reRegistrationRequested"},
                                   {"regInfoBtn", "COM_REGISTRATION_INFORMATION", "i_go", "i_go_r",
                                    "registrationInformationScreenRequested"},
                                   CANCEL}}};

class MenuTest : public support::GuiFixture, public ::testing::WithParamInterface<Menu> {
  protected:
    static const std::vector<Button>& buttons() { return GetParam().buttons; }
    static Evas_Object* partIn(const Screen& screen, const Button& button) {
        return partOf(layoutOf(screen), button.part);
    }
    // The index of the button that has the focus.
    static std::size_t focused(const Screen& screen) {
        std::size_t index = 0;
        while (index < buttons().size() &&
               focusedIn(layoutOf(screen)) != partIn(screen, buttons()[index])) {
            ++index;
        }
        return index;
    }
    [[noreturn]] static void clickAndEnd(Evas_Object* button, const char* callback) {
        try {
            evas_object_smart_callback_call(button, "clicked", nullptr);
        } catch (const ZOLT::Exception&) {
            // There is no flow.
        }
        _exit(entered(callback) == 1 ? 0 : 1);
    }
};

TEST_P(MenuTest, HasItsTitleItsGroupAndItsButtons) {
    const auto screen = GetParam().make();
    EXPECT_STREQ(GetParam().title, elm_win_title_get(windowOf(*screen)));
    EXPECT_EQ(GetParam().group, groupOf(layoutOf(*screen)));
    EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(layoutOf(*screen), "title"));
    for (const Button& row : buttons()) {
        Evas_Object* const button = partIn(*screen, row);
        ASSERT_NE(nullptr, button) << row.part;
        EXPECT_EQ(row.text, textOf(button));
        EXPECT_EQ(row.icon, iconOf(button)) << row.part;
        EXPECT_EQ("c_button_icontext", styleOf(button));
        EXPECT_TRUE(evas_object_visible_get(button)) << row.part;
    }
}

TEST_P(MenuTest, KeepsItsGroupWhenItIsEnlarged) {
    Controller::Enlarge = 1;
    EXPECT_EQ(GetParam().group, groupOf(layoutOf(*GetParam().make())));
}

TEST_P(MenuTest, RightToLeftOnlyADirectionIconIsMirrored) {
    platform().setOrientation(1);
    const auto screen = GetParam().make();
    for (const Button& row : buttons()) {
        EXPECT_EQ(row.mirroredIcon, iconOf(partIn(*screen, row))) << row.part;
    }
}

TEST_P(MenuTest, OnlyTheFirstButtonIsGivenTheFocus) {
    const auto screen = GetParam().make();
    EXPECT_EQ(0U, focused(*screen));
    EXPECT_EQ(0, entered("unfocusedItemCb"));
    screen->show();
    activate(*screen);
    EXPECT_EQ(0U, focused(*screen));
}

TEST_P(MenuTest, DownLeadsThroughAllButtonsAndUpBackAgain) {
    const auto screen = GetParam().make();
    screen->show();
    activate(*screen);
    draw(layoutOf(*screen));
    for (std::size_t index = 1; index < buttons().size(); ++index) {
        press(layoutOf(*screen), "Down");
        EXPECT_EQ(index, focused(*screen));
    }
    for (std::size_t index = buttons().size() - 1; index > 0; --index) {
        press(layoutOf(*screen), "Up");
        EXPECT_EQ(index - 1, focused(*screen));
    }
}

// Most callbacks throw without a flow, which makes the toolkit unusable: each is called in its own
// process, whose exit status says whether it was entered.
TEST_P(MenuTest, EachButtonCallsBack) {
    const auto screen = GetParam().make();
    for (const Button& row : buttons()) {
        EXPECT_EXIT(clickAndEnd(partIn(*screen, row), row.callback), ::testing::ExitedWithCode(0),
                    "")
            << row.part;
    }
}

INSTANTIATE_TEST_SUITE_P(Menus, MenuTest, ::testing::ValuesIn(MENUS),
                         [](const ::testing::TestParamInfo<Menu>& menu) {
                             return std::string(menu.param.name);
                         });

}  // namespace
