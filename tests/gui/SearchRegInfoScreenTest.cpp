// SPDX-License-Identifier: Apache-2.0
// The screen that waits for a search.
#include "gui/Controller.h"
#include "gui/GuiFixture.h"
#include "gui/SearchRegInfoScreen.h"
#include "gui/Speech.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT::GUI;

class SearchRegInfoScreenTest : public support::GuiFixture {};

TEST_F(SearchRegInfoScreenTest, HasItsTitleItsCircleAndTwoLines) {
    const SearchRegInfoScreen screen(1920, 1080);
    EXPECT_STREQ("SearchRegInfoRequesting", elm_win_title_get(windowOf(screen)));
    EXPECT_EQ("WaitingWindow", groupOf(layoutOf(screen)));
    EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(layoutOf(screen), "title"));
    EXPECT_EQ("SID_CONTENT_SEARCH_REG_INFO", textOf(layoutOf(screen), "text1"));
    EXPECT_EQ("SID_PLEASE_WAIT_DOT_KR_DIFF", textOf(layoutOf(screen), "text2"));
    EXPECT_EQ(1U, childrenOf(layoutOf(screen), "animationBox").size());
}

TEST_F(SearchRegInfoScreenTest, ItsCircleIsStartedOnce) {
    const support::ToolkitWatch toolkit;
    const SearchRegInfoScreen screen(1920, 1080);
    EXPECT_EQ(childrenOf(layoutOf(screen), "animationBox"),
              toolkit.callsOf("elm_progressbar_pulse"));
}

TEST_F(SearchRegInfoScreenTest, InEnlargedModeItHasAGroupOfItsOwn) {
    Controller::Enlarge = 1;
    EXPECT_EQ("WaitingWindow_Enlarge", groupOf(layoutOf(SearchRegInfoScreen(1920, 1080))));
}

TEST_F(SearchRegInfoScreenTest, ItSaysNothing) {
    const SearchRegInfoScreen screen(1920, 1080);
    EXPECT_EQ("", support::spoken());
}

}  // namespace
