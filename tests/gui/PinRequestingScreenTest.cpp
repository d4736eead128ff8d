// SPDX-License-Identifier: Apache-2.0
// The screen that waits for a PIN.
#include "gui/Controller.h"
#include "gui/GuiFixture.h"
#include "gui/PinRequestingScreen.h"
#include "gui/Speech.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT::GUI;

class PinRequestingScreenTest : public support::GuiFixture {};

TEST_F(PinRequestingScreenTest, HasItsTitleItsCircleAndTwoLines) {
    const PinRequestingScreen screen(1920, 1080);
    EXPECT_STREQ("PinRequesting", elm_win_title_get(windowOf(screen)));
    EXPECT_EQ("WaitingWindow", groupOf(layoutOf(screen)));
    EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(layoutOf(screen), "title"));
    EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", textOf(layoutOf(screen), "text1"));
    EXPECT_EQ("SID_PLEASE_WAIT_DOT_KR_DIFF", textOf(layoutOf(screen), "text2"));
    const auto circles = childrenOf(layoutOf(screen), "animationBox");
    ASSERT_EQ(1U, circles.size());
    EXPECT_EQ("c_progress_circle_normal", styleOf(circles.front()));
    EXPECT_TRUE(evas_object_visible_get(circles.front()));
}

TEST_F(PinRequestingScreenTest, ItsCircleIsStartedOnce) {
    const support::ToolkitWatch toolkit;
    const PinRequestingScreen screen(1920, 1080);
    EXPECT_EQ(childrenOf(layoutOf(screen), "animationBox"),
              toolkit.callsOf("elm_progressbar_pulse"));
}

TEST_F(PinRequestingScreenTest, InEnlargedModeItHasAGroupOfItsOwn) {
    Controller::Enlarge = 1;
    EXPECT_EQ("WaitingWindow_Enlarge", groupOf(layoutOf(PinRequestingScreen(1920, 1080))));
}

TEST_F(PinRequestingScreenTest, NothingOnItTakesTheFocus) {
    PinRequestingScreen screen(1920, 1080);
    screen.show();
    activate(screen);
    Evas_Object* focused = focusedIn(layoutOf(screen));
    EXPECT_TRUE(focused == nullptr || focused == windowOf(screen));
    EXPECT_EQ(0, entered("focusedItemCb"));
}

TEST_F(PinRequestingScreenTest, TheReturnKeyQuits) {
    PinRequestingScreen screen(1920, 1080);
    screen.show();
    activate(screen);
    EXPECT_TRUE(endsMainLoop([&screen] { feedKeyDown(windowOf(screen), "XF86Back"); }));
}

TEST_F(PinRequestingScreenTest, ItsTwoLinesAreSpokenAsOne) {
    translate({{"SID_CONNECTING_TO_NETWORK_SERVER", "Connecting."},
               {"SID_PLEASE_WAIT_DOT_KR_DIFF", "Please wait."}});
    const PinRequestingScreen screen(1920, 1080);
    EXPECT_EQ("Connecting.Please wait.", support::spoken());
}

TEST_F(PinRequestingScreenTest, StoppingTheCircleSignalsItAndKeepsItInItsPart) {
    PinRequestingScreen screen(1920, 1080);
    Evas_Object* circle = childrenOf(layoutOf(screen), "animationBox").front();
    int heard = 0;
    elm_layout_signal_callback_add(
        circle, "stop_pulse", "elm",
        [](void* data, Evas_Object*, const char*, const char*) { ++*static_cast<int*>(data); },
        &heard);
    screen.RemoveProgressBar();
    EXPECT_TRUE(turnUntil([&heard] { return heard == 1; }));
    EXPECT_EQ(circle, childrenOf(layoutOf(screen), "animationBox").front());
}

}  // namespace
