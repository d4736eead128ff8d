// SPDX-License-Identifier: Apache-2.0
// What the tests of the three menus check alike.
#pragma once

#include <string>
#include <vector>

#include <unistd.h>

#include "common/Exception.h"
#include "gui/Controller.h"
#include "gui/GuiFixture.h"

namespace support {

// One button of a menu, in the order from the top.
struct MenuRow {
    const char* part;
    const char* text;
    const char* icon;
    const char* mirroredIcon;
    const char* callback;  // the bare name of the function that a click enters
};

class MenuFixture : public GuiFixture {
  protected:
    template <typename ScreenType>
    void checkMenu(const char* title, const char* group, const std::vector<MenuRow>& rows) {
        const ScreenType screen(1920, 1080);
        EXPECT_STREQ(title, elm_win_title_get(windowOf(screen)));
        EXPECT_EQ(group, groupOf(layoutOf(screen)));
        EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(layoutOf(screen), "title"));
        for (const MenuRow& row : rows) {
            Evas_Object* button = partOf(layoutOf(screen), row.part);
            ASSERT_NE(nullptr, button) << row.part;
            EXPECT_EQ(row.text, textOf(button));
            EXPECT_EQ(row.icon, iconOf(button)) << row.part;
            EXPECT_EQ("c_button_icontext", styleOf(button));
            EXPECT_TRUE(evas_object_visible_get(button)) << row.part;
        }
        ZOLT::GUI::Controller::Enlarge = 1;
        EXPECT_EQ(group, groupOf(layoutOf(ScreenType(1920, 1080))));
    }

    // The first button, and no other, has the focus from the start.
    template <typename ScreenType>
    void checkFirstFocus(const std::vector<MenuRow>& rows) {
        ScreenType screen(1920, 1080);
        EXPECT_EQ(partOf(layoutOf(screen), rows.front().part), focusedIn(layoutOf(screen)));
        EXPECT_EQ(0, entered("unfocusedItemCb"));
        screen.show();
        activate(screen);
        EXPECT_EQ(partOf(layoutOf(screen), rows.front().part), focusedIn(layoutOf(screen)));
    }

    template <typename ScreenType>
    void checkMirroredIcons(const std::vector<MenuRow>& rows) {
        platform().setOrientation(1);
        const ScreenType screen(1920, 1080);
        for (const MenuRow& row : rows) {
            EXPECT_EQ(row.mirroredIcon, iconOf(partOf(layoutOf(screen), row.part))) << row.part;
        }
    }

    // Most callbacks throw without a flow, and the toolkit does not outlive that: each is called in
    // a process of its own, which tells by its status whether it was entered.
    template <typename ScreenType>
    void checkCallbacks(const std::vector<MenuRow>& rows) {
        const ScreenType screen(1920, 1080);
        for (const MenuRow& row : rows) {
            Evas_Object* button = partOf(layoutOf(screen), row.part);
            EXPECT_EXIT(clickAndEnd(button, row.callback), ::testing::ExitedWithCode(0), "")
                << row.part;
        }
    }

    // Down leads through all buttons and Up back again, one press each.
    template <typename ScreenType>
    void checkWalk(const std::vector<MenuRow>& rows) {
        ScreenType screen(1920, 1080);
        screen.show();
        activate(screen);
        draw(layoutOf(screen));
        for (std::size_t index = 1; index < rows.size(); ++index) {
            press(layoutOf(screen), "Down");
            EXPECT_EQ(partOf(layoutOf(screen), rows[index].part), focusedIn(layoutOf(screen)))
                << rows[index].part;
        }
        for (std::size_t index = rows.size() - 1; index > 0; --index) {
            press(layoutOf(screen), "Up");
            EXPECT_EQ(partOf(layoutOf(screen), rows[index - 1].part), focusedIn(layoutOf(screen)))
                << rows[index - 1].part;
        }
    }

  private:
    [[noreturn]] static void clickAndEnd(Evas_Object* button, const char* callback) {
        try {
            evas_object_smart_callback_call(button, "clicked", nullptr);
        } catch (const ZOLT::Exception&) {
            // There is no flow.
        }
        _exit(entered(callback) == 1 ? 0 : 1);
    }
};

}  // namespace support
