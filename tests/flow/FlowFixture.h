// SPDX-License-Identifier: Apache-2.0
// A flow with real screens, a scripted television and a fake daemon.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/DeviceInfo.h"
#include "common/systemcalls/SystemCalls.h"
#include "flow/ControllerProbe.h"
#include "flow/FakeDaemon.h"
#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/SelectionPopup.h"

namespace flow {

// One level of a shop list document: its name and its entries, name and code each.
struct Level {
    std::string name;
    std::vector<std::pair<std::string, std::string>> entries;
};

// A shop list document. With one entry a level it is also a registration document.
std::string document(const std::vector<Level>& levels);

// A list without a choice, which is also a registration document.
inline const std::vector<Level> ONE_SHOP = {{"Store", {{"Only", "01"}}}};
inline const std::vector<Level> REGISTERED = {{"Country", {{"North", "01"}}},
                                              {"Store", {{"N1", "0101"}}}};

// The numbers with which the TV's feedback service is called for each sound.
enum Sound { MOVE = 40, BACK = 41, BLOCKED = 42, SELECT = 43, POPUP = 45 };

class FlowFixture : public support::GuiFixture {
  protected:
    void SetUp() override;
    void TearDown() override;

    // --- the flow
    // Makes a flow that replaces the earlier one.
    ZOLT::GUI::Controller& makeFlow();
    // Makes one and shows its first screen. REGISTERED: whether there is a registration file.
    ZOLT::GUI::Controller& start(bool registered = false);
    // Lets the flow handle an event of the daemon.
    void event(int number, int reason);
    // Calls CALLBACK as a widget does, with null arguments.
    static void click(void (*callback)(void*, Evas_Object*, void*));
    // Lets the flow fetch a shop list, as the daemon's event does.
    void serve(const std::vector<Level>& levels);
    std::deque<ZOLT::GUI::Screen*>& history();
    // The names of the chosen shops, the latest first.
    std::vector<std::string> chosen();
    uint32_t level();
    uint32_t initialLevel();

    // --- the current screen
    ZOLT::GUI::Screen& screen();
    template <typename ScreenType>
    bool shows() {
        return dynamic_cast<ScreenType*>(&screen()) != nullptr;
    }
    template <typename PopupType = ZOLT::GUI::Popup>
    PopupType* popup() {
        return dynamic_cast<PopupType*>(screen().getPopup());
    }
    Evas_Object* button(const char* part);
    // "TEXT" of the button in PART, with "*" when it may take the focus and "!" when it has it; ""
    // when there is none.
    std::string describe(const char* part);
    // Waits for the layout: only then does a popup move the focus, and arrows need the positions of
    // the widgets.
    static bool waitForFocus(Evas_Object* widget);
    // Opens the drop-down, picks the entry NAME and confirms it.
    void choose(const std::string& name);
    // Opens the drop-down and picks the entry NAME.
    void pick(const std::string& name);
    // The names that the selection popup offers.
    std::vector<std::string> offered();

    // --- the daemon
    FakeDaemon& daemon() { return *m_daemon; }
    // The calls to it since the last call of this function.
    std::vector<std::string> callsSince() { return m_daemon->takeCalls(); }
    // Runs both main loops until PREDICATE is true.
    static bool waitFor(const std::function<bool()>& predicate);

    // --- the sounds
    std::vector<int> sounds();
    static std::string labelText() { return ZOLT::GUI::Controller::m_currentLabelText; }

    std::unique_ptr<FakeDaemon> m_daemon;
    ZOLT::SystemCalls m_systemCalls;
    ZOLT::DeviceInfo m_deviceInfo{&m_systemCalls};
    std::unique_ptr<ZOLT::GUI::Controller> m_flow;
    support::TemporaryFolder m_folder;
};

}  // namespace flow
