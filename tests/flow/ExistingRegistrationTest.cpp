// SPDX-License-Identifier: Apache-2.0
// An existing registration with the remote's keys, from the menu to the completion popup, against
// the stand-in daemon as a process of its own.
#include <Ecore_Evas.h>
#include <gmock/gmock.h>

#include "flow/FlowFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/MessagePopup.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"
#include "host/toolkit/MainLoopBridge.h"
#include "support/PrivateBus.h"

using testing::ElementsAre;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::SelectionPopup;
using ZOLT::GUI::ShopListScreen;

// Functions of the toolkit with which an engine moves the focus between windows.
extern "C" void _ecore_evas_focus_device_set(Ecore_Evas* window, void* seat, Eina_Bool on);

namespace flow {
namespace {

class ExistingRegistrationTest : public FlowFixture {
  protected:
    void SetUp() override {
        FlowFixture::SetUp();
        m_daemon.reset();  // the daemon process needs its name
        host::MainLoopBridge::install();
    }
    void TearDown() override {
        host::MainLoopBridge::remove();
        FlowFixture::TearDown();
    }

    // Starts the daemon with its scenario, then the program.
    void startBoth(const std::string& scenario) {
        m_process = std::make_unique<support::StandInDaemon>(scenario);
        m_process->start();
        configure("ShopRegistrationFilePath", m_process->folder().file("data/registered"));
        makeFlow().initialize();
        giveFocus(windowOf(screen()));
        ASSERT_TRUE(waitForFocus(button("newRegBtn")));
        EventHandler::m_keyUnfocused = false;
    }

    // Presses a key of the remote on the current screen.
    void remote(const std::string& key) {
        giveFocus(windowOf(screen()));
        press(windowOf(screen()), key);
    }

    // The buffer engine gives a canvas the focus before the toolkit listens for it, and a list
    // ignores arrows in a window that has no focus as far as the toolkit knows.
    void giveFocus(Evas_Object* window) {
        if (window == m_focusedWindow) {
            return;
        }
        m_focusedWindow = window;
        Ecore_Evas* const canvas = ecore_evas_ecore_evas_get(evas_object_evas_get(window));
        for (const Eina_Bool on : {EINA_FALSE, EINA_TRUE}) {
            _ecore_evas_focus_device_set(canvas, nullptr, on);
            settle();
        }
    }

    template <typename ScreenType>
    bool reaches() {
        return turnUntil([this] { return shows<ScreenType>(); });
    }

    // Opens the drop-down, goes down to the entry NAME, picks it and confirms it.
    void chooseByKeys(const std::string& name) {
        ASSERT_TRUE(waitForFocus(button("selectBtn")));
        remote("Return");
        ASSERT_TRUE(turnUntil([this] { return popup<SelectionPopup>() != nullptr; }));
        SelectionPopup* const list = popup<SelectionPopup>();
        ASSERT_TRUE(waitForFocus(list->m_list));
        for (unsigned row = 0; focusedEntry(*list) != name; ++row) {
            ASSERT_LT(row, list->m_itemsCount) << name;
            remote("Down");
        }
        remote("Return");
        ASSERT_TRUE(waitForFocus(partOf(widgetOf(*list), "button1")));
        EXPECT_EQ(name, list->m_selectedShop->name);
        remote("Return");
        EXPECT_FALSE(list->getVisible());
    }

    static std::string focusedEntry(const SelectionPopup& list) {
        for (Elm_Object_Item* item = elm_genlist_first_item_get(list.m_list); item != nullptr;
             item = elm_genlist_item_next_get(item)) {
            if (elm_object_item_focus_get(item)) {
                return static_cast<ZOLT::Shop*>(elm_object_item_data_get(item))->name;
            }
        }
        return "";
    }

    // The methods that the daemon was asked for, in order.
    std::vector<std::string> calls() {
        const std::string mark = "call ";
        std::vector<std::string> methods;
        for (const std::string& line : m_process->journal()) {
            if (line.compare(0, mark.size(), mark) == 0) {
                methods.push_back(
                    line.substr(mark.size(), line.find(' ', mark.size()) - mark.size()));
            }
        }
        return methods;
    }

    std::unique_ptr<support::StandInDaemon> m_process;
    Evas_Object* m_focusedWindow = nullptr;  // belongs to its screen
};

TEST_F(ExistingRegistrationTest, GoesFromTheMenuToTheCompletionPopup) {
    startBoth("[daemon]\ndelay=1\nshops=retail\n");
    remote("Down");
    ASSERT_TRUE(waitForFocus(button("existRegBtn")));
    remote("Return");
    ASSERT_TRUE(reaches<ShopListScreen>());
    EXPECT_TRUE(logged("Controller::callbackManager called (Event: 0; Reason: 2)"));
    EXPECT_EQ(2U, history().size());
    EXPECT_EQ(1U, level()) << "the one country is passed over";
    EXPECT_THAT(chosen(), ElementsAre("United Kingdom"));
    EXPECT_EQ("United Kingdom", textOf(layoutOf(screen()), "shop1"));

    chooseByKeys("London");
    EXPECT_EQ("London", textOf(button("selectBtn")));
    ASSERT_TRUE(waitForFocus(button("singleBtn")));
    remote("Return");
    EXPECT_EQ(2U, level());
    EXPECT_EQ(3U, history().size());

    chooseByKeys("Croydon");
    ASSERT_TRUE(waitForFocus(button("nextBtn")));
    remote("Return");
    EXPECT_EQ(3U, level());

    chooseByKeys("Brightwell Vision, Purley Way");
    ASSERT_TRUE(waitForFocus(button("nextBtn")));
    EXPECT_EQ("SID_REGISTER", textOf(button("nextBtn")));
    remote("Return");
    ASSERT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_EQ(5U, history().size());
    EXPECT_THAT(chosen(), ElementsAre("Brightwell Vision, Purley Way", "Croydon", "London",
                                      "United Kingdom"));

    ASSERT_TRUE(waitForFocus(button("regBtn")));
    remote("Return");
    ASSERT_TRUE(
        turnUntil([] { return labelText() == "COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS"; }));
    EXPECT_TRUE(logged("Controller::callbackManager called (Event: 0; Reason: 3)"));
    EXPECT_EQ(nullptr, popup<ZOLT::GUI::LoadingPopup>());
    ASSERT_TRUE(waitForFocus(partOf(widgetOf(*popup()), "button1")));
    EXPECT_TRUE(endsMainLoop([this] { feedKeyDown(windowOf(screen()), "Return"); }));
    m_flow->cancel();

    EXPECT_THAT(calls(),
                ElementsAre("requestShopInfoList", "getShopInfoList", "getRegisteredShopInfo",
                            "getRegisteredShopInfo", "getRegisteredShopInfo",
                            "requestRegistrationShopInfo", "applicationCancelled"));
    EXPECT_EQ(
        R"(<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok">)"
        R"(<list level="1" name="Country" is_fix="Y" is_sub="Y"><sub_list name="United Kingdom" code="01" /></list>)"
        R"(<list level="2" name="Region" is_fix="Y" is_sub="Y"><sub_list name="London" code="0101" /></list>)"
        R"(<list level="3" name="City" is_fix="Y" is_sub="Y"><sub_list name="Croydon" code="010102" /></list>)"
        R"(<list level="4" name="Shop" is_fix="Y" is_sub="N"><sub_list name="Brightwell Vision, Purley Way" code="01010202" /></list>)"
        R"(</rsp>)",
        support::readFile(m_process->folder().file("data/registered.xml")));
}

TEST_F(ExistingRegistrationTest, PlaysTheSoundsOfTheMenu) {
    startBoth("[daemon]\ndelay=1\n");
    const size_t before = sounds().size();
    remote("Up");
    remote("Down");
    ASSERT_TRUE(waitForFocus(button("existRegBtn")));
    remote("Return");
    const auto all = sounds();
    const std::vector<int> heard(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
    ASSERT_GE(heard.size(), 4U);
    EXPECT_THAT(std::vector<int>(heard.begin(), heard.begin() + 4),
                ElementsAre(BLOCKED, MOVE, SELECT, POPUP));
}

TEST_F(ExistingRegistrationTest, EndsOnTheMenuWhenNothingIsFound) {
    startBoth("[daemon]\ndelay=1\nfound-in-lan=false\n");
    remote("Down");
    ASSERT_TRUE(waitForFocus(button("existRegBtn")));
    remote("Return");
    ASSERT_TRUE(turnUntil([this] { return popup<ZOLT::GUI::MessagePopup>() != nullptr; }));
    EXPECT_EQ("TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK", labelText());
    EXPECT_EQ(1U, history().size());
    EXPECT_THAT(calls(), ElementsAre("requestShopInfoList"));
}

TEST_F(ExistingRegistrationTest, ADaemonThatDiesAndComesBackIsAskedAgain) {
    startBoth("[daemon]\ndelay=1\n");
    m_process->kill();
    ASSERT_TRUE(turnUntil([] { return logged("Removing object /zolt/gui"); }));
    m_process->start();
    ASSERT_TRUE(turnUntil([] { return platform().countLines("Object /zolt/gui added") == 2; }));
    remote("Down");
    ASSERT_TRUE(waitForFocus(button("existRegBtn")));
    remote("Return");
    EXPECT_TRUE(reaches<ShopListScreen>());
}

}  // namespace
}  // namespace flow
