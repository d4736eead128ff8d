// SPDX-License-Identifier: Apache-2.0
// What buttons, keys, the focus and the screen reader do.
#include <cstdlib>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "flow/FlowFixture.h"
#include "gui/EventHandler.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MessagePopup.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::Controller;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::LoadingPopup;
using ZOLT::GUI::Screen;
using ZOLT::GUI::SelectionPopup;

namespace flow {
namespace {

const std::vector<Level> TWO_TOPS = {
    {"Country", {{"North", "01"}, {"South", "02"}}},
    {"Store", {{"N1", "0101"}, {"N2", "0102"}, {"S1", "0201"}, {"S2", "0202"}}}};

class EventHandlerTest : public FlowFixture {
  protected:
    // A key-up event.
    static Evas_Event_Key_Up up(const char* key) {
        Evas_Event_Key_Up event = {};
        event.key = key;
        return event;
    }
    static void key(const char* name) {
        auto event = up(name);
        EventHandler::onKeyPress(nullptr, nullptr, nullptr, &event);
    }
    static void listKey(const char* name) {
        auto event = up(name);
        EventHandler::selectionPopupListOnKeyPress(nullptr, nullptr, nullptr, &event);
    }
    static bool loggedInMain(const std::string& message) {
        return platform().hasLine(LOG_ID_MAIN, DLOG_DEBUG, message);
    }
    static void clickOn(Evas_Object* button) {
        evas_object_smart_callback_call(button, "clicked", nullptr);
        settle();
    }
    // Whether the flow has logged that it ignored a press.
    static bool ignoredAPress() { return logged("Press on a covered screen is ignored"); }
    // Clears the sounds played so far.
    void listen() { m_heardBefore = platform().playedPatterns().size(); }
    std::vector<int> heard() {
        const auto all = platform().playedPatterns();
        return {all.begin() + static_cast<std::ptrdiff_t>(m_heardBefore), all.end()};
    }
    // What the screen reader says for a widget with TEXT.
    static std::string spoken(const std::string& text) {
        std::string data = text;
        char* const said = EventHandler::accessCallback(data.data(), nullptr);
        std::string result = said != nullptr ? said : "nothing";
        free(said);
        return result;
    }

  private:
    size_t m_heardBefore = 0;
};

// --- buttons

TEST_F(EventHandlerTest, AButtonPlaysTheClickSound) {
    EventHandler::buttonClickedCb();
    EXPECT_THAT(sounds(), ElementsAre(SELECT));
}

TEST_F(EventHandlerTest, QuitClicksAndEndsTheMainLoop) {
    EXPECT_TRUE(endsMainLoop([] { EventHandler::quitRequested(nullptr, nullptr, nullptr); }));
    EXPECT_THAT(sounds(), ElementsAre(SELECT));
}

TEST_F(EventHandlerTest, BackWithoutAFlowIsSkippedAfterTheClick) {
    EXPECT_FALSE(endsMainLoop([] { EventHandler::goBackRequested(nullptr, nullptr, nullptr); }));
    EXPECT_TRUE(loggedInMain("controller is nullptr! Skipping operation"));
    EXPECT_THAT(sounds(), ElementsAre(SELECT));
}

TEST_F(EventHandlerTest, BackFromTheLastScreenClicksAndEndsTheMainLoop) {
    start();
    listen();
    EXPECT_TRUE(endsMainLoop([] { EventHandler::goBackRequested(nullptr, nullptr, nullptr); }));
    EXPECT_TRUE(loggedInMain("No back screen history present - exit"));
    EXPECT_THAT(heard(), ElementsAre(SELECT));
    EXPECT_EQ(1U, history().size());
}

TEST_F(EventHandlerTest, BackShowsTheScreenBelowWithoutItsPopup) {
    start(true).showDeregistrationPopup();
    Screen* const menu = &screen();
    m_flow->callbackManager(0, 12);
    EXPECT_FALSE(endsMainLoop([] { EventHandler::goBackRequested(nullptr, nullptr, nullptr); }));
    EXPECT_TRUE(loggedInMain("We have some back screen history - let's return back"));
    EXPECT_THAT(history(), ElementsAre(menu));
    EXPECT_EQ(nullptr, popup());
    EXPECT_TRUE(evas_object_visible_get(windowOf(*menu)));
}

TEST_F(EventHandlerTest, BackKeepsTheStateOfTheShopList) {
    start();
    serve(TWO_TOPS);
    choose("North");
    click(EventHandler::nextSelectionScreenRequested);
    click(EventHandler::goBackRequested);
    EXPECT_EQ(1U, level());
    EXPECT_EQ(0U, initialLevel());
    EXPECT_THAT(chosen(), ElementsAre("North"));
}

// The address sanitizer reports any use of the deleted screen.
TEST_F(EventHandlerTest, AButtonMayDeleteTheScreenThatItIsOn) {
    daemon().answer("getRegisteredShopInfo", document({{"Store", {{"N1", "01"}}}}));
    start(true);
    Screen* const menu = &screen();
    click(EventHandler::registrationInformationScreenRequested);
    EXPECT_EQ("SID_OK*!", describe("singleBtn"));
    platform().clearLog();
    keyDown(windowOf(screen()), "Return");
    EXPECT_THAT(history(), ElementsAre(menu));
    keyUp(windowOf(screen()), "Return");
    EXPECT_THAT(history(), ElementsAre(menu));
    std::vector<std::string> steps;
    for (const support::LogLine& line : platform().log()) {
        if (line.function == "destroyPopup" || line.function == "~RegistrationInfoScreen" ||
            line.function == "show") {
            steps.push_back(line.function);
        }
    }
    EXPECT_THAT(steps, ElementsAre("destroyPopup", "~RegistrationInfoScreen", "show"));
}

TEST_F(EventHandlerTest, APressOnACoveredScreenIsIgnored) {
    start();
    Evas_Object* const button = partOf(layoutOf(screen()), "newRegBtn");
    clickOn(button);
    ASSERT_EQ(2U, history().size());
    EXPECT_FALSE(ignoredAPress());
    listen();
    clickOn(button);
    EXPECT_EQ(2U, history().size());
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(1U, callsSince().size());
    EXPECT_TRUE(ignoredAPress());
    click(EventHandler::goBackRequested);
    clickOn(button);
    EXPECT_EQ(2U, history().size());
}

// The only button without a click sound, so it does not share the check of the others.
TEST_F(EventHandlerTest, APressOnTheInformationButtonOfACoveredMenuIsIgnored) {
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    start(true);
    Evas_Object* const button = partOf(layoutOf(screen()), "regInfoBtn");
    clickOn(button);
    clickOn(button);
    EXPECT_EQ(2U, history().size());
    EXPECT_TRUE(ignoredAPress());
}

TEST_F(EventHandlerTest, APressOnAPopupOfACoveredScreenIsIgnored) {
    start(true);
    click(EventHandler::deregistrationPopupRequested);
    Evas_Object* const yes = partOf(widgetOf(*popup()), "button1");
    m_flow->callbackManager(0, 12);
    callsSince();
    clickOn(yes);
    EXPECT_THAT(callsSince(), IsEmpty());
    EXPECT_TRUE(ignoredAPress());
}

TEST_F(EventHandlerTest, APressOnTheDropDownOfACoveredLevelIsIgnored) {
    start();
    serve(TWO_TOPS);
    Evas_Object* const covered = button("selectBtn");
    choose("North");
    click(EventHandler::nextSelectionScreenRequested);
    listen();
    clickOn(covered);
    EXPECT_EQ(nullptr, popup());
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(ignoredAPress());
}

TEST_F(EventHandlerTest, ARowOfACoveredLevelThatIsSelectedIsIgnored) {
    start();
    serve(TWO_TOPS);
    pick("North");
    Elm_Object_Item* const row = elm_genlist_last_item_get(popup<SelectionPopup>()->m_list);
    click(EventHandler::selectionPopupShopChosen);
    m_flow->showShopListScreen(0);
    click(EventHandler::selectionPopupRequested);
    listen();
    elm_genlist_item_selected_set(row, EINA_TRUE);
    settle();
    EXPECT_FALSE(popup<SelectionPopup>()->m_shopSelected);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(ignoredAPress());
}

// The window manager may close the window of the current screen. The one below is then on top.
TEST_F(EventHandlerTest, TheScreenBelowAClosedWindowCanBePressed) {
    start();
    Evas_Object* const request = partOf(layoutOf(screen()), "newRegBtn");
    Evas_Object* const cancel = partOf(layoutOf(screen()), "cancelBtn");
    clickOn(request);
    evas_object_del(windowOf(screen()));
    settle();
    listen();
    clickOn(request);
    EXPECT_EQ(2U, history().size());  // the closed screen is gone
    EXPECT_THAT(heard(), ElementsAre(SELECT));
    evas_object_del(windowOf(screen()));
    EXPECT_TRUE(
        endsMainLoop([cancel] { evas_object_smart_callback_call(cancel, "clicked", nullptr); }));
    EXPECT_FALSE(ignoredAPress());
}

TEST_F(EventHandlerTest, AButtonBelowAClosedWindowShowsItsPopupOnItsOwnScreen) {
    start();
    Screen& menu = screen();
    Evas_Object* const existing = partOf(layoutOf(menu), "existRegBtn");
    clickOn(partOf(layoutOf(menu), "newRegBtn"));
    evas_object_del(windowOf(screen()));
    settle();
    clickOn(existing);
    EXPECT_EQ(&menu, &screen());
    EXPECT_NE(nullptr, dynamic_cast<LoadingPopup*>(popup()));
}

TEST_F(EventHandlerTest, AFailureAfterAWindowWasClosedIsShownOnTheScreenBelow) {
    start();
    Screen& menu = screen();
    clickOn(partOf(layoutOf(menu), "newRegBtn"));
    evas_object_del(windowOf(screen()));
    m_flow->callbackManager(1, 6);
    EXPECT_EQ(&menu, &screen());
    EXPECT_NE(nullptr, popup());
}

TEST_F(EventHandlerTest, TheTimeoutOfAPopupWorksOnACoveredScreen) {
    start().showNetworkFailurePopup(ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_NO_NETWORK);
    Evas_Object* const failure = widgetOf(*popup());
    m_flow->showMainMenuUnregisteredScreen();
    EXPECT_TRUE(
        endsMainLoop([failure] { evas_object_smart_callback_call(failure, "timeout", nullptr); }));
}

TEST_F(EventHandlerTest, TheBackKeyWorksOnACoveredScreen) {
    start();
    Evas_Object* const button = partOf(layoutOf(screen()), "newRegBtn");
    Evas_Object* const window = windowOf(screen());
    m_flow->showMainMenuUnregisteredScreen();
    EXPECT_TRUE(endsMainLoop([window] {
        auto event = up("XF86Back");
        Screen::onKeyPress(nullptr, nullptr, window, &event);
    }));
    EXPECT_TRUE(endsMainLoop([button] {
        auto event = up("XF86Back");
        EventHandler::onKeyPress(nullptr, nullptr, button, &event);
    }));
}

TEST_F(EventHandlerTest, TheBackKeyOnAQuestionPlaysTwoSoundsAndClosesTheQuestion) {
    start(true).showDeregistrationPopup();
    activate(screen());
    Evas_Object* const yes = partOf(widgetOf(*popup()), "button1");
    ASSERT_TRUE(waitForFocus(yes));
    listen();
    press(yes, "XF86Back");
    EXPECT_EQ(nullptr, popup());
    EXPECT_THAT(heard(), ElementsAre(BACK, SELECT));
}

// --- focus changes without a key make no sound

TEST_F(EventHandlerTest, ClosingAPopupMakesNoSound) {
    for (const bool registered : {false, true}) {
        start(registered).showNetworkFailurePopup(ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_NO_NETWORK);
        activate(screen());
        ASSERT_TRUE(waitForFocus(partOf(widgetOf(*popup()), "button1")));
        listen();
        screen().destroyPopup();
        settle();
        EXPECT_THAT(heard(), IsEmpty());
    }
}

TEST_F(EventHandlerTest, AListThatArrivesMakesNoSound) {
    start();
    activate(screen());
    draw(layoutOf(screen()));
    press(layoutOf(screen()), "Down");
    clickOn(button("existRegBtn"));
    ASSERT_NE(nullptr, popup());
    draw(layoutOf(screen()));
    listen();
    serve(TWO_TOPS);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(EventHandlerTest, AFlowThatEndsMakesNoSound) {
    start(true);
    activate(screen());
    draw(layoutOf(screen()));
    press(layoutOf(screen()), "Down");
    m_flow->showDeregistrationSucceededPopup();
    ASSERT_TRUE(waitForFocus(partOf(widgetOf(*popup()), "button1")));
    listen();
    m_flow.reset();
    settle();
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(EventHandlerTest, AScreenThatIsLeftMakesOnlyTheClickOfItsButton) {
    start();
    activate(screen());
    draw(layoutOf(screen()));
    m_flow->showMainMenuUnregisteredScreen();
    activate(screen());
    draw(layoutOf(screen()));
    press(layoutOf(screen()), "Down");
    listen();
    click(EventHandler::goBackRequested);
    EXPECT_THAT(heard(), ElementsAre(SELECT));
}

// A screen that is shown again gets the focus from the window manager, after the one above is gone.
TEST_F(EventHandlerTest, TheFocusThatFollowsADyingScreenIsSilent) {
    start();
    listen();
    {
        const ZOLT::GUI::FocusSilence silence;
        EventHandler::unfocusedItemCb(nullptr, nullptr, nullptr);
    }
    EventHandler::focusedItemCb(nullptr, nullptr, nullptr);
    EXPECT_THAT(heard(), IsEmpty());
    EventHandler::unfocusedItemCb(nullptr, nullptr, nullptr);
    EventHandler::focusedItemCb(nullptr, nullptr, nullptr);
    EXPECT_THAT(heard(), ElementsAre(MOVE));
}

TEST_F(EventHandlerTest, AWindowThatIsClosedFromOutsideMakesNoSound) {
    start(true);
    activate(screen());
    draw(layoutOf(screen()));
    press(layoutOf(screen()), "Down");
    listen();
    evas_object_del(windowOf(screen()));
    settle();
    EXPECT_THAT(heard(), IsEmpty());
}

// A focus change by a deleted popup does not count as an effect of the key.
TEST_F(EventHandlerTest, AnArrowThatMovesNothingIsHeardAfterAPopupHasGone) {
    start().showCompletionPopup();
    activate(screen());
    ASSERT_TRUE(waitForFocus(partOf(widgetOf(*popup()), "button1")));
    key("Return");
    screen().destroyPopup();
    settle();
    listen();
    key("Left");
    EXPECT_THAT(heard(), ElementsAre(BLOCKED));
}

TEST_F(EventHandlerTest, HidingDestroysAMessagePopup) {
    start().showCompletionPopup();
    click(EventHandler::popupHideRequested);
    EXPECT_EQ(nullptr, popup());
}

TEST_F(EventHandlerTest, HidingWithoutAPopupDoesNothing) {
    start();
    listen();
    click(EventHandler::popupHideRequested);
    EXPECT_EQ(nullptr, popup());
    EXPECT_THAT(heard(), ElementsAre(SELECT));
}

TEST_F(EventHandlerTest, HidingDestroysASelectionPopupInWhichNothingWasConfirmed) {
    start();
    serve(TWO_TOPS);
    pick("South");
    click(EventHandler::popupHideRequested);
    EXPECT_EQ(nullptr, popup());
}

TEST_F(EventHandlerTest, HidingKeepsASelectionPopupWithItsEarlierConfirmation) {
    start();
    serve(TWO_TOPS);
    choose("North");
    pick("South");
    click(EventHandler::popupHideRequested);
    ASSERT_NE(nullptr, popup<SelectionPopup>());
    EXPECT_FALSE(popup()->getVisible());
    EXPECT_EQ("North", popup<SelectionPopup>()->m_selectedShop->name);
}

TEST_F(EventHandlerTest, ButtonsWithoutAFlowThrowThat) {
    start();
    makeFlow().initialize();
    ASSERT_EQ(nullptr, Controller::m_self);
    void (*const callbacks[])(void*, Evas_Object*, void*) = {
        EventHandler::popupHideRequested,
        EventHandler::deregistrationPopupRequested,
        EventHandler::deregistrationRequested,
        EventHandler::reRegistrationScreenRequested,
        EventHandler::reRegistrationRequested,
        EventHandler::registrationInformationScreenRequested,
        EventHandler::pinRequestingScreenRequested,
        EventHandler::displayShopsFromLANRequested,
        EventHandler::shopRegistrationRequested,
        EventHandler::selectionPopupRequested,
        EventHandler::selectionPopupShopChosen,
        EventHandler::nextSelectionScreenRequested,
        EventHandler::prevSelectionScreenRequested,
        EventHandler::registrationConfirmationScreenRequested,
    };
    for (const auto callback : callbacks) {
        try {
            callback(nullptr, nullptr, nullptr);
            ADD_FAILURE() << "no exception";
        } catch (const ZOLT::Exception& exception) {
            EXPECT_STREQ("No controller", exception.what());
        }
    }
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(EventHandlerTest, KeysWithoutAFlowThrowThat) {
    start();
    makeFlow().initialize();
    ASSERT_EQ(nullptr, Controller::m_self);
    listen();
    for (const char* name : {"XF86Back", "XF86Close", "Down"}) {
        EXPECT_THROW(listKey(name), ZOLT::Exception) << name;
    }
    EXPECT_THAT(heard(), IsEmpty());
    for (const char* name : {"XF86Back", "XF86Close"}) {
        EXPECT_THROW(key(name), ZOLT::Exception) << name;
    }
    // A key's sound is played before its action.
    EXPECT_THAT(heard(), ElementsAre(BACK, BACK));
    int shop = 0;
    EXPECT_THROW(EventHandler::selectionPopupItemSelectionCb(&shop, nullptr, nullptr),
                 ZOLT::Exception);
}

TEST_F(EventHandlerTest, ButtonsWithoutAScreenThrowThat) {
    makeFlow();
    EXPECT_THROW(click(EventHandler::popupHideRequested), ZOLT::Exception);
    EXPECT_THROW(click(EventHandler::deregistrationPopupRequested), ZOLT::Exception);
    EXPECT_THROW(click(EventHandler::displayShopsFromLANRequested), ZOLT::Exception);
}

// --- the focus

TEST_F(EventHandlerTest, TheFirstFocusOfAScreenIsSilent) {
    click(EventHandler::focusedItemCb);
    EXPECT_THAT(sounds(), IsEmpty());
    EXPECT_EQ(ZOLT::GUI::FOCUS_STATE_FOCUSED, EventHandler::m_focusState);
    EXPECT_FALSE(EventHandler::m_keyUnfocused);
}

TEST_F(EventHandlerTest, AFocusThatMovesIsHeard) {
    click(EventHandler::unfocusedItemCb);
    EXPECT_TRUE(EventHandler::m_keyUnfocused);
    EXPECT_EQ(ZOLT::GUI::FOCUS_STATE_UNFOCUSED, EventHandler::m_focusState);
    click(EventHandler::focusedItemCb);
    click(EventHandler::focusedItemCb);
    EXPECT_THAT(sounds(), ElementsAre(MOVE));
}

TEST_F(EventHandlerTest, AnArrowWithNowhereToGoIsBlocked) {
    start();
    ASSERT_TRUE(waitForFocus(button("newRegBtn")));
    listen();
    press(windowOf(screen()), "Up");
    EXPECT_THAT(heard(), ElementsAre(BLOCKED));
    EXPECT_TRUE(logged("No Focus Key Event pressed"));
}

TEST_F(EventHandlerTest, AnArrowThatMovesTheFocusIsHeardOnce) {
    start();
    ASSERT_TRUE(waitForFocus(button("newRegBtn")));
    listen();
    press(windowOf(screen()), "Down");
    EXPECT_EQ(button("existRegBtn"), focusedIn(button("existRegBtn")));
    EXPECT_THAT(heard(), ElementsAre(MOVE));
    EXPECT_FALSE(EventHandler::m_keyUnfocused);
    EXPECT_EQ(ZOLT::GUI::FOCUS_STATE_NONE, EventHandler::m_focusState);
}

// --- keys

TEST_F(EventHandlerTest, AKeyWithoutItsEventIsRefused) {
    announceWarning("Incorrect callback call - no input", 2);
    EventHandler::m_keyUnfocused = true;
    EventHandler::onKeyPress(nullptr, nullptr, nullptr, nullptr);
    EventHandler::selectionPopupListOnKeyPress(nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(EventHandler::m_keyUnfocused);
}

TEST_F(EventHandlerTest, EveryArrowThatMovesNothingIsBlocked) {
    for (const char* arrow : {"Down", "Up", "Right", "Left"}) {
        key(arrow);
    }
    EXPECT_THAT(sounds(), ElementsAre(BLOCKED, BLOCKED, BLOCKED, BLOCKED));
}

TEST_F(EventHandlerTest, AnArrowAfterALossOfFocusIsSilent) {
    EventHandler::m_keyUnfocused = true;
    EventHandler::m_focusState = ZOLT::GUI::FOCUS_STATE_FOCUSED;
    key("Down");
    EXPECT_THAT(sounds(), IsEmpty());
    EXPECT_FALSE(EventHandler::m_keyUnfocused);
    EXPECT_EQ(ZOLT::GUI::FOCUS_STATE_NONE, EventHandler::m_focusState);
}

TEST_F(EventHandlerTest, OtherKeysAreSilent) {
    key("Return");
    key("5");
    key(nullptr);
    EXPECT_THAT(sounds(), IsEmpty());
}

TEST_F(EventHandlerTest, BothReturnKeysOnAScreenEndTheMainLoop) {
    start();
    for (const char* name : {"XF86Back", "XF86Close"}) {
        SCOPED_TRACE(name);
        platform().clearLog();
        listen();
        EXPECT_TRUE(endsMainLoop([name] { key(name); }));
        EXPECT_THAT(heard(), ElementsAre(BACK, SELECT));
        EXPECT_TRUE(loggedInMain("return button pressed"));
        EXPECT_TRUE(loggedInMain("quit is requested"));
    }
}

TEST_F(EventHandlerTest, TheReturnKeyOnAQuestionIsLeftToThePopup) {
    start(true).showDeregistrationPopup();
    listen();
    EXPECT_FALSE(endsMainLoop([] {
        key("XF86Back");
        EXPECT_TRUE(loggedInMain("just go to its popup OnKeyPress"));
    }));
    ASSERT_FALSE(heard().empty());
    EXPECT_EQ(BACK, heard()[0]);
    EXPECT_THAT(heard(), testing::Not(testing::Contains(SELECT)));
    EXPECT_NE(nullptr, popup());
}

TEST_F(EventHandlerTest, TheReturnKeyOnAPopupOfOneButtonEndsTheMainLoop) {
    start().showCompletionPopup();
    EXPECT_TRUE(endsMainLoop([] { key("XF86Back"); }));
}

TEST_F(EventHandlerTest, TheReturnKeyOnAHiddenPopupEndsTheMainLoop) {
    start(true).showDeregistrationPopup();
    popup()->hide();
    EXPECT_TRUE(endsMainLoop([] { key("XF86Back"); }));
}

TEST_F(EventHandlerTest, TheReturnKeyWithoutAScreenLogsThat) {
    makeFlow();
    announceWarning("screen is NULL");
    EventHandler::m_keyUnfocused = true;
    EXPECT_FALSE(endsMainLoop([] { key("XF86Back"); }));
    EXPECT_THAT(sounds(), ElementsAre(BACK));
    EXPECT_FALSE(EventHandler::m_keyUnfocused);
}

// --- keys of the selection popup's list

TEST_F(EventHandlerTest, AKeyOfTheListNeedsTheListAndItsScreen) {
    start();
    announceWarning("Currently shown screen is not ShopListScreen");
    listen();
    listKey("Down");
    EXPECT_THAT(heard(), IsEmpty());
    serve(TWO_TOPS);
    announceWarning("Currently shown popup is not a Selection Popup");
    listen();
    listKey("Down");
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(EventHandlerTest, UpAndDownMoveThePositionWithinTheRows) {
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    const unsigned& position = popup<SelectionPopup>()->m_position;
    listen();
    listKey("Up");
    EXPECT_EQ(0U, position);
    listKey("Down");
    EXPECT_EQ(1U, position);
    listKey("Down");
    EXPECT_EQ(1U, position);
    listKey("Up");
    EXPECT_EQ(0U, position);
    EXPECT_THAT(heard(), ElementsAre(BLOCKED, MOVE, BLOCKED, MOVE));
}

TEST_F(EventHandlerTest, DownInAnEmptyListIsBlocked) {
    start();
    serve({{"Country", {}}});
    click(EventHandler::selectionPopupRequested);
    listen();
    listKey("Down");
    EXPECT_THAT(heard(), ElementsAre(BLOCKED));
    EXPECT_EQ(0U, popup<SelectionPopup>()->m_position);
}

TEST_F(EventHandlerTest, RightLeavesTheListAndLeftDoesNot) {
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    listen();
    listKey("Right");
    listKey("Left");
    EXPECT_THAT(heard(), ElementsAre(MOVE, BLOCKED));
    EXPECT_EQ(0U, popup<SelectionPopup>()->m_position);
}

TEST_F(EventHandlerTest, BothReturnKeysHideTheList) {
    start();
    serve(TWO_TOPS);
    for (const char* name : {"XF86Back", "XF86Close"}) {
        SCOPED_TRACE(name);
        click(EventHandler::selectionPopupRequested);
        platform().clearLog();
        listen();
        listKey(name);
        EXPECT_TRUE(loggedInMain("popup hide called"));
        EXPECT_EQ(nullptr, popup());
        ASSERT_FALSE(heard().empty());
        EXPECT_EQ(SELECT, heard()[0]);
        settle();
    }
}

TEST_F(EventHandlerTest, OtherKeysOfTheListAreOnlyLogged) {
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    listen();
    listKey("5");
    EXPECT_TRUE(logged("unhandles"));
    EXPECT_THAT(heard(), IsEmpty());
}

// --- language

TEST_F(EventHandlerTest, ALanguageChangeWithoutATextIsRefused) {
    announceWarning("Incorrect callback call - return immediately");
    EventHandler::languageChanged(nullptr, nullptr, nullptr);
}

TEST_F(EventHandlerTest, ALanguageChangeWithoutAFlowOrAScreenDoesNothing) {
    std::string id = "SID_SOFTWARE_VERSION";
    EXPECT_NO_THROW(EventHandler::languageChanged(id.data(), nullptr, nullptr));
    makeFlow();
    EXPECT_NO_THROW(EventHandler::languageChanged(id.data(), nullptr, nullptr));
    EXPECT_EQ(2, entered("languageChanged"));
}

TEST_F(EventHandlerTest, ALanguageChangeOfAnotherScreenOrTextChangesNothing) {
    daemon().answer("getRegisteredShopInfo", document({{"Store", {{"N1", "01"}}}}));
    translate({{"SID_SOFTWARE_VERSION", "Software"}, {"TV_SID_SHOP_CODE", "Code"}});
    std::string version = "SID_SOFTWARE_VERSION";
    std::string code = "TV_SID_SHOP_CODE";
    start();
    Evas_Object* const label = elm_label_add(windowOf(screen()));
    elm_object_style_set(label, "RegistrationRecord");
    const auto texts = [label] {
        return textOf(label, "SoftwareVersion") + textOf(label, "leftText");
    };
    EventHandler::languageChanged(version.data(), label, nullptr);
    EventHandler::languageChanged(code.data(), label, nullptr);
    EXPECT_EQ("", texts());
    m_flow->showRegistrationInformationScreen();
    EventHandler::languageChanged(version.data(), label, nullptr);
    EXPECT_EQ("", texts());
    EventHandler::languageChanged(code.data(), label, nullptr);
    EXPECT_EQ("Code :", texts());
}

TEST_F(EventHandlerTest, ALanguageChangeRenewsTheVersionOfThePinScreen) {
    daemon().answer("getPincode", "12345678");
    start().callbackManager(0, 0);
    translate({{"SID_SOFTWARE_VERSION", "Software"}, {"TV_SID_SHOP_CODE", "Code"}});
    Evas_Object* const layout = layoutOf(screen());
    std::string other = "TV_SID_SHOP_CODE";
    EventHandler::languageChanged(other.data(), layout, nullptr);
    EXPECT_EQ("SID_SOFTWARE_VERSION : 1.2.3", textOf(layout, "SoftwareVersion"));
    std::string id = "SID_SOFTWARE_VERSION";
    EventHandler::languageChanged(id.data(), layout, nullptr);
    EXPECT_EQ("Software : 1.2.3", textOf(layout, "SoftwareVersion"));
}

TEST_F(EventHandlerTest, ALanguageChangeRenewsTheShopCodeOfTheInformationScreen) {
    daemon().answer("getRegisteredShopInfo", document({{"Store", {{"N1", "01"}}}}));
    start(true).showRegistrationInformationScreen();
    translate({{"TV_SID_SHOP_CODE", "Code"}});
    Evas_Object* const label = elm_label_add(layoutOf(screen()));
    elm_object_style_set(label, "RegistrationRecord");
    std::string id = "TV_SID_SHOP_CODE";
    EventHandler::languageChanged(id.data(), label, nullptr);
    EXPECT_EQ("Code :", textOf(label, "leftText"));
}

// --- speech

TEST_F(EventHandlerTest, TagsBecomeBlanks) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"no tag < here", "no tag < here"},
        {"<color=#ff8800>word</color>", " word "},
        {"one<br/>two<br>three<tab>four", "one two three four"},
        {"<br/><br/>", "  "},
        {"<color=#12", " "},
        {"<color=#ff8800ff>word", " f>word"},
        {"<b>bold</b>", "<b>bold</b>"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(expected, EventHandler::removeSpecialTags(text));
    }
}

TEST_F(EventHandlerTest, TheLabelIsSpokenOnceBeforeTheFirstItem) {
    Controller::m_currentLabelText = "Sure<br/>?";
    EXPECT_EQ("Sure ?, Yes", spoken("Yes"));
    EXPECT_TRUE(Controller::m_wasLabelRead);
    EXPECT_TRUE(logged("TTS Access callback"));
    EXPECT_TRUE(logged("Label wasn't read yet"));
    EXPECT_TRUE(logged("Sure ?, Yes"));
    EXPECT_EQ("No", spoken("<color=#ffffff>No</color>").substr(1, 2));
    EXPECT_EQ(1, platform().countLines("Label wasn't read yet"));
}

TEST_F(EventHandlerTest, AnEmptyLabelLeavesTheSeparator) {
    EXPECT_EQ(", Yes", spoken("Yes"));
}

TEST_F(EventHandlerTest, AnItemWithoutATextSaysNothing) {
    announceWarning("No input data");
    EXPECT_EQ(nullptr, EventHandler::accessCallback(nullptr, nullptr));
    EXPECT_FALSE(Controller::m_wasLabelRead);
}

TEST_F(EventHandlerTest, APopupsTextIsSpokenWithItsFirstButton) {
    start().showCompletionPopup();
    EXPECT_EQ("COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS, SID_OK", spoken("SID_OK"));
}

}  // namespace
}  // namespace flow
