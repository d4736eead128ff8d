// SPDX-License-Identifier: Apache-2.0
// What all popups share: show, hide, destroy, buttons, keys and the timeout.
#include <memory>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MessagePopup.h"
#include "gui/Popup.h"
#include "gui/ShownScreen.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT;
using namespace ZOLT::GUI;
using support::Box;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

void ignore(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {}

class PopupTest : public support::GuiFixture {
  protected:
    void SetUp() override {
        GuiFixture::SetUp();
        m_screen = std::make_unique<MainMenuRegisteredScreen>(1920, 1080);
    }
    void TearDown() override {
        m_screen.reset();
        GuiFixture::TearDown();
    }
    std::unique_ptr<MessagePopup> popupOf(int width, int height) const {
        return std::make_unique<MessagePopup>(layoutOf(*m_screen), "c_popup_bottom", width, height);
    }
    static void addOk(Popup& popup) {
        popup.addButton("SID_OK", ignore, nullptr, iconName("i_ok_done_allow"));
    }
    std::unique_ptr<MessagePopup> shownWithTwoButtons() const {
        auto popup = popupOf(1920, 1080);
        addOk(*popup);
        addOk(*popup);
        m_screen->show();
        activate(*m_screen);
        popup->show();
        return popup;
    }
    static Evas_Object* buttonOf(const Popup& popup, int number) {
        return partOf(widgetOf(popup), ("button" + std::to_string(number)).c_str());
    }

    std::unique_ptr<Screen> m_screen;
};

TEST_F(PopupTest, AKeyWithoutInformationIsRefusedBeforeThePopupIsUsed) {
    announceWarning("Incorrect callback call - no event info", 2);
    LoadingPopup loading(layoutOf(*m_screen), "c_popup_bottom", 1920, 1080);
    Popup::onKeyPress(static_cast<Popup*>(&loading), nullptr, nullptr, nullptr);
    EXPECT_FALSE(logged("Return on Key Press for Loading Popup"));
    Popup::onKeyPress(nullptr, nullptr, nullptr, nullptr);
}

TEST_F(PopupTest, IsMadeHiddenWithoutButtons) {
    const auto popup = popupOf(1920, 1080);
    EXPECT_FALSE(popup->getVisible());
    EXPECT_EQ(0, popup->getButtonCount());
    EXPECT_FALSE(evas_object_visible_get(widgetOf(*popup)));
    EXPECT_FALSE(evas_object_visible_get(backgroundOf(*popup)));
}

TEST_F(PopupTest, HasTheProgramsTitleUntilItGetsAnother) {
    translate({{"COM_SID_ZOLT_CONTENT", "The program"}, {"TV_SID_SELECT_M_MSG", "Pick one"}});
    const auto popup = popupOf(1920, 1080);
    EXPECT_EQ("The program", textOf(widgetOf(*popup), "title,text"));
    popup->setTitle("TV_SID_SELECT_M_MSG");
    EXPECT_EQ("Pick one", textOf(widgetOf(*popup), "title,text"));
}

TEST_F(PopupTest, ARectangleOfTheScreensSizeDimsTheScreen) {
    const auto popup = popupOf(1280, 720);
    int red = -1;
    int green = -1;
    int blue = -1;
    int alpha = -1;
    evas_object_color_get(backgroundOf(*popup), &red, &green, &blue, &alpha);
    EXPECT_EQ((std::vector<int>{0, 0, 0, 76}), (std::vector<int>{red, green, blue, alpha}));
    EXPECT_EQ(1280, geometryOf(backgroundOf(*popup)).width);
    EXPECT_EQ(720, geometryOf(backgroundOf(*popup)).height);
}

TEST_F(PopupTest, HasAPositionOfItsOwnAtTwoScreenSizesOnly) {
    EXPECT_EQ(0, geometryOf(widgetOf(*popupOf(1920, 1080))).x);
    EXPECT_EQ(0, geometryOf(widgetOf(*popupOf(1920, 1080))).y);
    EXPECT_EQ(334, geometryOf(widgetOf(*popupOf(1280, 720))).x);
    EXPECT_EQ(206, geometryOf(widgetOf(*popupOf(1280, 720))).y);
    for (const auto& [width, height] : {std::pair(1366, 768), std::pair(1280, 1080)}) {
        const Box place = geometryOf(widgetOf(*popupOf(width, height)));
        Evas_Object* untouched = elm_popup_add(layoutOf(*m_screen));
        EXPECT_EQ(geometryOf(untouched).x, place.x);
        EXPECT_EQ(geometryOf(untouched).y, place.y);
        evas_object_del(untouched);
    }
}

TEST_F(PopupTest, CanBeShownAndHiddenAgainWithItsRectangleAndButtons) {
    const auto popup = popupOf(1920, 1080);
    addOk(*popup);
    Evas_Object* widget = widgetOf(*popup);
    for (int round = 0; round < 2; ++round) {
        popup->show();
        EXPECT_TRUE(popup->getVisible());
        EXPECT_TRUE(evas_object_visible_get(widget));
        EXPECT_TRUE(evas_object_visible_get(backgroundOf(*popup)));
        popup->hide();
        EXPECT_FALSE(popup->getVisible());
        EXPECT_FALSE(evas_object_visible_get(widget));
        EXPECT_FALSE(evas_object_visible_get(backgroundOf(*popup)));
    }
    EXPECT_EQ(widget, widgetOf(*popup));
    EXPECT_EQ("SID_OK", textOf(buttonOf(*popup, 1)));
}

TEST_F(PopupTest, ItsRectangleIsShownAndHiddenBeforeItAndDeletedAfterIt) {
    const auto popup = popupOf(1920, 1080);
    std::vector<std::string> order;
    for (const auto& [event, name] :
         {std::pair(EVAS_CALLBACK_SHOW, "shown"), std::pair(EVAS_CALLBACK_HIDE, "hidden"),
          std::pair(EVAS_CALLBACK_DEL, "deleted")}) {
        noteEvent(widgetOf(*popup), event, std::string("popup ") + name, order);
        noteEvent(backgroundOf(*popup), event, std::string("rectangle ") + name, order);
    }
    popup->show();
    EXPECT_THAT(order, ElementsAre("rectangle shown", "popup shown"));
    order.clear();
    popup->hide();
    EXPECT_THAT(order, ElementsAre("rectangle hidden", "popup hidden"));
    order.clear();
    popup->destroy();
    EXPECT_THAT(order, ElementsAre("popup deleted", "rectangle deleted"));
}

TEST_F(PopupTest, DestroyRemovesTheWidgetsAndLaterCallsAreSafe) {
    const auto popup = popupOf(1920, 1080);
    popup->show();
    popup->destroy();
    EXPECT_EQ(nullptr, widgetOf(*popup));
    EXPECT_EQ(nullptr, backgroundOf(*popup));
    popup->hide();
    popup->destroy();
}

TEST_F(PopupTest, WithoutAParentItThrows) {
    try {
        const MessagePopup popup(nullptr, "c_popup_bottom", 1920, 1080);
        FAIL() << "nothing was thrown";
    } catch (const Exception& error) {
        EXPECT_STREQ("Cannot allocate memory for popup instance", error.what());
        EXPECT_EQ(GENERIC_ERROR, error.code());
    }
}

// The dimming rectangles on the canvas of OBJECT, lowest first.
std::vector<Evas_Object*> dimmingRectangles(Evas_Object* object) {
    std::vector<Evas_Object*> found;
    for (Evas_Object* each = evas_object_bottom_get(evas_object_evas_get(object)); each != nullptr;
         each = evas_object_above_get(each)) {
        int alpha = 0;
        evas_object_color_get(each, nullptr, nullptr, nullptr, &alpha);
        if (std::string("rectangle") == evas_object_type_get(each) && alpha == 76) {
            found.push_back(each);
        }
    }
    return found;
}

TEST_F(PopupTest, WithoutAPopupWidgetItThrowsAndItsRectangleRemainsHidden) {
    ASSERT_THAT(dimmingRectangles(layoutOf(*m_screen)), IsEmpty());
    support::ToolkitWatch toolkit;
    toolkit.refuse("elm_popup_add");
    try {
        popupOf(1280, 720);
        FAIL() << "nothing was thrown";
    } catch (const Exception& error) {
        EXPECT_STREQ("Cannot allocate memory for popup instance", error.what());
        EXPECT_EQ(GENERIC_ERROR, error.code());
    }
    EXPECT_THAT(toolkit.callsOf("elm_popup_add"), ElementsAre(layoutOf(*m_screen)));
    const auto left = dimmingRectangles(layoutOf(*m_screen));
    ASSERT_EQ(1U, left.size());
    EXPECT_EQ(1280, geometryOf(left.front()).width);
    EXPECT_FALSE(evas_object_visible_get(left.front()));
}

TEST_F(PopupTest, HasTheStyleThatItIsMadeWith) {
    const MessagePopup popup(layoutOf(*m_screen), "default", 1920, 1080);
    EXPECT_EQ("default", styleOf(widgetOf(popup)));
    EXPECT_EQ("c_popup_bottom", styleOf(widgetOf(*popupOf(1920, 1080))));
}

TEST_F(PopupTest, TwoButtonsAreCountedAndPutInTheirParts) {
    MessagePopup message(layoutOf(*m_screen), "c_popup_bottom", 1920, 1080);
    LoadingPopup loading(layoutOf(*m_screen), "c_popup_bottom", 1920, 1080);
    for (Popup* popup : std::initializer_list<Popup*>{&message, &loading}) {
        addOk(*popup);
        popup->addButton("SID_CANCEL", ignore, nullptr, iconName("i_close_cancel"));
        EXPECT_EQ(2, popup->getButtonCount());
        EXPECT_EQ("SID_OK", textOf(buttonOf(*popup, 1)));
        EXPECT_EQ("SID_CANCEL", textOf(buttonOf(*popup, 2)));
    }
}

TEST_F(PopupTest, AButtonCanBeGivenTheFocusAndDeniedIt) {
    const auto popup = shownWithTwoButtons();
    popup->focusButton("button2");
    EXPECT_TRUE(turnUntil([&] { return focusedIn(widgetOf(*popup)) == buttonOf(*popup, 2); }));
    popup->deactivateButton("button2");
    settle();
    EXPECT_NE(buttonOf(*popup, 2), focusedIn(widgetOf(*popup)));
    EXPECT_FALSE(takesFocus(buttonOf(*popup, 2)));
    EXPECT_TRUE(takesFocus(buttonOf(*popup, 1)));
    popup->focusButton("button2");
    settle();
    EXPECT_EQ(buttonOf(*popup, 2), focusedIn(widgetOf(*popup)));
}

TEST_F(PopupTest, BlockingMakesAllButtonsUnreachable) {
    const auto popup = shownWithTwoButtons();
    popup->focusButton("button1");
    EXPECT_TRUE(turnUntil([&] { return looksFocused(buttonOf(*popup, 1)); }));
    popup->blockAllButtons();
    settle();
    EXPECT_FALSE(looksFocused(buttonOf(*popup, 1)));
    EXPECT_FALSE(looksFocused(buttonOf(*popup, 2)));
    EXPECT_FALSE(takesFocus(buttonOf(*popup, 1)));
    EXPECT_FALSE(takesFocus(buttonOf(*popup, 2)));
    EXPECT_EQ(2, entered("deactivateButton"));
}

TEST_F(PopupTest, AnUnreachableButtonLooksSoUntilItHasTheFocusAgain) {
    const auto popup = shownWithTwoButtons();
    const auto look = [&](int number) {
        return std::string(edje_object_part_state_get(elm_layout_edje_get(buttonOf(*popup, number)),
                                                      "elm.text", nullptr));
    };
    const auto looks = [&](const std::string& first, const std::string& second) {
        return turnUntil([&] { return look(1) == first && look(2) == second; });
    };
    EXPECT_TRUE(looks("focused", "default"));
    popup->deactivateButton("button1");
    popup->focusButton("button2");
    EXPECT_TRUE(looks("blocked", "focused"));
    popup->focusButton("button1");
    EXPECT_TRUE(looks("focused", "default"));
    popup->focusButton("button2");
    EXPECT_TRUE(looks("default", "focused"));
}

TEST_F(PopupTest, ItsButtonsFollowTheContrastOfTheScreen) {
    for (const int contrast : {1, 0}) {
        platform().setVconf("db/menu/system/accessibility/highcontrast", contrast);
        m_screen = std::make_unique<MainMenuRegisteredScreen>(1920, 1080);
        const auto popup = popupOf(1920, 1080);
        addOk(*popup);
        settle();
        double mode = -1.0;
        edje_object_part_state_get(elm_layout_edje_get(buttonOf(*popup, 1)), "face", &mode);
        EXPECT_DOUBLE_EQ(contrast, mode);
    }
}

TEST_F(PopupTest, BlockingAPopupWithoutButtonsDoesNothing) {
    const auto popup = popupOf(1920, 1080);
    popup->blockAllButtons();
    EXPECT_EQ(0, entered("deactivateButton"));
}

TEST_F(PopupTest, APartWithoutAButtonDoesNothing) {
    const auto popup = popupOf(1920, 1080);
    popup->focusButton("button1");
    popup->deactivateButton("button7");
    EXPECT_EQ(0, popup->getButtonCount());
}

struct TimeoutSeen {
    int calls = 0;
    void* data = nullptr;
};
TimeoutSeen timeoutSeen;

TEST_F(PopupTest, TheTimeoutCallsBackWithThePopup) {
    timeoutSeen = {};
    const auto popup = popupOf(1920, 1080);
    popup->setTimeout(60.0, [](void* data, Evas_Object* /*object*/, void* /*eventInfo*/) {
        ++timeoutSeen.calls;
        timeoutSeen.data = data;
    });
    EXPECT_EQ(60.0, elm_popup_timeout_get(widgetOf(*popup)));
    evas_object_smart_callback_call(widgetOf(*popup), "timeout", nullptr);
    EXPECT_EQ(1, timeoutSeen.calls);
    EXPECT_EQ(static_cast<Popup*>(popup.get()), timeoutSeen.data);
}

TEST_F(PopupTest, AShortTimeoutExpires) {
    timeoutSeen = {};
    const auto popup = popupOf(1920, 1080);
    m_screen->show();
    popup->setTimeout(0.01, [](void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
        ++timeoutSeen.calls;
    });
    popup->show();
    EXPECT_TRUE(turnUntil([] { return timeoutSeen.calls == 1; }));
}

TEST_F(PopupTest, ATimeoutOfZeroOrLessIsPassedOnUnchanged) {
    const auto popup = popupOf(1920, 1080);
    for (double seconds : {0.0, -1.0}) {
        popup->setTimeout(60.0, ignore);
        popup->setTimeout(seconds, ignore);
        Evas_Object* plain = elm_popup_add(layoutOf(*m_screen));
        elm_popup_timeout_set(plain, 60.0);
        elm_popup_timeout_set(plain, seconds);
        EXPECT_NE(60.0, elm_popup_timeout_get(plain));
        EXPECT_EQ(elm_popup_timeout_get(plain), elm_popup_timeout_get(widgetOf(*popup)));
        evas_object_del(plain);
    }
}

// --- keys

TEST_F(PopupTest, TheReturnKeyOnALoadingPopupIsLoggedAndThePopupStays) {
    auto* screen = m_screen.release();
    const support::ShownScreen flow(screen);
    activate(*screen);
    Popup* popup = screen->addLoadingPopup("SID_ANY");
    popup->show();
    settle();
    platform().clearLog();
    evas_object_focus_set(widgetOf(*popup), EINA_TRUE);
    press(windowOf(*screen), "XF86Back");
    EXPECT_TRUE(logged("Return on Key Press for Loading Popup"));
    EXPECT_EQ(0, entered("popupHideRequested"));
    EXPECT_EQ(popup, screen->getPopup());
    EXPECT_TRUE(evas_object_visible_get(widgetOf(*popup)));
}

TEST_F(PopupTest, TheReturnKeyOnAMessagePopupHidesItOnceWhenReleased) {
    auto* screen = m_screen.release();
    const support::ShownScreen flow(screen);
    activate(*screen);
    Popup* popup = screen->addDeregistrationPopup();
    popup->show();
    popup->focusButton("button1");
    ASSERT_TRUE(turnUntil([&] { return focusedIn(widgetOf(*popup)) == buttonOf(*popup, 1); }));
    platform().clearLog();
    keyDown(windowOf(*screen), "XF86Back");
    EXPECT_EQ(0, entered("popupHideRequested"));
    EXPECT_EQ(popup, screen->getPopup());
    keyUp(windowOf(*screen), "XF86Back");
    EXPECT_EQ(1, entered("popupHideRequested"));
    EXPECT_EQ(nullptr, screen->getPopup());
    EXPECT_EQ(nullptr, widgetOf(*popup));
}

TEST_F(PopupTest, OtherKeysOnAPopupAreIgnored) {
    auto* screen = m_screen.release();
    const support::ShownScreen flow(screen);
    activate(*screen);
    Popup* popup = screen->addDeregistrationPopup();
    popup->show();
    for (const char* key : {"XF86Close", "Down", "Return"}) {
        Evas_Event_Key_Up event{};
        event.key = key;
        Popup::onKeyPress(popup, nullptr, widgetOf(*popup), &event);
    }
    EXPECT_EQ(0, entered("popupHideRequested"));
    EXPECT_EQ(popup, screen->getPopup());
}

TEST_F(PopupTest, AKeyWithoutItsEventIsLoggedAndHasNoOtherEffect) {
    announceWarning("Incorrect callback call - no event info", 2);
    const auto message = popupOf(1920, 1080);
    Popup::onKeyPress(static_cast<Popup*>(message.get()), nullptr, nullptr, nullptr);
    Popup::onKeyPress(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(0, entered("popupHideRequested"));
    EXPECT_FALSE(logged("Return on Key Press for Loading Popup"));
}

// --- the focus after hide

TEST_F(PopupTest, AHiddenPopupGivesTheFocusBackToWhatHadIt) {
    m_screen->show();
    activate(*m_screen);
    Evas_Object* before = partOf(layoutOf(*m_screen), "deregBtn");
    elm_object_focus_set(before, EINA_TRUE);
    settle();
    const auto popup = popupOf(1920, 1080);
    addOk(*popup);
    popup->show();
    popup->focusButton("button1");
    ASSERT_TRUE(turnUntil([&] { return focusedIn(before) == buttonOf(*popup, 1); }));
    popup->hide();
    EXPECT_TRUE(turnUntil([&] { return focusedIn(before) == before; }));
}

}  // namespace
