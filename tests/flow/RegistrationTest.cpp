// SPDX-License-Identifier: Apache-2.0
// How a TV is registered to a shop, how the registration is shown and how it is deleted.
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "flow/FlowFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/MessagePopup.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/PinRequestingScreen.h"
#include "gui/RegistrationChangeScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/SearchRegInfoScreen.h"
#include "gui/ShopListScreen.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::Controller;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::Screen;

namespace flow {
namespace {

const std::vector<Level> TWO_LEVELS = {
    {"Country", {{"North", "01"}, {"South", "02"}}},
    {"Store", {{"N1", "0101"}, {"N2", "0102"}, {"S1", "0201"}, {"S2", "0202"}}}};

class RegistrationTest : public FlowFixture {
  protected:
    // Goes to the confirmation of "N1", which is on the second level.
    void walkToConfirmation() {
        serve(TWO_LEVELS);
        choose("North");
        click(EventHandler::nextSelectionScreenRequested);
        choose("N1");
        click(EventHandler::registrationConfirmationScreenRequested);
    }
};

// --- new registration

TEST_F(RegistrationTest, ANewRegistrationGoesFromTheMenuToThePinAndTheCompletion) {
    daemon().answer("getPincode", "12345678");
    daemon().answer("getShopInfoList", document(TWO_LEVELS));
    start();
    click(EventHandler::pinRequestingScreenRequested);
    EXPECT_TRUE(shows<ZOLT::GUI::PinRequestingScreen>());
    EXPECT_THAT(callsSince(), ElementsAre("requestPincode"));
    event(0, 0);
    EXPECT_TRUE(shows<ZOLT::GUI::PinDisplayingScreen>());
    EXPECT_THAT(callsSince(),
                ElementsAre("checkShopRegistration", "getPincode", "requestPincodeVerification"));
    event(0, 1);
    EXPECT_NE(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_THAT(callsSince(), ElementsAre("requestShopInfoList"));
    event(0, 2);
    EXPECT_TRUE(shows<ZOLT::GUI::ShopListScreen>());
    EXPECT_EQ(nullptr, history().at(1)->getPopup());
    EXPECT_THAT(callsSince(), ElementsAre("getShopInfoList", "getRegisteredShopInfo"));
    choose("South");
    click(EventHandler::nextSelectionScreenRequested);
    choose("S2");
    click(EventHandler::registrationConfirmationScreenRequested);
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    callsSince();
    click(EventHandler::shopRegistrationRequested);
    EXPECT_THAT(callsSince(), ElementsAre("requestRegistrationShopInfo"));
    EXPECT_NE(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    event(0, 3);
    EXPECT_EQ(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_EQ("COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS", labelText());
    EXPECT_EQ(5U, history().size());
    EXPECT_TRUE(endsMainLoop([] { EventHandler::quitRequested(nullptr, nullptr, nullptr); }));
}

TEST_F(RegistrationTest, ThePinScreenStopsTheWaitingScreensCircle) {
    daemon().answer("getPincode", "12345678");
    start();
    click(EventHandler::pinRequestingScreenRequested);
    event(0, 0);
    EXPECT_EQ(1, entered("RemoveProgressBar"));
}

TEST_F(RegistrationTest, ThePinScreenNamesTheShopOfARegisteredTV) {
    daemon().answer("getPincode", "12345678");
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    daemon().setRegistered(true);
    start();
    event(0, 0);
    EXPECT_THAT(callsSince(), ElementsAre("checkShopRegistration", "getPincode",
                                          "getRegisteredShopInfo", "requestPincodeVerification"));
    EXPECT_EQ("N1 : 0101", textOf(layoutOf(screen()), "RegistrationInfo"));
}

TEST_F(RegistrationTest, ThePinScreenOfAnUnregisteredTVSaysSo) {
    daemon().answer("getPincode", "12345678");
    start();
    event(0, 0);
    EXPECT_EQ("TV_SID_UNREGISTERED", textOf(layoutOf(screen()), "RegistrationInfo"));
}

TEST_F(RegistrationTest, AnExpiredPinShowsItsPopupOnThePinScreen) {
    daemon().answer("getPincode", "12345678");
    start();
    event(0, 0);
    event(1, 8);
    EXPECT_TRUE(shows<ZOLT::GUI::PinDisplayingScreen>());
    EXPECT_EQ("COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED", labelText());
}

TEST_F(RegistrationTest, AFailedPinRequestThrowsFromTheButton) {
    daemon().fail("requestPincode", "no");
    start();
    EXPECT_THROW(click(EventHandler::pinRequestingScreenRequested), ZOLT::Exception);
    EXPECT_TRUE(shows<ZOLT::GUI::PinRequestingScreen>());
}

// --- existing registration

TEST_F(RegistrationTest, ASearchFromTheOnlyScreenShowsThePopupAndAsksTheDaemon) {
    start();
    click(EventHandler::displayShopsFromLANRequested);
    EXPECT_NE(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_EQ("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT", labelText());
    EXPECT_THAT(callsSince(), ElementsAre("requestShopInfoList"));
    EXPECT_EQ(1U, history().size());
    EXPECT_EQ(1, entered("historyAppend"));
}

TEST_F(RegistrationTest, ASearchDestroysThePopupOfTheScreenBelow) {
    start(true).showDeregistrationPopup();
    Screen* const below = &screen();
    event(0, 12);
    Screen* const menu = &screen();
    EXPECT_NE(nullptr, below->getPopup());
    click(EventHandler::displayShopsFromLANRequested);
    EXPECT_THAT(history(), ElementsAre(menu, below));
    EXPECT_EQ(nullptr, below->getPopup());
    EXPECT_NE(nullptr, menu->getPopup());
    EXPECT_EQ(3, entered("historyAppend"));
}

TEST_F(RegistrationTest, ANewRegistrationDestroysThePopupOfTheScreenBelowToo) {
    start(true).showDeregistrationPopup();
    Screen* const below = &screen();
    event(0, 12);
    click(EventHandler::pinRequestingScreenRequested);
    EXPECT_EQ(nullptr, below->getPopup());
    EXPECT_EQ(3U, history().size());
}

TEST_F(RegistrationTest, ANewRegistrationFromTheOnlyScreenKeepsItsPopup) {
    start();
    m_flow->showCompletionPopup();
    Screen* const menu = &screen();
    click(EventHandler::pinRequestingScreenRequested);
    EXPECT_EQ(2U, history().size());
    EXPECT_EQ(nullptr, popup());
    EXPECT_NE(nullptr, menu->getPopup());
}

TEST_F(RegistrationTest, ASearchThatFindsNothingSaysSoOnTheMenu) {
    start();
    click(EventHandler::displayShopsFromLANRequested);
    event(1, 9);
    EXPECT_TRUE(shows<ZOLT::GUI::MainMenuUnregisteredScreen>());
    EXPECT_EQ(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_EQ("TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK", labelText());
}

// --- confirmation

TEST_F(RegistrationTest, AConfirmationWithoutAChoiceHasOneButton) {
    start();
    click(EventHandler::displayShopsFromLANRequested);
    platform().clearLog();
    serve(ONE_SHOP);
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ("SID_REGISTER*!", describe("singleBtn"));
    EXPECT_EQ("", describe("prevBtn"));
    EXPECT_EQ("", describe("regBtn"));
    EXPECT_EQ(1, entered("RemoveProgressBar"));
    EXPECT_NE(nullptr, history().at(1)->getPopup());
}

TEST_F(RegistrationTest, AConfirmationAfterAChoiceHasAPreviousButton) {
    start();
    walkToConfirmation();
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ("", describe("singleBtn"));
    EXPECT_EQ("SID_PREVIOUS*", describe("prevBtn"));
    EXPECT_EQ("SID_REGISTER*!", describe("regBtn"));
}

TEST_F(RegistrationTest, TheDocumentOnTheConfirmationIsTheOneThatIsSent) {
    start();
    walkToConfirmation();
    click(EventHandler::shopRegistrationRequested);
    EXPECT_EQ(
        R"(<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok">)"
        R"(<list level="1" name="Country" is_fix="Y" is_sub="Y"><sub_list name="North" code="01" /></list>)"
        R"(<list level="2" name="Store" is_fix="Y" is_sub="N"><sub_list name="N1" code="0101" /></list>)"
        R"(</rsp>)",
        daemon().registrationDocument());
}

TEST_F(RegistrationTest, WhileTheRequestRunsTheButtonsAreUnreachable) {
    start();
    walkToConfirmation();
    click(EventHandler::shopRegistrationRequested);
    EXPECT_EQ("SID_PREVIOUS", describe("prevBtn"));
    EXPECT_EQ("SID_REGISTER", describe("regBtn"));
    EXPECT_EQ("", describe("singleBtn"));
    EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", labelText());
}

TEST_F(RegistrationTest, WhileTheRequestOfASingleButtonRunsThatIsUnreachable) {
    start();
    serve(ONE_SHOP);
    click(EventHandler::shopRegistrationRequested);
    EXPECT_EQ("SID_REGISTER", describe("singleBtn"));
    EXPECT_EQ("", describe("regBtn"));
}

TEST_F(RegistrationTest, ARegistrationFromAnotherScreenIsRefused) {
    start();
    announceWarning("Currently shown screen is not RegistrationInfoScreen");
    click(EventHandler::shopRegistrationRequested);
    EXPECT_THAT(sounds(), ElementsAre(SELECT));
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(RegistrationTest, ARegistrationFromTheOnlyScreenIsOutOfRange) {
    Controller& flow = makeFlow();
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    flow.showRegistrationInformationScreen();
    ZOLT::GUI::ControllerProbe::chosen(flow).push_front(nullptr);
    callsSince();
    EXPECT_THROW(click(EventHandler::shopRegistrationRequested), std::out_of_range);
    EXPECT_THAT(callsSince(), IsEmpty());
    EXPECT_EQ(nullptr, popup());
}

TEST_F(RegistrationTest, ARegistrationWithoutAChosenShopIsOutOfRange) {
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    start(true).showRegistrationInformationScreen();
    EXPECT_THROW(click(EventHandler::shopRegistrationRequested), std::out_of_range);
    EXPECT_THROW(m_flow->showRegistrationConfirmationScreen(), std::out_of_range);
}

TEST_F(RegistrationTest, ARegistrationOfANullChoiceHasNoLevels) {
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    start(true).showRegistrationInformationScreen();
    ZOLT::GUI::ControllerProbe::chosen(*m_flow).push_front(nullptr);
    click(EventHandler::shopRegistrationRequested);
    EXPECT_EQ(R"(<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok"></rsp>)",
              daemon().registrationDocument());
}

// --- information

TEST_F(RegistrationTest, TheInformationScreenShowsTheRegistrationWithoutAClickSound) {
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    start(true);
    EventHandler::registrationInformationScreenRequested(nullptr, nullptr, nullptr);
    EXPECT_THAT(sounds(), IsEmpty());
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ("SID_OK*!", describe("singleBtn"));
    EXPECT_THAT(callsSince(), ElementsAre("getRegisteredShopInfo"));
}

TEST_F(RegistrationTest, TheInformationScreensButtonLeadsBackToTheMenu) {
    daemon().answer("getRegisteredShopInfo", document(REGISTERED));
    start(true);
    Screen* const menu = &screen();
    click(EventHandler::registrationInformationScreenRequested);
    press(windowOf(screen()), "Return");
    EXPECT_THAT(history(), ElementsAre(menu));
}

TEST_F(RegistrationTest, ABrokenRegisteredDocumentThrowsFromTheButton) {
    daemon().answer("getRegisteredShopInfo", "null");
    start(true);
    EXPECT_THROW(click(EventHandler::registrationInformationScreenRequested), ZOLT::Exception);
    EXPECT_EQ(1U, history().size());
}

// --- change

TEST_F(RegistrationTest, AChangeAsksFirstAndDeletesOnConsent) {
    start(true);
    click(EventHandler::reRegistrationScreenRequested);
    EXPECT_EQ("TV_SID_SURE_CHANGE_REGISTRATION_INFO_DELETED", labelText());
    EXPECT_TRUE(popup()->getVisible());
    ASSERT_GE(sounds().size(), 2U);
    EXPECT_EQ(SELECT, sounds()[0]);
    EXPECT_EQ(POPUP, sounds()[1]);
    EXPECT_THAT(callsSince(), IsEmpty());
    click(EventHandler::RegistrationChange);
    EXPECT_THAT(callsSince(), ElementsAre("deleteRegistrationInfo"));
    EXPECT_EQ(1, entered("blockAllButtons"));
    EXPECT_NE(nullptr, popup());
}

TEST_F(RegistrationTest, AfterAChangeTheWayBackLeadsToTheRegisteredMenu) {
    start(true);
    Screen* const registered = &screen();
    click(EventHandler::reRegistrationScreenRequested);
    click(EventHandler::RegistrationChange);
    event(0, 12);
    EXPECT_TRUE(shows<ZOLT::GUI::MainMenuUnregisteredScreen>());
    click(EventHandler::goBackRequested);
    EXPECT_EQ(registered, &screen());
    EXPECT_EQ(nullptr, popup());
}

TEST_F(RegistrationTest, ARefusedChangeClosesThePopup) {
    start(true);
    click(EventHandler::reRegistrationScreenRequested);
    click(EventHandler::popupHideRequested);
    EXPECT_EQ(nullptr, popup());
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(RegistrationTest, AChangeWithoutAFlowOrAScreenDoesNothing) {
    click(EventHandler::RegistrationChange);
    makeFlow();
    platform().clearLog();
    click(EventHandler::RegistrationChange);
    EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
    EXPECT_FALSE(logged("Screen is NULL"));
    history().push_front(nullptr);
    click(EventHandler::RegistrationChange);
    EXPECT_TRUE(logged("Screen is NULL"));
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(RegistrationTest, AChangeWithoutAPopupSaysSo) {
    start(true);
    click(EventHandler::RegistrationChange);
    EXPECT_TRUE(logged("Popup is NULL"));
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(RegistrationTest, ANewRegistrationOfARegisteredTVShowsTheLoadingPopupAndAsksForTheList) {
    start(true).showDeregistrationPopup();
    click(EventHandler::reRegistrationRequested);
    EXPECT_NE(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", labelText());
    EXPECT_THAT(callsSince(), ElementsAre("requestShopInfoList"));
}

// --- deregistration

TEST_F(RegistrationTest, ADeregistrationAsksFirstAndEndsWithItsPopup) {
    start(true);
    click(EventHandler::deregistrationPopupRequested);
    EXPECT_EQ("TV_SID_ARE_YOU_SURE_YOU_WANT_TO_DEREGISTER", labelText());
    EXPECT_THAT(callsSince(), IsEmpty());
    click(EventHandler::deregistrationRequested);
    EXPECT_THAT(callsSince(), ElementsAre("unregister"));
    EXPECT_EQ(1, entered("blockAllButtons"));
    event(0, 4);
    EXPECT_EQ("COM_SID_DEREGISTERED_SUCCESSFULLY", labelText());
    EXPECT_EQ(1U, history().size());
}

TEST_F(RegistrationTest, TheButtonsOfAQuestionAreUnreachableBeforeTheDaemonIsAsked) {
    const struct {
        void (*ask)(void*, Evas_Object*, void*);
        void (*consent)(void*, Evas_Object*, void*);
        const char* method;
    } questions[] = {{EventHandler::deregistrationPopupRequested,
                      EventHandler::deregistrationRequested, "unregister"},
                     {EventHandler::reRegistrationScreenRequested, EventHandler::RegistrationChange,
                      "deleteRegistrationInfo"}};
    for (const auto& question : questions) {
        SCOPED_TRACE(question.method);
        start(true);
        daemon().fail(question.method, "busy");
        click(question.ask);
        EXPECT_THROW(click(question.consent), ZOLT::Exception);
        ASSERT_NE(nullptr, popup());
        EXPECT_EQ(1, entered("blockAllButtons"));
        for (const char* part : {"button1", "button2"}) {
            EXPECT_FALSE(takesFocus(partOf(widgetOf(*popup()), part)));
        }
        m_flow.reset();
        platform().clearLog();
    }
}

TEST_F(RegistrationTest, TheButtonsOfAConfirmationAreUnreachableBeforeTheDaemonIsAsked) {
    start();
    serve(ONE_SHOP);
    daemon().fail("requestRegistrationShopInfo", "busy");
    EXPECT_THROW(click(EventHandler::shopRegistrationRequested), ZOLT::Exception);
    EXPECT_EQ("SID_REGISTER", describe("singleBtn"));
    EXPECT_EQ(nullptr, popup());
}

TEST_F(RegistrationTest, TheOkOfEachQuestionIsItsConsent) {
    start(true);
    click(EventHandler::deregistrationPopupRequested);
    evas_object_smart_callback_call(partOf(widgetOf(*popup()), "button1"), "clicked", nullptr);
    EXPECT_THAT(callsSince(), ElementsAre("unregister"));
    screen().destroyPopup();
    click(EventHandler::reRegistrationScreenRequested);
    evas_object_smart_callback_call(partOf(widgetOf(*popup()), "button1"), "clicked", nullptr);
    EXPECT_THAT(callsSince(), ElementsAre("deleteRegistrationInfo"));
}

TEST_F(RegistrationTest, ADeregistrationWithoutAPopupIsRefused) {
    start(true);
    EXPECT_THROW(click(EventHandler::deregistrationRequested), ZOLT::Exception);
    EXPECT_THAT(callsSince(), IsEmpty());
}

// --- operations without a button

TEST_F(RegistrationTest, ScreensThatNoButtonShowsCanStillBeShown) {
    Controller& flow = start(true);
    flow.showRegistrationChangeScreen();
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationChangeScreen>());
    EXPECT_THAT(callsSince(), IsEmpty());
    flow.showSearchRegInfoScreen();
    EXPECT_TRUE(shows<ZOLT::GUI::SearchRegInfoScreen>());
    EXPECT_THAT(callsSince(), ElementsAre("requestShopInfoList"));
}

}  // namespace
}  // namespace flow
