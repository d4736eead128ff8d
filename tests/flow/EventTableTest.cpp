// SPDX-License-Identifier: Apache-2.0
// What each pair of event and reason does on each screen, with each popup.
#include <algorithm>
#include <cstdlib>

#include <cxxabi.h>

#include <gmock/gmock.h>

#include "flow/FlowFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MessagePopup.h"
#include "gui/PinRequestingScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::Controller;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::Popup;
using ZOLT::GUI::Screen;
using ZOLT::GUI::SelectionPopup;

namespace flow {
namespace {

const std::vector<Level> TWO_TOPS = {
    {"Country", {{"North", "01"}, {"South", "02"}}},
    {"Store", {{"N1", "0101"}, {"N2", "0102"}, {"S1", "0201"}, {"S2", "0202"}}}};

constexpr const char* UNSTABLE = "SID_INTERNET_CONNECTION_NOT_STABLE_MSG";
constexpr const char* CONNECTING = "SID_CONNECTING_TO_NETWORK_SERVER";
constexpr size_t MOST_SCREENS = 5;

// --- what is expected

enum class Effect { ShowPin, Wait, ShowList, ShowMessage, ShowMenu, Fail, Close, Refuse };

struct Row {
    int event;
    int reason;
    Effect effect;
    const char* text;  // of the popup, if there is one
};

// Every pair that is not here is refused.
constexpr Row TABLE[] = {
    {0, 0, Effect::ShowPin, nullptr},
    {0, 1, Effect::Wait, CONNECTING},
    {0, 2, Effect::ShowList, nullptr},
    {0, 3, Effect::ShowMessage, "COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS"},
    {0, 4, Effect::ShowMessage, "COM_SID_DEREGISTERED_SUCCESSFULLY"},
    {0, 12, Effect::ShowMenu, nullptr},
    {1, 5, Effect::Fail, UNSTABLE},
    {1, 6, Effect::Fail, "COM_CANNOT_CONNECT_TO_THE_NETWORK"},
    {1, 7, Effect::Fail, "COM_CANNOT_CONNECT_TO_SERVER"},
    {1, 8, Effect::Fail, "COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED"},
    {1, 9, Effect::Fail, "TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK"},
    {1, 10, Effect::Close, nullptr},
    {1, 11, Effect::Close, nullptr},
};

// One event, and the state that the daemon reports afterwards.
struct DaemonEvent {
    int event;
    int reason;
    bool registered;  // whether the TV is registered
    bool oneShop;     // whether the list leaves nothing to choose
};

std::vector<DaemonEvent> allEvents() {
    std::vector<DaemonEvent> all;
    for (int event = -1; event <= 3; ++event) {
        for (int reason = -1; reason <= 14; ++reason) {
            all.push_back({event, reason, false, false});
        }
    }
    all.push_back({0, 0, true, false});
    all.push_back({0, 2, false, true});
    return all;
}

Row rowOf(const DaemonEvent& daemonEvent) {
    for (const Row& row : TABLE) {
        if (row.event == daemonEvent.event && row.reason == daemonEvent.reason) {
            return row;
        }
    }
    return {daemonEvent.event, daemonEvent.reason, Effect::Refuse, UNSTABLE};
}

// All that is visible from outside: screen, sounds, speech, calls to the daemon and log.
struct Snapshot {
    std::string screen;
    size_t depth = 0;
    std::string buttons = "as they were";  // of a new screen, with "*" and "!" as describe puts
    std::string popup = "none";
    std::string popupBefore = "none";  // what has become of it
    std::string popupBelow = "-";      // that of the screen before, if a new one lies on it
    std::string label;                 // the text for the screen reader
    std::string stoppedCircle = "none";
    std::string way;  // down the shop list
    std::string calls;
    std::string sounds;
    std::string warnings;
    bool ends = false;

    std::string text() const {
        return "screen: " + screen + "\ndepth: " + std::to_string(depth) + "\nbuttons: " + buttons +
               "\npopup: " + popup + "\npopup before: " + popupBefore +
               "\npopup below: " + popupBelow + "\nlabel: " + label +
               "\nstopped circle: " + stoppedCircle + "\nway: " + way + "\ncalls: " + calls +
               "\nsounds: " + sounds + "\nwarnings: " + warnings +
               "\nprogram: " + (ends ? "ends" : "goes on") + "\n";
    }
};

// What BEFORE becomes. Its calls, sounds and warnings are empty.
Snapshot expectedAfter(const Snapshot& before, const std::vector<std::string>& chosen,
                       const DaemonEvent& daemonEvent) {
    const Row row = rowOf(daemonEvent);
    const bool hadPopup = before.popup != "none";
    Snapshot after = before;
    const auto newScreen = [&](const std::string& name, bool popupStays) {
        after.screen = name;
        after.depth = std::min(before.depth + 1, MOST_SCREENS);
        after.popup = "none";
        after.popupBefore = !hadPopup ? "none" : popupStays ? "stands" : "destroyed";
        after.popupBelow = popupStays ? before.popup : "none";
    };
    const auto newPopup = [&](const std::string& popup, bool oldStays) {
        after.popup = popup;
        after.popupBefore = !hadPopup ? "none" : oldStays ? "stands" : "destroyed";
        after.label = std::string(row.text) + " to be spoken";
        after.sounds = "45 ";
    };
    const std::string numbers = " [Event: " + std::to_string(daemonEvent.event) +
                                "; Reason: " + std::to_string(daemonEvent.reason) + "]\n";
    const std::string caught = "Exception caught during event handling: ";
    switch (row.effect) {
        case Effect::ShowPin:
            newScreen("PinDisplayingScreen", true);
            after.buttons = "cancelBtnEnlarge=SID_CANCEL*! ";
            after.buttons += daemonEvent.registered ? "RegistrationInfo=N1 : 0101 "
                                                    : "RegistrationInfo=TV_SID_UNREGISTERED ";
            after.calls = daemonEvent.registered
                              ? "checkShopRegistration getPincode "
                                "getRegisteredShopInfo requestPincodeVerification "
                              : "checkShopRegistration getPincode "
                                "requestPincodeVerification ";
            after.label = "TV_SID_PIN_CODE, 1, 2, 3, 4, 5, 6, 7, 8 to be spoken";
            if (before.screen == "PinRequestingScreen") {
                after.stoppedCircle = "screen's";
            }
            break;
        case Effect::Wait:
            newPopup(std::string("loading '") + CONNECTING + "' [] 0 s shown", true);
            after.label = std::string(CONNECTING) + " spoken";
            after.calls = "requestShopInfoList ";
            break;
        case Effect::ShowList:
            after.way = "level 0 from 0: ";
            if (daemonEvent.oneShop) {
                newScreen("RegistrationInfoScreen", true);
                after.buttons = before.screen == "ShopListScreen"
                                    ? "prevBtn=SID_PREVIOUS* regBtn=SID_REGISTER*! "
                                    : "singleBtn=SID_REGISTER*! ";
                after.calls = "getShopInfoList ";
                after.way += "Only ";
                if (before.popup.compare(0, 7, "loading") == 0) {
                    after.stoppedCircle = "popup's";
                }
            } else {
                newScreen("ShopListScreen", false);
                after.buttons = "singleBtn=SID_NEXT selectBtn=TV_SID_SELECT_M_MSG*! ";
                if (!chosen.empty()) {
                    after.buttons += "shop1=" + chosen.back() + " ";
                }
                after.calls = "getShopInfoList getRegisteredShopInfo ";
            }
            for (const std::string& name : chosen) {
                after.way += name + " ";
            }
            break;
        case Effect::ShowMessage:
            newPopup(std::string("message '") + row.text + "' [SID_OK!] 0 s shown", false);
            break;
        case Effect::ShowMenu:
            newScreen("MainMenuUnregisteredScreen", true);
            after.buttons =
                "newRegBtn=TV_SID_NEW_REGISTRATION*! existRegBtn=TV_SID_EXISTING_REGISTRATION* "
                "cancelBtn=SID_CANCEL* ";
            break;
        case Effect::Refuse:
            if (daemonEvent.event == 0) {
                after.warnings =
                    "Received unknown event reason" + numbers + caught + "Unknown event reason\n";
            } else if (daemonEvent.event == 1) {
                after.warnings = "Received unknown reason to close GUI" + numbers + caught +
                                 "Unknown event type\n";
            } else {
                after.warnings =
                    "Received unknown event type" + numbers + caught + "Unknown event type\n";
            }
            [[fallthrough]];
        case Effect::Fail:
            newPopup(std::string("message '") + row.text + "' [SID_OK!] 60 s shown", false);
            break;
        case Effect::Close:
            after.ends = true;
            after.popupBefore = hadPopup ? "stands" : "none";
            break;
    }
    return after;
}

// --- what happens

class EventFixture : public FlowFixture {
  public:
    // --- shows each screen with the steps of a person
    void onUnregisteredMenu() { start(); }
    void onRegisteredMenu() { start(true); }
    void onPinRequest() {
        start();
        click(EventHandler::pinRequestingScreenRequested);
    }
    void onPin() {
        onPinRequest();
        event(0, 0);
    }
    void onInitialList() {
        start();
        serve(TWO_TOPS);
    }
    void onLowerList() {
        onInitialList();
        choose("North");
        click(EventHandler::nextSelectionScreenRequested);
    }
    void onLoneConfirmation() {
        start();
        serve(ONE_SHOP);
    }
    void onConfirmationAboveList() {
        onLowerList();
        choose("N2");
        click(EventHandler::registrationConfirmationScreenRequested);
    }
    void onInformation() {
        daemon().answer("getRegisteredShopInfo", document(REGISTERED));
        start(true);
        click(EventHandler::registrationInformationScreenRequested);
    }
    void onMenuAboveMenu() {
        start(true);
        click(EventHandler::reRegistrationScreenRequested);
        event(0, 12);
    }
    void onMenuGoneBackTo() {
        onInformation();
        click(EventHandler::goBackRequested);
    }
    void onFullHistory() {
        start(true);
        for (size_t screens = 1; screens < MOST_SCREENS; ++screens) {
            event(0, 12);
        }
    }

  protected:
    void SetUp() override {
        FlowFixture::SetUp();
        daemon().answer("getPincode", "12345678");
    }

    static std::string describePopup(Popup* popup) {
        if (popup == nullptr) {
            return "none";
        }
        Evas_Object* const widget = widgetOf(*popup);
        std::string kind = "selection";
        std::string text;
        if (dynamic_cast<ZOLT::GUI::LoadingPopup*>(popup) != nullptr) {
            kind = "loading";
            text = textOf(elm_table_child_get(partOf(widget), 2, 0));
        } else if (dynamic_cast<ZOLT::GUI::MessagePopup*>(popup) != nullptr) {
            kind = "message";
            const std::string opening = "<align=center>";
            const std::string closing = "</align>";
            text = textOf(partOf(widget));
            EXPECT_EQ(opening, text.substr(0, opening.size()));
            text = text.substr(opening.size(), text.size() - opening.size() - closing.size());
        }
        std::string buttons;
        for (int number = 1; number <= popup->getButtonCount(); ++number) {
            Evas_Object* const button = partOf(widget, ("button" + std::to_string(number)).c_str());
            buttons += (number > 1 ? " " : "") + textOf(button);
            // If there are several buttons the toolkit chooses which one gets the focus.
            if (popup->getButtonCount() == 1 && popup->getVisible() && gotFocus(button)) {
                buttons += "!";
            }
        }
        return kind + " '" + text + "' [" + buttons + "] " +
               std::to_string(static_cast<int>(elm_popup_timeout_get(widget))) + " s " +
               (popup->getVisible() ? "shown" : "hidden");
    }

    // A popup moves the focus only after its layout.
    static bool gotFocus(Evas_Object* button) {
        return turnUntil([button] { return focusedIn(button) == button; });
    }

    std::string describeButtons() {
        std::string result;
        for (const char* part : {"newRegBtn", "existRegBtn", "cancelBtn", "cancelBtnEnlarge",
                                 "singleBtn", "prevBtn", "nextBtn", "regBtn", "selectBtn"}) {
            if (const std::string button = describe(part); !button.empty()) {
                result += std::string(part) + "=" + button + " ";
            }
        }
        for (const char* part : {"RegistrationInfo", "shop1"}) {
            if (const std::string text = textOf(layoutOf(screen()), part); !text.empty()) {
                result += std::string(part) + "=" + text + " ";
            }
        }
        return result;
    }

    Snapshot look() {
        Snapshot snapshot;
        int status = 0;
        const ZOLT::GUI::Screen& shown = screen();
        char* const name = abi::__cxa_demangle(typeid(shown).name(), nullptr, nullptr, &status);
        snapshot.screen = name;
        std::free(name);
        snapshot.screen.erase(0, snapshot.screen.rfind(':') + 1);
        snapshot.depth = history().size();
        snapshot.popup = describePopup(screen().getPopup());
        snapshot.label = labelText() + (Controller::m_wasLabelRead ? " spoken" : " to be spoken");
        snapshot.way =
            "level " + std::to_string(level()) + " from " + std::to_string(initialLevel()) + ": ";
        for (const std::string& shop : chosen()) {
            snapshot.way += shop + " ";
        }
        return snapshot;
    }

    // Whether ACTION ends the main loop: a timer that is added then never runs.
    static bool ends(const std::function<void()>& action) {
        struct Run {
            const std::function<void()>& action;
            Ecore_Timer* timer = nullptr;
            bool ranOn = false;
        } run{action};
        ecore_job_add(
            [](void* data) {
                auto* const running = static_cast<Run*>(data);
                running->action();
                running->timer = ecore_timer_add(
                    0.0,
                    [](void* late) -> Eina_Bool {
                        static_cast<Run*>(late)->ranOn = true;
                        ecore_main_loop_quit();
                        return ECORE_CALLBACK_RENEW;
                    },
                    data);
            },
            &run);
        ecore_main_loop_begin();
        ecore_timer_del(run.timer);
        return !run.ranOn;
    }

    void prepareDaemon(const DaemonEvent& daemonEvent) {
        daemon().setRegistered(daemonEvent.registered);
        daemon().answer("getRegisteredShopInfo",
                        daemonEvent.registered ? document(REGISTERED) : "");
        daemon().answer("getShopInfoList", document(daemonEvent.oneShop ? ONE_SHOP : TWO_TOPS));
    }

    // Sends the event and compares all that it does with the table.
    void check(const DaemonEvent& daemonEvent) {
        prepareDaemon(daemonEvent);
        const Snapshot before = look();
        const std::vector<std::string> chosenBefore = chosen();
        Screen* const screenBefore = &screen();
        const Popup* const popupBefore = screen().getPopup();
        EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
        platform().clearLog();
        const size_t heardBefore = sounds().size();
        callsSince();

        const bool ended =
            ends([&] { m_flow->callbackManager(daemonEvent.event, daemonEvent.reason); });

        std::string warnings;
        for (const std::string& line : platform().messages(LOG_ID_SYSTEM, DLOG_WARN)) {
            warnings += line + "\n";
        }
        const int circlesOfScreens = entered("RemoveProgressBar", "PinRequestingScreen.cpp");
        const int circlesOfPopups = entered("RemoveProgressBar", "LoadingPopup.cpp");
        std::string played;
        settle();
        const std::vector<int> heard = sounds();
        for (size_t place = heardBefore; place < heard.size(); ++place) {
            // The toolkit moves the focus later.
            played += heard[place] == MOVE ? "" : std::to_string(heard[place]) + " ";
        }
        Snapshot after = look();
        after.ends = ended;
        after.warnings = warnings;
        after.sounds = played;
        for (const std::string& call : callsSince()) {
            after.calls += call + " ";
        }
        after.stoppedCircle = std::string(circlesOfScreens > 0 ? "screen's" : "") +
                              (circlesOfPopups > 0 ? "popup's" : "");
        if (after.stoppedCircle.empty()) {
            after.stoppedCircle = "none";
        }
        if (popupBefore != nullptr) {
            after.popupBefore = widgetOf(*popupBefore) != nullptr ? "stands" : "destroyed";
        }
        if (&screen() != screenBefore) {
            ASSERT_EQ(screenBefore, history().at(1));
            after.popupBelow = describePopup(screenBefore->getPopup());
            after.buttons = describeButtons();
        }
        EXPECT_EQ(expectedAfter(before, chosenBefore, daemonEvent).text(), after.text());
        platform().clearLog();
    }

    // The back key ends the program wherever something has the focus. A screen that waits for the
    // daemon has nothing to focus, so there a failure event comes first.
    void expectBackEndsProgram() {
        if (popup<ZOLT::GUI::LoadingPopup>() != nullptr ||
            (popup() == nullptr && shows<ZOLT::GUI::PinRequestingScreen>())) {
            event(1, 7);
            EXPECT_TRUE(gotFocus(partOf(widgetOf(*popup()), "button1")));
        }
        Evas_Object* const window = windowOf(screen());
        EXPECT_TRUE(ends([window] {
            feedKeyDown(window, "XF86Back");
            feedKeyUp(window, "XF86Back");
        }));
    }
};

struct State {
    const char* name;
    void (EventFixture::*reach)();
    bool list;
};

std::string nameOf(const testing::TestParamInfo<State>& state) {
    return state.param.name;
}

void PrintTo(const State& state, std::ostream* stream) {
    *stream << state.name;
}

enum class Up { Nothing, Loading, Question, OneButton, Failure, Selection, HiddenSelection };

constexpr std::pair<Up, const char*> POPUPS[] = {
    {Up::Nothing, "without a popup"},     {Up::Loading, "while it waits"},
    {Up::Question, "under a question"},   {Up::OneButton, "under a message"},
    {Up::Failure, "under a failure"},     {Up::Selection, "under the drop-down"},
    {Up::HiddenSelection, "after a pick"}};

class EventTableTest : public EventFixture, public testing::WithParamInterface<State> {
  protected:
    void reach() {
        // As the daemon of an unregistered TV, whatever the last event was.
        prepareDaemon({0, 0, false, false});
        m_flow.reset();
        std::remove(m_folder.file("registered").c_str());
        (this->*GetParam().reach)();
    }

    // Every event that has an effect, and two refused ones of each type.
    static std::vector<DaemonEvent> mostEvents() {
        std::vector<DaemonEvent> most = allEvents();
        const auto isSpare = [](const DaemonEvent& daemonEvent) {
            return rowOf(daemonEvent).effect == Effect::Refuse && daemonEvent.reason != 8 &&
                   daemonEvent.reason != 14;
        };
        most.erase(std::remove_if(most.begin(), most.end(), isSpare), most.end());
        return support::isLongRun() ? allEvents() : most;
    }

    static bool changesScreens(const DaemonEvent& daemonEvent) {
        const Effect effect = rowOf(daemonEvent).effect;
        return effect == Effect::ShowPin || effect == Effect::Wait || effect == Effect::ShowList ||
               effect == Effect::ShowMenu;
    }

    void putUp(Up popup) {
        screen().destroyPopup();
        switch (popup) {
            case Up::Nothing:
                break;
            case Up::Loading:
                m_flow->showLoadingPopup("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT");
                break;
            case Up::Question:
                m_flow->showDeregistrationPopup();
                break;
            case Up::OneButton:
                m_flow->showCompletionPopup();
                break;
            case Up::Failure:
                m_flow->showNetworkFailurePopup(ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_NO_SERVER);
                break;
            case Up::Selection:
                click(EventHandler::selectionPopupRequested);
                break;
            case Up::HiddenSelection:
                choose(level() == 0 ? "South" : "N1");
                break;
        }
    }
};

TEST_P(EventTableTest, EachPairDoesWhatTheTableSaysWithEachPopup) {
    for (const auto& [popup, note] : POPUPS) {
        if ((popup == Up::Selection || popup == Up::HiddenSelection) && !GetParam().list) {
            continue;
        }
        SCOPED_TRACE(note);
        bool fresh = false;
        for (const DaemonEvent& daemonEvent : popup == Up::Nothing ? allEvents() : mostEvents()) {
            SCOPED_TRACE("event " + std::to_string(daemonEvent.event) + ", reason " +
                         std::to_string(daemonEvent.reason));
            if (!fresh) {
                reach();
            }
            putUp(popup);
            check(daemonEvent);
            if (HasFatalFailure()) {
                return;
            }
            fresh = !changesScreens(daemonEvent);
        }
    }
}

TEST_P(EventTableTest, EachPairMayComeTwiceAndTheProgramStillAnswersAKey) {
    bool fresh = false;
    for (const DaemonEvent& daemonEvent : mostEvents()) {
        SCOPED_TRACE("event " + std::to_string(daemonEvent.event) + ", reason " +
                     std::to_string(daemonEvent.reason));
        if (!fresh) {
            reach();
        }
        putUp(Up::Nothing);
        check(daemonEvent);
        check(daemonEvent);
        if (HasFatalFailure()) {
            return;
        }
        expectBackEndsProgram();
        fresh = !changesScreens(daemonEvent);
    }
}

INSTANTIATE_TEST_SUITE_P(
    On, EventTableTest,
    testing::Values(State{"TheUnregisteredMenu", &EventFixture::onUnregisteredMenu, false},
                    State{"TheRegisteredMenu", &EventFixture::onRegisteredMenu, false},
                    State{"ThePinRequest", &EventFixture::onPinRequest, false},
                    State{"ThePin", &EventFixture::onPin, false},
                    State{"TheInitialList", &EventFixture::onInitialList, true},
                    State{"ALowerList", &EventFixture::onLowerList, true},
                    State{"ALoneConfirmation", &EventFixture::onLoneConfirmation, false},
                    State{"AConfirmationAboveAList", &EventFixture::onConfirmationAboveList, false},
                    State{"TheInformation", &EventFixture::onInformation, false},
                    State{"ANewMenuAboveTheOldOne", &EventFixture::onMenuAboveMenu, false},
                    State{"AMenuGoneBackTo", &EventFixture::onMenuGoneBackTo, false},
                    State{"AFullHistory", &EventFixture::onFullHistory, false}),
    nameOf);

// --- events in a burst

class EventBurstTest : public EventFixture {
  protected:
    static constexpr int MANY = 50;

    // Makes the daemon send all EVENTS before the program handles the first.
    void burst(const std::vector<std::pair<int, int>>& events) {
        platform().clearLog();
        for (const auto& [event, reason] : events) {
            daemon().emit(event, reason);
        }
        const auto handled = [] {
            const auto lines = platform().messages(LOG_ID_SYSTEM, DLOG_DEBUG);
            return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
                return line.rfind("Controller::callbackManager called", 0) == 0;
            });
        };
        const auto all = static_cast<std::ptrdiff_t>(events.size());
        EXPECT_TRUE(waitFor([&] { return handled() >= all; }));
        settle();
        EXPECT_EQ(all, handled());
    }
    static std::vector<std::pair<int, int>> many(int event, int reason) {
        return std::vector<std::pair<int, int>>(MANY, {event, reason});
    }
};

TEST_F(EventBurstTest, ManyFailuresShowOnePopupWhoseButtonEndsTheProgram) {
    start();
    burst(many(1, 7));
    EXPECT_EQ("message 'COM_CANNOT_CONNECT_TO_SERVER' [SID_OK!] 60 s shown",
              describePopup(popup()));
    EXPECT_EQ(1U, history().size());
    EXPECT_TRUE(ends([this] {
        feedKeyDown(windowOf(screen()), "Return");
        feedKeyUp(windowOf(screen()), "Return");
    }));
}

TEST_F(EventBurstTest, AfterManyMenusFiveAreKeptAndTheLastMovesItsFocus) {
    start(true);
    burst(many(0, 12));
    EXPECT_EQ(MOST_SCREENS, history().size());
    ASSERT_TRUE(waitForFocus(button("newRegBtn")));
    press(windowOf(screen()), "Down");
    EXPECT_TRUE(gotFocus(button("existRegBtn")));
}

TEST_F(EventBurstTest, ManyPinsAreEachRequestedAndTheButtonOfTheLastWorks) {
    start();
    burst(many(0, 0));
    EXPECT_EQ(MOST_SCREENS, history().size());
    EXPECT_EQ(3U * MANY, callsSince().size());
    ASSERT_TRUE(waitForFocus(button("cancelBtnEnlarge")));
    EXPECT_TRUE(ends([this] {
        feedKeyDown(windowOf(screen()), "Return");
        feedKeyUp(windowOf(screen()), "Return");
    }));
}

TEST_F(EventBurstTest, AfterManyListsTheDropDownOpens) {
    daemon().answer("getShopInfoList", document(TWO_TOPS));
    start();
    burst(many(0, 2));
    EXPECT_EQ(MOST_SCREENS, history().size());
    ASSERT_TRUE(waitForFocus(button("selectBtn")));
    press(windowOf(screen()), "Return");
    ASSERT_NE(nullptr, popup<SelectionPopup>());
    EXPECT_THAT(offered(), ElementsAre("North", "South"));
}

TEST_F(EventBurstTest, AfterManyWaitsTheProgramCanBeClosed) {
    start();
    burst(many(0, 1));
    EXPECT_EQ(std::string("loading '") + CONNECTING + "' [] 0 s shown", describePopup(popup()));
    expectBackEndsProgram();
}

TEST_F(EventBurstTest, ManyEventsOfAllKindsEachDoTheirPart) {
    daemon().answer("getShopInfoList", document(TWO_TOPS));
    std::vector<std::pair<int, int>> events;
    while (events.size() < 2 * MANY - 1) {
        for (const DaemonEvent& daemonEvent : allEvents()) {
            if (rowOf(daemonEvent).effect != Effect::Close && events.size() < 2 * MANY - 1) {
                events.emplace_back(daemonEvent.event, daemonEvent.reason);
            }
        }
    }
    events.emplace_back(0, 4);
    start();
    burst(events);
    EXPECT_EQ(MOST_SCREENS, history().size());
    EXPECT_EQ("message 'COM_SID_DEREGISTERED_SUCCESSFULLY' [SID_OK!] 0 s shown",
              describePopup(popup()));
    platform().clearLog();
    expectBackEndsProgram();
}

TEST_F(EventBurstTest, ARequestToCloseEndsTheProgramHoweverMuchFollows) {
    start();
    EXPECT_TRUE(ends([this] {
        for (int time = 0; time < MANY; ++time) {
            m_flow->callbackManager(1, 10 + time % 2);
        }
        m_flow->callbackManager(1, 6);
    }));
    EXPECT_EQ("message 'COM_CANNOT_CONNECT_TO_THE_NETWORK' [SID_OK!] 60 s shown",
              describePopup(popup()));
}

// --- a daemon that fails

enum class Answer { Refusal, WrongType, Empty, Null, Broken, WithoutList };

// A call of the daemon that fails while an event is handled: the columns of a table, in reading
// order.
struct Failure {  // NOLINT(clang-analyzer-optin.performance.Padding)
    int reason;
    bool registered;
    const char* method;
    Answer answer;
    const char* cause;               // the end of the log line
    std::vector<std::string> calls;  // all calls up to the failure
    const char* onScreen;            // the screen of the failure popup
    bool popupStays;                 // the waiting popup on the menu, which is below by then
};

class DaemonFailureTest : public EventFixture {
  protected:
    void answerBadly(const Failure& failure) {
        const std::string method = failure.method;
        const bool givesText = method.compare(0, 3, "get") == 0;
        switch (failure.answer) {
            case Answer::Refusal:
                daemon().fail(method, "busy");
                break;
            case Answer::WrongType:
                daemon().answerTuple(method, givesText ? "(5,)" : "('surplus',)");
                break;
            case Answer::Empty:
                daemon().answer(method, "");
                break;
            case Answer::Null:
                daemon().answer(method, "null");
                break;
            case Answer::Broken:
                daemon().answer(method, "<rsp><list");
                break;
            case Answer::WithoutList:
                daemon().answer(method, "<rsp/>");
                break;
        }
    }

    // Each on a new menu that waits for the daemon.
    void check(const Failure& failure) {
        m_flow.reset();
        m_daemon.reset();
        m_daemon = std::make_unique<FakeDaemon>();
        daemon().answer("getPincode", "12345678");
        prepareDaemon({0, failure.reason, failure.registered, false});
        answerBadly(failure);
        start();
        m_flow->showLoadingPopup("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT");
        Screen* const menu = &screen();
        const Popup* const waiting = popup();
        platform().clearLog();
        callsSince();
        event(0, failure.reason);
        EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN),
                    ElementsAre(testing::StartsWith(
                        std::string("Exception caught during event handling: ") + failure.cause)));
        EXPECT_EQ(failure.calls, callsSince());
        const Snapshot after = look();
        EXPECT_EQ(failure.onScreen, after.screen);
        EXPECT_EQ(std::string("message '") + UNSTABLE + "' [SID_OK!] 60 s shown", after.popup);
        EXPECT_EQ("level 0 from 0: ", after.way);
        EXPECT_EQ(menu, history().back());
        EXPECT_EQ(&screen() == menu ? 1U : 2U, history().size());
        EXPECT_EQ(failure.popupStays, widgetOf(*waiting) != nullptr);
        platform().clearLog();
        EXPECT_TRUE(ends([this] {
            feedKeyDown(windowOf(screen()), "Return");
            feedKeyUp(windowOf(screen()), "Return");
        }));
    }

    static constexpr const char* MENU = "MainMenuUnregisteredScreen";
    static constexpr const char* PIN = "PinDisplayingScreen";
};

TEST_F(DaemonFailureTest, EachCallForThePinMayFail) {
    const std::vector<std::string> first = {"checkShopRegistration"};
    const std::vector<std::string> second = {"checkShopRegistration", "getPincode"};
    const std::vector<std::string> third = {"checkShopRegistration", "getPincode",
                                            "requestPincodeVerification"};
    const std::vector<std::string> shop = {"checkShopRegistration", "getPincode",
                                           "getRegisteredShopInfo"};
    const Failure failures[] = {
        {0, false, "checkShopRegistration", Answer::Refusal,
         "Failed to check shop registration: ", first, MENU, false},
        {0, false, "checkShopRegistration", Answer::WrongType,
         "Failed to check shop registration: ", first, MENU, false},
        {0, false, "getPincode", Answer::Refusal, "Failed to get pincode: ", second, MENU, false},
        {0, false, "getPincode", Answer::WrongType, "Failed to get pincode: ", second, MENU, false},
        {0, false, "getPincode", Answer::Empty, "", second, MENU, false},
        {0, true, "getRegisteredShopInfo", Answer::Refusal,
         "Failed to get registered shop info: ", shop, MENU, false},
        {0, true, "getRegisteredShopInfo", Answer::WrongType,
         "Failed to get registered shop info: ", shop, MENU, false},
        {0, true, "getRegisteredShopInfo", Answer::Empty, "Input XML is empty", shop, MENU, false},
        {0, true, "getRegisteredShopInfo", Answer::Null, "Failed to parse XML", shop, MENU, false},
        {0, true, "getRegisteredShopInfo", Answer::Broken, "Failed to parse XML", shop, MENU,
         false},
        {0, true, "getRegisteredShopInfo", Answer::WithoutList, "No Node under", shop, MENU, false},
        {0, false, "requestPincodeVerification", Answer::Refusal,
         "Failed to request pincode verification: ", third, PIN, true},
        {0, false, "requestPincodeVerification", Answer::WrongType,
         "Failed to request pincode verification: ", third, PIN, true},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.method + (" " + std::to_string(static_cast<int>(failure.answer))));
        check(failure);
    }
}

TEST_F(DaemonFailureTest, EachCallForTheListMayFail) {
    const std::vector<std::string> request = {"requestShopInfoList"};
    const std::vector<std::string> list = {"getShopInfoList"};
    const std::vector<std::string> shop = {"getShopInfoList", "getRegisteredShopInfo"};
    const char* const registered = "getRegisteredShopInfo";
    const Failure failures[] = {
        {1, false, "requestShopInfoList", Answer::Refusal,
         "Failed to request shop info list: ", request, MENU, true},
        {1, false, "requestShopInfoList", Answer::WrongType,
         "Failed to request shop info list: ", request, MENU, true},
        {2, false, "getShopInfoList", Answer::Refusal, "Failed to get shop list: ", list, MENU,
         false},
        {2, false, "getShopInfoList", Answer::WrongType, "Failed to get shop list: ", list, MENU,
         false},
        {2, false, "getShopInfoList", Answer::Empty, "Shop list is empty ", list, MENU, false},
        {2, false, "getShopInfoList", Answer::Null, "Shop list is empty ", list, MENU, false},
        {2, false, "getShopInfoList", Answer::Broken, "Failed to parse XML", list, MENU, false},
        {2, false, "getShopInfoList", Answer::WithoutList, "No Node under", list, MENU, false},
        {2, true, registered, Answer::Refusal, "Failed to get registered shop info: ", shop, MENU,
         false},
        {2, true, registered, Answer::WrongType, "Failed to get registered shop info: ", shop, MENU,
         false},
        {2, true, registered, Answer::Broken, "Failed to parse XML", shop, MENU, false},
        {2, true, registered, Answer::WithoutList, "No Node under", shop, MENU, false},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.method + (" " + std::to_string(static_cast<int>(failure.answer))));
        check(failure);
    }
}

TEST_F(DaemonFailureTest, AListNeedsNoRegisteredShop) {
    for (const char* none : {"", "null"}) {
        start();
        daemon().answer("getRegisteredShopInfo", none);
        serve(TWO_TOPS);
        EXPECT_TRUE(shows<ZOLT::GUI::ShopListScreen>());
        EXPECT_EQ(nullptr, popup());
    }
}

}  // namespace
}  // namespace flow
