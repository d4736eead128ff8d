// SPDX-License-Identifier: Apache-2.0
// Choosing shops down the levels of a shop list.
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "flow/FlowFixture.h"
#include "gui/MessagePopup.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::SelectionPopup;
using ZOLT::GUI::ShopListScreen;

namespace flow {
namespace {

const std::vector<Level> TWO_TOPS = {
    {"Country", {{"North", "01"}, {"South", "02"}, {"West", "03"}}},
    {"Store", {{"N1", "0101"}, {"N2", "0102"}, {"S1", "0201"}, {"S2", "0202"}, {"W1", "0301"}}}};
const std::vector<Level> ONE_TOP = {{"Country", {{"North", "01"}}},
                                    {"Store", {{"N1", "0101"}, {"N2", "0102"}}}};
// "North" has a chain of only children below it, "South" a chain that ends in a choice.
const std::vector<Level> CHAINS = {{"Country", {{"North", "01"}, {"South", "02"}}},
                                   {"Region", {{"N", "0101"}, {"S", "0201"}}},
                                   {"City", {{"NN", "010101"}, {"SS", "020101"}}},
                                   {"Store", {{"S1", "02010101"}, {"S2", "02010102"}}}};

class ShopListTest : public FlowFixture {
  protected:
    Evas_Object* list() { return popup<SelectionPopup>()->m_list; }
    // Serves LEVELS and opens the drop-down, whose first row has the focus once it is drawn.
    void openListOf(const std::vector<Level>& levels) {
        start();
        serve(levels);
        activate(screen());
        press(windowOf(screen()), "Return");
        draw(windowOf(screen()));
        ASSERT_TRUE(waitForFocus(list()));
        ASSERT_EQ(elm_genlist_first_item_get(list()), row());
    }
    // The row that has the focus.
    Elm_Object_Item* row() { return elm_object_focused_item_get(list()); }
    Evas_Object* popupButton(int number) {
        return partOf(widgetOf(*popup()), ("button" + std::to_string(number)).c_str());
    }
};

// --- the automatic descent

TEST_F(ShopListTest, OneEntryWithoutChildrenIsConfirmedAtOnce) {
    start();
    serve({{"Store", {{"Only", "01"}}}});
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ(0, entered("showShopListScreen"));
    EXPECT_EQ(0U, initialLevel());
    EXPECT_EQ(0U, level());
    EXPECT_THAT(chosen(), ElementsAre("Only"));
}

TEST_F(ShopListTest, OneTopWithSeveralChildrenStartsAtTheSecondLevel) {
    start();
    serve(ONE_TOP);
    EXPECT_TRUE(shows<ShopListScreen>());
    EXPECT_EQ(1U, level());
    EXPECT_EQ(1U, initialLevel());
    EXPECT_THAT(chosen(), ElementsAre("North"));
    EXPECT_EQ("SID_NEXT", describe("singleBtn"));
    EXPECT_EQ("", describe("prevBtn"));
    EXPECT_EQ("", describe("nextBtn"));
    EXPECT_EQ("North", textOf(layoutOf(screen()), "shop1"));
}

TEST_F(ShopListTest, AChainOfOnlyEntriesIsConfirmedAtOnceAtTheLevelAboveItsEnd) {
    start();
    serve({{"Country", {{"North", "01"}}}, {"Store", {{"N1", "0101"}}}});
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ(1U, level());
    EXPECT_EQ(1U, initialLevel());
    EXPECT_THAT(chosen(), ElementsAre("N1", "North"));
}

TEST_F(ShopListTest, TwoEntriesOfOneCodeAtTheTopAreTwo) {
    start();
    serve({{"Country", {{"North", "01"}, {"Again", "01"}}}});
    EXPECT_TRUE(shows<ShopListScreen>());
    EXPECT_EQ(0U, level());
}

TEST_F(ShopListTest, ATopLevelWithoutEntriesGetsAScreen) {
    start();
    serve({{"Country", {}}});
    EXPECT_TRUE(shows<ShopListScreen>());
    EXPECT_THAT(chosen(), IsEmpty());
}

TEST_F(ShopListTest, AListWithoutLevelsShowsAnUnstableConnection) {
    start();
    daemon().answer("getShopInfoList", R"(<rsp><list level="1"/></rsp>)");
    m_flow->callbackManager(0, 2);
    EXPECT_EQ(1U, history().size());
    EXPECT_EQ("SID_INTERNET_CONNECTION_NOT_STABLE_MSG", labelText());
    EXPECT_EQ(0, entered("showShopListScreen"));
    EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN),
                ElementsAre("Could not parse XML node. Continuing...",
                            testing::StartsWith("Exception caught during event handling: ")));
    platform().clearLog();
}

TEST_F(ShopListTest, WithoutALevelThereIsNoInitialOne) {
    makeFlow();
    bool handled = true;
    EXPECT_THROW(m_flow->getInitialShopListLevel(&handled), std::out_of_range);
    EXPECT_FALSE(handled);
}

TEST_F(ShopListTest, AListThatIsNullShowsAnUnstableConnection) {
    start();
    announceWarning("Exception caught during event handling: Shop list is empty ");
    daemon().answer("getShopInfoList", "null");
    m_flow->callbackManager(0, 2);
    EXPECT_EQ("SID_INTERNET_CONNECTION_NOT_STABLE_MSG", labelText());
}

TEST_F(ShopListTest, TheInitialLevelRefusesANullOutput) {
    makeFlow();
    try {
        m_flow->getInitialShopListLevel(nullptr);
        FAIL();
    } catch (const ZOLT::Exception& exception) {
        EXPECT_STREQ("Incorrect Controller::getInitialShopListLevel() function call",
                     exception.what());
    }
}

TEST_F(ShopListTest, ALevelBelowTheLastIsReturnedAsItIs) {
    start();
    serve(TWO_TOPS);
    ZOLT::GUI::ControllerProbe::level(*m_flow) = 2;
    bool handled = true;
    EXPECT_EQ(2U, m_flow->getInitialShopListLevel(&handled));
    EXPECT_FALSE(handled);
}

TEST_F(ShopListTest, ANewListStartsAtTheTopAndKeepsTheChosenShops) {
    start();
    serve(ONE_TOP);
    serve(TWO_TOPS);
    EXPECT_EQ(0U, level());
    EXPECT_EQ(0U, initialLevel());
    EXPECT_THAT(chosen(), ElementsAre("North"));
    EXPECT_EQ("North", textOf(layoutOf(screen()), "shop1"));
}

TEST_F(ShopListTest, AListThatCannotBeFetchedStillStartsAtTheTop) {
    start();
    serve(ONE_TOP);
    daemon().answer("getShopInfoList", "");
    EXPECT_THROW(m_flow->prepareShopList(), ZOLT::Exception);
    EXPECT_EQ(0U, level());
    EXPECT_EQ(0U, initialLevel());
}

TEST_F(ShopListTest, WithNothingLeftToChooseTheInitialLevelIsHandled) {
    start();
    daemon().answer("getShopInfoList", document(ONE_SHOP));
    m_flow->prepareShopList();
    bool handled = false;
    EXPECT_EQ(0U, m_flow->getInitialShopListLevel(&handled));
    EXPECT_TRUE(handled);
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
}

// The last shop of an automatic descent does not advance the level, so more shops are chosen than
// levels were passed.
TEST_F(ShopListTest, GoingBackToTheTopClearsTheShopsOfADescentWithinTheList) {
    start();
    serve({{"Country", {{"North", "01"}}}, {"Store", {{"N1", "0101"}}}});
    ASSERT_THAT(chosen(), ElementsAre("N1", "North"));
    ASSERT_EQ(1U, level());
    click(EventHandler::prevSelectionScreenRequested);
    EXPECT_EQ(0U, level());
    EXPECT_THAT(chosen(), IsEmpty());
}

// --- a level's screen

TEST_F(ShopListTest, TheFirstScreenHasOneButtonThatTakesNoFocusYet) {
    start();
    serve(TWO_TOPS);
    EXPECT_EQ("SID_NEXT", describe("singleBtn"));
    EXPECT_EQ("", describe("prevBtn"));
    EXPECT_EQ("TV_SID_SELECT_M_MSG*!", describe("selectBtn"));
}

TEST_F(ShopListTest, ALaterScreenHasAPreviousButton) {
    start();
    serve(TWO_TOPS);
    choose("North");
    click(EventHandler::nextSelectionScreenRequested);
    EXPECT_EQ("", describe("singleBtn"));
    EXPECT_EQ("SID_PREVIOUS*", describe("prevBtn"));
    EXPECT_EQ("SID_NEXT", describe("nextBtn"));
    EXPECT_EQ(3U, history().size());
}

TEST_F(ShopListTest, AScreenNamesTheShopThatWasChosenFirst) {
    start();
    serve(CHAINS);
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    choose("S1");
    click(EventHandler::registrationConfirmationScreenRequested);
    click(EventHandler::prevSelectionScreenRequested);
    EXPECT_THAT(chosen(), ElementsAre("SS"));
    EXPECT_EQ("SS", textOf(layoutOf(screen()), "shop1"));
}

TEST_F(ShopListTest, AMissingLevelIsOutOfRange) {
    start();
    serve(TWO_TOPS);
    ZOLT::GUI::ControllerProbe::level(*m_flow) = 2;
    EXPECT_THROW(m_flow->showShopListScreen(0), std::out_of_range);
}

TEST_F(ShopListTest, TheArgumentOfTheScreenHasNoEffect) {
    start();
    serve(TWO_TOPS);
    m_flow->showShopListScreen(77);
    EXPECT_EQ(3U, history().size());
    EXPECT_EQ(0U, level());
}

// --- the popup

TEST_F(ShopListTest, TheDropDownOffersTheTopEntries) {
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    ASSERT_NE(nullptr, popup<SelectionPopup>());
    EXPECT_TRUE(popup()->getVisible());
    EXPECT_THAT(offered(), ElementsAre("North", "South", "West"));
    const auto heard = sounds();
    EXPECT_NE(heard.end(), std::find(heard.begin(), heard.end(), static_cast<int>(POPUP)));
}

TEST_F(ShopListTest, TheDropDownOfALaterLevelOffersTheChildrenOfTheChoice) {
    start();
    serve(TWO_TOPS);
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("S1", "S2"));
}

TEST_F(ShopListTest, TheRegisteredShopIsNotOfferedAndStaysInTheList) {
    daemon().answer("getRegisteredShopInfo", document({{"Country", {{"South", "02"}}}}));
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("North", "West"));
    EXPECT_EQ(3U, ZOLT::GUI::ControllerProbe::parser(*m_flow).getSubs("Root").size());
}

TEST_F(ShopListTest, TheDropDownNeedsAListScreen) {
    start();
    announceWarning("Current screen is not a shop displaying screen");
    click(EventHandler::selectionPopupRequested);
    announceWarning("Cannot show selection popup on current screen");
    m_flow->showSelectionPopup();
    EXPECT_EQ(nullptr, popup());
}

TEST_F(ShopListTest, TheDropDownReplacesAPopupOfAnotherKind) {
    start();
    serve(TWO_TOPS);
    m_flow->showCompletionPopup();
    click(EventHandler::selectionPopupRequested);
    EXPECT_NE(nullptr, popup<SelectionPopup>());
}

TEST_F(ShopListTest, APickMovesTheFocusToOk) {
    start();
    serve(TWO_TOPS);
    pick("South");
    SelectionPopup* const list = popup<SelectionPopup>();
    EXPECT_TRUE(list->m_shopSelected);
    EXPECT_EQ("South", list->m_selectedShop->name);
    EXPECT_EQ(elm_genlist_selected_item_get(list->m_list), list->m_selectedItem);
    EXPECT_TRUE(waitForFocus(partOf(widgetOf(*list), "button1")));
}

TEST_F(ShopListTest, APickWithoutAShopOrWithoutTheListIsRefused) {
    start();
    announceWarning("Incorrect callback call - no shop selected");
    click(EventHandler::selectionPopupItemSelectionCb);
    announceWarning("Currently shown popup is not a Selection Popup");
    ZOLT::Shop shop;
    EventHandler::selectionPopupItemSelectionCb(&shop, nullptr, nullptr);
    EXPECT_THAT(sounds(), ElementsAre(SELECT, SELECT));
}

TEST_F(ShopListTest, EachMissingPartOfAConfirmationHasItsOwnLogLine) {
    start();
    announceWarning("Currently shown screen is not ShopListScreen");
    click(EventHandler::selectionPopupShopChosen);
    serve(TWO_TOPS);
    announceWarning("Currently shown popup is not a Selection Popup");
    click(EventHandler::selectionPopupShopChosen);
    click(EventHandler::selectionPopupRequested);
    announceWarning("Shop is not selected");
    click(EventHandler::selectionPopupShopChosen);
    popup<SelectionPopup>()->m_shopSelected = true;
    announceWarning("No shop selected");
    click(EventHandler::selectionPopupShopChosen);
    EXPECT_TRUE(popup()->getVisible());
}

TEST_F(ShopListTest, AConfirmedEntryWithChildrenOffersNext) {
    start();
    serve(TWO_TOPS);
    choose("South");
    SelectionPopup* const list = popup<SelectionPopup>();
    EXPECT_EQ("SID_NEXT*!", describe("singleBtn"));
    EXPECT_EQ("South", textOf(button("selectBtn")));
    EXPECT_FALSE(list->getVisible());
    EXPECT_EQ(list->m_selectedItem, list->m_previousItem);
    EXPECT_EQ("South", list->m_previousShop->name);
}

TEST_F(ShopListTest, AConfirmedEntryWithoutChildrenOffersTheRegistration) {
    start();
    serve(TWO_TOPS);
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    choose("S1");
    EXPECT_EQ("SID_PREVIOUS*", describe("prevBtn"));
    EXPECT_EQ("SID_REGISTER*!", describe("nextBtn"));
    EXPECT_EQ("", describe("singleBtn"));
}

TEST_F(ShopListTest, ALaterEntryWithChildrenOffersNext) {
    start();
    serve({{"Country", {{"North", "01"}, {"South", "02"}}},
           {"Region", {{"N1", "0101"}, {"N2", "0102"}}},
           {"Store", {{"N1a", "010101"}, {"N1b", "010102"}}}});
    choose("North");
    click(EventHandler::nextSelectionScreenRequested);
    choose("N1");
    EXPECT_EQ("SID_NEXT*!", describe("nextBtn"));
}

TEST_F(ShopListTest, AnEntryWithOneChildStandsForTheEndOfItsChain) {
    start();
    serve(CHAINS);
    choose("North");
    EXPECT_EQ("NN", popup<SelectionPopup>()->m_selectedShop->name);
    EXPECT_EQ("NN", popup<SelectionPopup>()->m_previousShop->name);
    EXPECT_EQ("NN", textOf(button("selectBtn")));
    EXPECT_EQ("SID_REGISTER*!", describe("singleBtn"));
    click(EventHandler::registrationConfirmationScreenRequested);
    EXPECT_THAT(chosen(), ElementsAre("NN"));
    EXPECT_EQ(1U, level());
}

TEST_F(ShopListTest, AChainThatEndsInAChoiceOffersNext) {
    start();
    serve(CHAINS);
    choose("South");
    EXPECT_EQ("SS", popup<SelectionPopup>()->m_selectedShop->name);
    EXPECT_EQ("SID_NEXT*!", describe("singleBtn"));
}

TEST_F(ShopListTest, ReopeningThePopupRestoresTheConfirmedPick) {
    start();
    serve(TWO_TOPS);
    choose("North");
    SelectionPopup* const list = popup<SelectionPopup>();
    Elm_Object_Item* const confirmed = list->m_selectedItem;
    pick("South");
    EXPECT_EQ(list, popup<SelectionPopup>());
    click(EventHandler::popupHideRequested);
    click(EventHandler::selectionPopupRequested);
    EXPECT_EQ(list, popup<SelectionPopup>());
    EXPECT_EQ(confirmed, list->m_selectedItem);
    EXPECT_EQ("North", list->m_selectedShop->name);
    EXPECT_TRUE(elm_genlist_item_selected_get(confirmed));
    EXPECT_TRUE(list->getVisible());
}

TEST_F(ShopListTest, EachWayToLeaveAReopenedPopupKeepsTheFocusVisible) {
    start();
    serve(TWO_TOPS);
    choose("North");
    for (const char* other : {"", "North", "South"}) {
        SCOPED_TRACE(other);
        draw(windowOf(screen()));
        press(windowOf(screen()), "Up");
        ASSERT_TRUE(waitForFocus(button("selectBtn")));
        press(windowOf(screen()), "Return");
        ASSERT_TRUE(popup()->getVisible());
        if (*other == '\0') {
            click(EventHandler::popupHideRequested);
            EXPECT_TRUE(waitForFocus(button("selectBtn")));
            press(windowOf(screen()), "Down");
        } else {
            choose(other);
        }
        EXPECT_FALSE(popup()->getVisible());
        EXPECT_TRUE(waitForFocus(button("singleBtn")));
    }
}

TEST_F(ShopListTest, RightLeadsFromTheListToTheFirstButtonThatMayHaveTheFocus) {
    openListOf(TWO_TOPS);
    press(windowOf(screen()), "Right");
    EXPECT_TRUE(waitForFocus(popupButton(2)));
    press(windowOf(screen()), "Up");
    EXPECT_TRUE(waitForFocus(list()));
    pick("South");
    press(windowOf(screen()), "Up");
    EXPECT_TRUE(waitForFocus(list()));
    press(windowOf(screen()), "Right");
    EXPECT_TRUE(waitForFocus(popupButton(1)));
}

TEST_F(ShopListTest, RightLeavesAnEmptyList) {
    openListOf({{"Country", {}}});
    press(windowOf(screen()), "Down");
    EXPECT_TRUE(waitForFocus(list()));
    press(windowOf(screen()), "Right");
    EXPECT_TRUE(waitForFocus(popupButton(2)));
}

TEST_F(ShopListTest, DownStaysOnTheLastRow) {
    openListOf(TWO_TOPS);
    const unsigned& position = popup<SelectionPopup>()->m_position;
    press(windowOf(screen()), "Down");
    for (int time = 0; time < 2; ++time) {
        press(windowOf(screen()), "Down");
        EXPECT_EQ(elm_genlist_last_item_get(list()), row());
        EXPECT_EQ(2U, position);
    }
    EXPECT_EQ(list(), focusedIn(list()));
}

TEST_F(ShopListTest, ThePositionFollowsTheRowOnTheWayBackFromTheButtons) {
    openListOf(TWO_TOPS);
    for (const unsigned row : {0U, 1U, 2U}) {
        press(windowOf(screen()), "Right");
        ASSERT_TRUE(waitForFocus(popupButton(2)));
        press(windowOf(screen()), "Up");
        ASSERT_TRUE(waitForFocus(list()));
        EXPECT_EQ(row, popup<SelectionPopup>()->m_position);
        press(windowOf(screen()), "Down");
    }
}

// --- next and previous

TEST_F(ShopListTest, NextGoesDownOneLevelAndDropsThePopup) {
    start();
    serve(TWO_TOPS);
    ZOLT::GUI::Screen* const first = &screen();
    choose("North");
    click(EventHandler::nextSelectionScreenRequested);
    EXPECT_EQ(1U, level());
    EXPECT_THAT(chosen(), ElementsAre("North"));
    EXPECT_EQ(first, history().at(1));
    EXPECT_EQ(nullptr, first->getPopup());
}

TEST_F(ShopListTest, NextAndConfirmWithoutAPopupAreRefused) {
    start();
    serve(TWO_TOPS);
    announceWarning("Currently shown screen is not a ShopList screen", 2);
    click(EventHandler::nextSelectionScreenRequested);
    click(EventHandler::registrationConfirmationScreenRequested);
    EXPECT_EQ(0U, level());
    EXPECT_THAT(chosen(), IsEmpty());
}

TEST_F(ShopListTest, NextWithoutAPickChoosesNothingAndThrows) {
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    EXPECT_THROW(click(EventHandler::nextSelectionScreenRequested), ZOLT::Exception);
    EXPECT_THAT(ZOLT::GUI::ControllerProbe::chosen(*m_flow), ElementsAre(nullptr));
    EXPECT_EQ(1U, level());
    EXPECT_EQ(nullptr, popup());
    EXPECT_EQ(2U, history().size());
    EXPECT_THROW(click(EventHandler::selectionPopupRequested), ZOLT::Exception);
    EXPECT_THROW(m_flow->showShopListScreen(0), ZOLT::Exception);
    click(EventHandler::prevSelectionScreenRequested);
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(3U, history().size());
}

TEST_F(ShopListTest, ConfirmingWithoutAPickThrowsBecauseItsDocumentHasNoLevel) {
    start();
    serve(TWO_TOPS);
    click(EventHandler::selectionPopupRequested);
    try {
        click(EventHandler::registrationConfirmationScreenRequested);
        FAIL() << "nothing was thrown";
    } catch (const ZOLT::Exception& exception) {
        EXPECT_STREQ("No Node under \"/rsp/list\" path", exception.what());
    }
    EXPECT_THAT(ZOLT::GUI::ControllerProbe::chosen(*m_flow), ElementsAre(nullptr));
    EXPECT_EQ(1U, level());
    EXPECT_NE(nullptr, popup<SelectionPopup>());
    EXPECT_EQ(2U, history().size());
}

TEST_F(ShopListTest, TheConfirmationLeavesTheHiddenPopupOnTheListScreen) {
    start();
    serve(TWO_TOPS);
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    choose("S2");
    click(EventHandler::registrationConfirmationScreenRequested);
    EXPECT_EQ(2U, level());
    EXPECT_THAT(chosen(), ElementsAre("S2", "South"));
    ASSERT_NE(nullptr, history().at(1)->getPopup());
    EXPECT_FALSE(history().at(1)->getPopup()->getVisible());
}

TEST_F(ShopListTest, PreviousFromTheConfirmationPushesANewScreenOfTheLevelAbove) {
    start();
    serve(TWO_TOPS);
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    choose("S2");
    click(EventHandler::registrationConfirmationScreenRequested);
    click(EventHandler::prevSelectionScreenRequested);
    EXPECT_TRUE(shows<ShopListScreen>());
    EXPECT_EQ(1U, level());
    EXPECT_THAT(chosen(), ElementsAre("South"));
    EXPECT_EQ(5U, history().size());
}

TEST_F(ShopListTest, ThePreviousButtonGoesBackFromBothScreens) {
    start();
    serve(TWO_TOPS);
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    choose("S2");
    click(EventHandler::registrationConfirmationScreenRequested);
    for (const unsigned expected : {1U, 0U}) {
        evas_object_smart_callback_call(button("prevBtn"), "clicked", nullptr);
        settle();
        EXPECT_TRUE(shows<ShopListScreen>());
        EXPECT_EQ(expected, level());
    }
}

TEST_F(ShopListTest, TheSingleButtonOfAShopWithoutEntriesBelowLeadsToTheConfirmation) {
    start();
    serve({{"Store", {{"Left", "01"}, {"Right", "02"}, {"Last", "03"}}}});
    choose("Right");
    evas_object_smart_callback_call(button("singleBtn"), "clicked", nullptr);
    settle();
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
}

TEST_F(ShopListTest, TheSingleButtonOfAConfirmationSendsTheRegistration) {
    start();
    serve({{"Store", {{"Only", "01"}}}});
    callsSince();
    evas_object_smart_callback_call(button("singleBtn"), "clicked", nullptr);
    settle();
    EXPECT_THAT(callsSince(), ElementsAre("requestRegistrationShopInfo"));
}

TEST_F(ShopListTest, PreviousToTheTopClearsAllChosenShops) {
    start();
    serve(ONE_TOP);
    serve(TWO_TOPS);
    choose("North");
    click(EventHandler::nextSelectionScreenRequested);
    EXPECT_THAT(chosen(), ElementsAre("North", "North"));
    click(EventHandler::prevSelectionScreenRequested);
    EXPECT_EQ(0U, level());
    EXPECT_THAT(chosen(), IsEmpty());
}

TEST_F(ShopListTest, PreviousFromTheConfirmationKeepsTheShopsOfTheAutomaticDescent) {
    start();
    serve(ONE_TOP);
    choose("N2");
    EXPECT_EQ("SID_REGISTER*!", describe("singleBtn"));
    click(EventHandler::registrationConfirmationScreenRequested);
    click(EventHandler::prevSelectionScreenRequested);
    EXPECT_EQ(1U, level());
    EXPECT_THAT(chosen(), ElementsAre("North"));
}

TEST_F(ShopListTest, PreviousAboveTheTopWrapsAndIsOutOfRange) {
    start();
    serve(TWO_TOPS);
    EXPECT_THROW(click(EventHandler::prevSelectionScreenRequested), std::out_of_range);
    EXPECT_EQ(UINT32_MAX, level());
}

// --- the registered shop

TEST_F(ShopListTest, TheRegisteredShopsNameIsThatOfTheLastLevel) {
    makeFlow();
    daemon().answer("getRegisteredShopInfo",
                    document({{"Country", {{"North", "01"}}}, {"Store", {{"N1", "0101"}}}}));
    EXPECT_EQ("N1", m_flow->getRegisteredShopName());
    EXPECT_EQ("N1 : 0101", m_flow->getRegisteredShopInfo());
}

TEST_F(ShopListTest, WithoutARegistrationTheNameIsWhatTheDaemonSays) {
    makeFlow();
    for (const char* none : {"", "null"}) {
        daemon().answer("getRegisteredShopInfo", none);
        EXPECT_EQ(none, m_flow->getRegisteredShopName());
        EXPECT_THROW(m_flow->getRegisteredShopInfo(), ZOLT::Exception);
    }
}

TEST_F(ShopListTest, ARegistrationWithoutAShopIsOutOfRange) {
    makeFlow();
    daemon().answer("getRegisteredShopInfo", document({{"Country", {}}}));
    EXPECT_THROW(m_flow->getRegisteredShopName(), std::out_of_range);
    EXPECT_THROW(m_flow->getRegisteredShopInfo(), std::out_of_range);
}

}  // namespace
}  // namespace flow
