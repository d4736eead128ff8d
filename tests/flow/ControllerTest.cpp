// SPDX-License-Identifier: Apache-2.0
// The flow object: its history, its popups and what each event of the daemon does.
#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "flow/FlowFixture.h"
#include "gui/Controller.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/MessagePopup.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"
#include "gui/Speech.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::Controller;
using ZOLT::GUI::Screen;

namespace flow {
namespace {

const std::vector<Level> TWO_TOPS = {{"Country", {{"North", "01"}, {"South", "02"}}},
                                     {"Store", {{"N1", "0101"}, {"S1", "0201"}}}};

// A screen that reports its destruction.
class MortalScreen : public Screen {
  public:
    MortalScreen(std::vector<std::string>& ended, std::string name)
        : Screen("Mortal", m_layoutName, "MainMenuUnregisteredWindow", 1920, 1080),
          m_ended(ended),
          m_name(std::move(name)) {}
    ~MortalScreen() override { m_ended.push_back(m_name); }

  private:
    std::vector<std::string>& m_ended;
    std::string m_name;
};

// Device information that fails with an object that is not a std::exception.
class BrokenSystemCalls : public ZOLT::SystemCalls {
  public:
    int systemInfoGetValueInt(system_info_key_e /*key*/, int* /*value*/) override { throw 5; }
};

class ControllerTest : public FlowFixture {
  protected:
    // All of the flow's own lines at a priority, in order.
    static std::vector<std::string> warnings() {
        return platform().messages(LOG_ID_SYSTEM, DLOG_WARN);
    }
    // A destroyed popup still exists, without its widgets.
    static void expectReplaced(const ZOLT::GUI::Popup& before) {
        EXPECT_EQ(nullptr, widgetOf(before));
        EXPECT_EQ(nullptr, backgroundOf(before));
    }
    void expectFailurePopup(const std::string& text) {
        ASSERT_NE(nullptr, popup<ZOLT::GUI::MessagePopup>());
        EXPECT_EQ(text, labelText());
        EXPECT_TRUE(popup()->getVisible());
        EXPECT_EQ(1, popup()->getButtonCount());
        EXPECT_TRUE(waitForFocus(partOf(widgetOf(*popup()), "button1")));
    }
    static constexpr const char* UNSTABLE = "SID_INTERNET_CONNECTION_NOT_STABLE_MSG";
};

TEST_F(ControllerTest, StartsWithNothingShownAndNothingChosen) {
    Controller& flow = makeFlow();
    EXPECT_TRUE(history().empty());
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(0U, level());
    EXPECT_EQ(0U, initialLevel());
    EXPECT_EQ(&flow, Controller::getController());
}

TEST_F(ControllerTest, LimitsAreFiveScreensAndThreeShops) {
    EXPECT_EQ(5U, Controller::m_historySizeLimit);
    EXPECT_EQ(3U, Controller::m_chosenShopsDisplayLimit);
}

TEST_F(ControllerTest, TakesOverTheEventsOfTheDaemonFromTheEarlierFlow) {
    bool old = false;
    ZOLT::GuiProxy::m_sendEventCallback = [&old](int, int) { old = true; };
    start();
    ZOLT::GuiProxy::m_sendEventCallback(1, 5);
    EXPECT_FALSE(old);
    expectFailurePopup(UNSTABLE);
}

TEST_F(ControllerTest, WithoutARegistrationFileTheMenuIsThatOfAnUnregisteredTV) {
    start();
    EXPECT_TRUE(shows<ZOLT::GUI::MainMenuUnregisteredScreen>());
    EXPECT_EQ(1U, history().size());
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(ControllerTest, WithARegistrationFileTheMenuIsThatOfARegisteredTV) {
    start(true);
    EXPECT_TRUE(shows<ZOLT::GUI::MainMenuRegisteredScreen>());
    EXPECT_EQ(1U, history().size());
}

TEST_F(ControllerTest, TheThemeIsLoadedBeforeTheFirstScreen) {
    start();
    std::vector<std::string> entered;
    for (const auto& line : platform().log()) {
        if (line.function == "loadLayouts" || line.function == "historyAppend") {
            entered.push_back(line.function);
        }
    }
    EXPECT_THAT(entered, ElementsAre("loadLayouts", "historyAppend"));
}

TEST_F(ControllerTest, TheFocusZoomSettingIsTakenWhenItCanBeRead) {
    platform().setVconf("db/menu/system/accessibility/focuszoom", 1);
    start();
    EXPECT_EQ(1, Controller::Enlarge);
}

TEST_F(ControllerTest, AFocusZoomSettingThatCannotBeReadChangesNothing) {
    platform().answer("vconf_get_int", -1);
    Controller::Enlarge = 7;
    start();
    EXPECT_EQ(7, Controller::Enlarge);
}

TEST_F(ControllerTest, TheSixthScreenDeletesTheOldestAndNoOther) {
    Controller& flow = makeFlow();
    std::vector<std::string> ended;
    for (const char* name : {"1", "2", "3", "4", "5"}) {
        flow.historyAppend(new MortalScreen(ended, name));
    }
    EXPECT_THAT(ended, IsEmpty());
    flow.historyAppend(new MortalScreen(ended, "6"));
    EXPECT_THAT(ended, ElementsAre("1"));
    EXPECT_EQ(5U, history().size());
    m_flow.reset();
    EXPECT_THAT(ended, ElementsAre("1", "2", "3", "4", "5", "6"));
}

TEST_F(ControllerTest, TheDestructorDeletesTheScreensOldestFirstAndClearsSelf) {
    Controller& flow = makeFlow();
    std::vector<std::string> ended;
    flow.historyAppend(new MortalScreen(ended, "old"));
    flow.historyAppend(nullptr);
    flow.historyAppend(new MortalScreen(ended, "new"));
    m_flow.reset();
    EXPECT_THAT(ended, ElementsAre("old", "new"));
    EXPECT_EQ(nullptr, Controller::getController());
}

TEST_F(ControllerTest, ASecondFlowThatReplacesTheFirstCannotBeFound) {
    start();
    makeFlow();
    EXPECT_EQ(nullptr, Controller::m_self);
}

TEST_F(ControllerTest, TheDestructorKeepsTheCallbackOfTheEvents) {
    start();
    m_flow.reset();
    EXPECT_TRUE(static_cast<bool>(ZOLT::GuiProxy::m_sendEventCallback));
}

TEST_F(ControllerTest, CancelTellsTheDaemonThatTheApplicationStopped) {
    start().cancel();
    EXPECT_THAT(callsSince(), ElementsAre("applicationCancelled"));
}

TEST_F(ControllerTest, TerminateEndsTheMainLoop) {
    Controller& flow = start();
    EXPECT_TRUE(endsMainLoop([&flow] { flow.terminate(); }));
    EXPECT_FALSE(endsMainLoop([] {}));
}

TEST_F(ControllerTest, HidingPopupsDestroysThatOfTheScreen) {
    Controller& flow = start();
    flow.showCompletionPopup();
    flow.hidePopups(&screen());
    EXPECT_EQ(nullptr, popup());
}

TEST_F(ControllerTest, ALoadingPopupIsSpokenAtOnceAndCountsAsRead) {
    start().showLoadingPopup("SID_CONNECTING_TO_NETWORK_SERVER");
    EXPECT_NE(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_TRUE(popup()->getVisible());
    EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", labelText());
    EXPECT_TRUE(Controller::m_wasLabelRead);
    EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", support::spoken());
    EXPECT_THAT(sounds(), ElementsAre(POPUP));
}

TEST_F(ControllerTest, EachPopupIsShownWithItsSoundAndAllButTheQuestionWithFocus) {
    Controller& flow = start();
    struct Case {
        std::function<void()> show;
        const char* text;
        int buttons;
        bool focused;
    };
    const Case cases[] = {
        {[&] { flow.showCompletionPopup(); }, "COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS", 1,
         true},
        {[&] { flow.showDeregistrationPopup(); }, "TV_SID_ARE_YOU_SURE_YOU_WANT_TO_DEREGISTER", 2,
         false},
        {[&] { flow.showDeregistrationSucceededPopup(); }, "COM_SID_DEREGISTERED_SUCCESSFULLY", 1,
         true},
        {[&] { flow.showNetworkFailurePopup(ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_NO_SERVER); },
         "COM_CANNOT_CONNECT_TO_SERVER", 1, true},
    };
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.text);
        screen().destroyPopup();
        platform().clearLog();
        platform().clearCalls();
        expected.show();
        EXPECT_EQ(expected.text, labelText());
        EXPECT_TRUE(popup()->getVisible());
        EXPECT_EQ(expected.buttons, popup()->getButtonCount());
        EXPECT_EQ(expected.focused ? 1 : 0, entered("focusButton"));
        ASSERT_FALSE(sounds().empty());
        EXPECT_EQ(POPUP, sounds().back());
    }
}

// --- events

TEST_F(ControllerTest, EveryEventIsLoggedWithItsTwoNumbers) {
    start().callbackManager(1, 6);
    EXPECT_TRUE(logged("Controller::callbackManager called (Event: 1; Reason: 6)"));
    const auto line =
        platform().findLine("Controller::callbackManager called (Event: 1; Reason: 6)");
    ASSERT_TRUE(line);
    EXPECT_EQ("Controller.cpp", line->file);
    EXPECT_EQ("callbackManager", line->function);
}

TEST_F(ControllerTest, EachSuccessMakesItsCallsAndScreens) {
    struct Case {
        int reason;
        size_t screens;
        std::vector<std::string> calls;
    };
    const Case cases[] = {
        {0, 2, {"checkShopRegistration", "getPincode", "requestPincodeVerification"}},
        {1, 1, {"requestShopInfoList"}},
        {2, 2, {"getShopInfoList", "getRegisteredShopInfo"}},
        {3, 1, {}},
        {4, 1, {}},
        {12, 2, {}},
    };
    daemon().answer("getPincode", "12345678");
    daemon().answer("getShopInfoList", document(TWO_TOPS));
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.reason);
        m_flow.reset();
        start().callbackManager(0, expected.reason);
        EXPECT_EQ(expected.screens, history().size());
        EXPECT_EQ(expected.calls, callsSince());
        EXPECT_THAT(warnings(), IsEmpty());
    }
}

TEST_F(ControllerTest, EachSuccessShowsItsScreenOrPopup) {
    daemon().answer("getPincode", "12345678");
    daemon().answer("getShopInfoList", document(TWO_TOPS));
    start().callbackManager(0, 0);
    EXPECT_TRUE(shows<ZOLT::GUI::PinDisplayingScreen>());
    m_flow->callbackManager(0, 1);
    EXPECT_NE(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", labelText());
    m_flow->callbackManager(0, 2);
    EXPECT_TRUE(shows<ZOLT::GUI::ShopListScreen>());
    EXPECT_EQ(nullptr, history().at(1)->getPopup());
    m_flow->callbackManager(0, 3);
    EXPECT_EQ("COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS", labelText());
    m_flow->callbackManager(0, 4);
    EXPECT_EQ("COM_SID_DEREGISTERED_SUCCESSFULLY", labelText());
    m_flow->callbackManager(0, 12);
    EXPECT_TRUE(shows<ZOLT::GUI::MainMenuUnregisteredScreen>());
}

TEST_F(ControllerTest, ARelaunchDestroysAllScreensOfTheFlowBeforeOldestFirst) {
    start(true);
    m_flow->showMainMenuUnregisteredScreen();
    m_flow->showRegistrationChangeScreen();
    platform().clearLog();
    makeFlow();
    std::vector<std::string> destroyed;
    for (const support::LogLine& line : platform().log()) {
        if (line.function[0] == '~' && line.function != "~Screen" &&
            line.file != "Controller.cpp" && line.file.find("Screen.cpp") != std::string::npos) {
            destroyed.push_back(line.function);
        }
    }
    EXPECT_THAT(destroyed, ElementsAre("~MainMenuRegisteredScreen", "~MainMenuUnregisteredScreen",
                                       "~RegistrationChangeScreen"));
    EXPECT_EQ(3, entered("~Screen"));
    EXPECT_TRUE(history().empty());
}

TEST_F(ControllerTest, AFailureOfTheDaemonShowsItsOwnPopup) {
    const std::pair<int, const char*> cases[] = {
        {5, UNSTABLE},
        {6, "COM_CANNOT_CONNECT_TO_THE_NETWORK"},
        {7, "COM_CANNOT_CONNECT_TO_SERVER"},
        {8, "COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED"},
        {9, "TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK"},
    };
    start();
    for (const auto& [reason, text] : cases) {
        SCOPED_TRACE(reason);
        const ZOLT::GUI::Popup* const before = popup();
        m_flow->callbackManager(1, reason);
        expectFailurePopup(text);
        if (before != nullptr) {
            expectReplaced(*before);
        }
        EXPECT_EQ(1U, history().size());
    }
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(ControllerTest, BothRequestsToCloseEndTheMainLoopWithoutAPopup) {
    start();
    for (const int reason : {10, 11}) {
        EXPECT_TRUE(endsMainLoop([&] { m_flow->callbackManager(1, reason); }));
        EXPECT_EQ(nullptr, popup());
    }
    EXPECT_THAT(sounds(), IsEmpty());
}

TEST_F(ControllerTest, EveryOtherPairOfNumbersShowsAnUnstableConnection) {
    const auto isKnown = [](int event, int reason) {
        return (event == 0 && ((reason >= 0 && reason <= 4) || reason == 12)) ||
               (event == 1 && reason >= 5 && reason <= 11);
    };
    start();
    for (int event = -1; event <= 3; ++event) {
        for (int reason = -1; reason <= 14; ++reason) {
            if (isKnown(event, reason)) {
                continue;
            }
            const std::string pair =
                " [Event: " + std::to_string(event) + "; Reason: " + std::to_string(reason) + "]";
            SCOPED_TRACE(pair);
            const std::string line = (event == 0   ? "Received unknown event reason"
                                      : event == 1 ? "Received unknown reason to close GUI"
                                                   : "Received unknown event type") +
                                     pair;
            const std::string caught = std::string("Exception caught during event handling: ") +
                                       (event == 0 ? "Unknown event reason" : "Unknown event type");
            platform().clearLog();
            m_flow->callbackManager(event, reason);
            EXPECT_THAT(warnings(), ElementsAre(line, caught));
            expectFailurePopup(UNSTABLE);
            EXPECT_EQ(1U, history().size());
        }
    }
    platform().clearLog();
}

TEST_F(ControllerTest, EventZeroWithReasonFiveIsAnUnknownReason) {
    announceWarning("Received unknown event reason [Event: 0; Reason: 5]");
    announceWarning("Exception caught during event handling: Unknown event reason");
    start().callbackManager(0, 5);
    expectFailurePopup(UNSTABLE);
}

TEST_F(ControllerTest, EventOneWithReasonZeroReportsTheType) {
    announceWarning("Received unknown reason to close GUI [Event: 1; Reason: 0]");
    announceWarning("Exception caught during event handling: Unknown event type");
    start().callbackManager(1, 0);
    expectFailurePopup(UNSTABLE);
}

TEST_F(ControllerTest, EventTwoIsAnUnknownType) {
    announceWarning("Received unknown event type [Event: 2; Reason: 0]");
    announceWarning("Exception caught during event handling: Unknown event type");
    start().callbackManager(2, 0);
    expectFailurePopup(UNSTABLE);
}

TEST_F(ControllerTest, AStandardExceptionShowsAnUnstableConnection) {
    daemon().answer("getPincode", "1234567");
    platform().clearLog();
    start().callbackManager(0, 0);
    ASSERT_EQ(1U, warnings().size());
    EXPECT_THAT(warnings()[0], testing::StartsWith("Exception caught during event handling: "));
    EXPECT_EQ(1U, history().size());
    expectFailurePopup(UNSTABLE);
    platform().clearLog();
}

TEST_F(ControllerTest, AnythingElseThatIsThrownShowsAnUnstableConnection) {
    start();
    BrokenSystemCalls calls;
    ZOLT::DeviceInfo device(&calls);
    Controller broken(&device);
    broken.historyAppend(new ZOLT::GUI::MainMenuUnregisteredScreen(1920, 1080));
    announceWarning("Unknown exception caught during event handling");
    broken.callbackManager(0, 12);
    EXPECT_EQ(UNSTABLE, labelText());
}

TEST_F(ControllerTest, ARefusalOfTheDaemonShowsAnUnstableConnectionInPlaceOfTheLoadingPopup) {
    daemon().fail("requestShopInfoList", "busy");
    start().callbackManager(0, 1);
    EXPECT_EQ(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    expectFailurePopup(UNSTABLE);
    ASSERT_EQ(1U, warnings().size());
    EXPECT_THAT(warnings()[0], testing::HasSubstr("Failed to request shop info list: "));
    EXPECT_THAT(warnings()[0], testing::EndsWith("busy"));
    const auto heard = sounds();
    EXPECT_EQ(2, std::count(heard.begin(), heard.end(), POPUP));
    platform().clearLog();
}

TEST_F(ControllerTest, AnAnswerOfTheDaemonClosesTheWaitingPopup) {
    const std::pair<int, int> answers[] = {{0, 3}, {0, 4}, {1, 5}, {1, 9}};
    start();
    for (const auto& [event, reason] : answers) {
        SCOPED_TRACE(reason);
        screen().destroyPopup();
        m_flow->showLoadingPopup("SID_CONNECTING_TO_NETWORK_SERVER");
        platform().clearLog();
        m_flow->callbackManager(event, reason);
        EXPECT_EQ(1, entered("destroyPopup"));
        EXPECT_EQ(1, entered("destroy"));
    }
}

TEST_F(ControllerTest, AFailureReplacesTheShownPopup) {
    start().showCompletionPopup();
    const ZOLT::GUI::Popup* const before = popup();
    announceWarning("Received unknown event type [Event: 9; Reason: 9]");
    announceWarning("Exception caught during event handling: Unknown event type");
    m_flow->callbackManager(9, 9);
    expectReplaced(*before);
    expectFailurePopup(UNSTABLE);
}

TEST_F(ControllerTest, WhatTheFailurePopupThrowsLeavesTheFunction) {
    Controller& flow = makeFlow();
    announceWarning("Received unknown event type [Event: 9; Reason: 9]");
    announceWarning("Exception caught during event handling: Unknown event type");
    EXPECT_THROW(flow.callbackManager(9, 9), ZOLT::Exception);
}

TEST_F(ControllerTest, AListThatLeadsToOneShopGoesToTheConfirmationOnly) {
    start();
    serve({{"Store", {{"Only", "01"}}}});
    EXPECT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ(2U, history().size());
    EXPECT_EQ(0, entered("showShopListScreen"));
}

TEST_F(ControllerTest, ADeletedRegistrationShowsANewMenuAboveTheOldScreens) {
    start(true).showCompletionPopup();
    Screen* const old = &screen();
    m_flow->callbackManager(0, 12);
    EXPECT_EQ(2U, history().size());
    EXPECT_TRUE(shows<ZOLT::GUI::MainMenuUnregisteredScreen>());
    EXPECT_EQ(old, history().at(1));
    EXPECT_NE(nullptr, old->getPopup());
}

TEST_F(ControllerTest, AnEventOfTheDaemonArrivesThroughTheBus) {
    start();
    daemon().emit(1, 7);
    EXPECT_TRUE(waitFor([this] { return popup() != nullptr; }));
    expectFailurePopup("COM_CANNOT_CONNECT_TO_SERVER");
    EXPECT_TRUE(logged("Controller::callbackManager called (Event: 1; Reason: 7)"));
}

}  // namespace
}  // namespace flow
