// SPDX-License-Identifier: Apache-2.0
// The flow: which screen is shown, and what an event of the daemon does.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include "common/DeviceInfo.h"
#include "common/ShopListParser.h"
#include "gdbus/GuiProxy.h"
#include "gdbus/ZOLTEvents.h"

namespace ZOLT::GUI {

class Popup;
class RegistrationInfoScreen;
class Screen;
class SelectionPopup;
class ShopListScreen;

// The one flow object. It owns the link to the daemon, the shop list and the history of screens.
// Everything here runs on the main loop's thread: events of the daemon are handled inside their
// signal's handler, and calls of the daemon block. Operations let the exceptions of the daemon's
// calls, of documents and of screens pass; only callbackManager catches them.
class Controller {
  public:
    // DEVICEINFO is not owned and must outlive the controller. Routes the daemon's events to this
    // object and makes it the one that getController gives.
    explicit Controller(DeviceInfo* deviceInfo);
    // Deletes all screens. Clears m_self even if it points at another controller by now: after a
    // second launch m_self is null, which the callbacks rely on.
    ~Controller();
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    // The current controller, or null.
    static Controller* getController();

    // Loads the theme and shows the main menu that fits the registration file.
    void initialize();
    // Handles one event of the daemon: values of ZOLTEventsType and ZOLTEventsReasonType. A failure
    // shows the popup of an unstable connection; only what that popup throws leaves the function.
    void callbackManager(int event, int reason);
    // Tells the daemon that the application stopped.
    void cancel();
    // Ends the main loop.
    void terminate();

    // Makes SCREEN the current one and takes ownership of it. Deletes the oldest screen beyond the
    // limit.
    void historyAppend(Screen* screen);
    void hidePopups(Screen* screen);

    // --- popups on the current screen
    void showLoadingPopup(const char* text);
    void showCompletionPopup();
    void showDeregistrationPopup();
    void showDeregistrationSucceededPopup();
    void showNetworkFailurePopup(ZOLTEventsType event, ZOLTEventsReasonType reason);

    // --- registration
    void showMainMenuRegisteredScreen();
    void showMainMenuUnregisteredScreen();
    void showRegistrationChangeScreen();
    void showPinRequestingScreen();
    void showSearchRegInfoScreen();
    void showPinDisplayingScreen();
    void showRegistrationInformationScreen();
    // Shows the document that would be sent for the shop chosen last.
    void showRegistrationConfirmationScreen();
    void unregister();
    void registerShop(Shop* shop);

    // --- the way down the shop list
    // Fetches and parses the list that the daemon holds.
    void prepareShopList();
    // Descends through the levels that offer one entry only and returns the first level that offers
    // a choice. Sets *HANDLED to true if there is none and the confirmation is shown.
    unsigned getInitialShopListLevel(bool* handled);
    // Shows the current level. The argument has no effect: the level is that of m_currentLevel.
    void showShopListScreen(unsigned level);
    void showSelectionPopup();
    // "NAME : CODE" of the shop to which the TV is registered.
    std::string getRegisteredShopInfo();
    // Name of that shop; "null" or empty when there is none, as the daemon gives it.
    std::string getRegisteredShopName();

    static Controller* m_self;
    static constexpr unsigned m_historySizeLimit = 5;
    // No code uses it: the screen of a level gets all names and shows one.
    static constexpr unsigned m_chosenShopsDisplayLimit = 3;
    static std::string m_currentLabelText;  // last text of a popup or PIN label, for speech
    static bool m_wasLabelRead;             // that text has been spoken
    static int Enlarge;                     // the focus zoom setting, read by screens

  private:
    friend class EventHandler;      // calls the operations behind the buttons
    friend struct ControllerProbe;  // lets tests read the state of the flow

    static constexpr const char* CONNECTING_TEXT = "SID_CONNECTING_TO_NETWORK_SERVER";

    // The current screen, or null.
    Screen* current() const;
    // The current screen; throws ZOLT::Exception when there is none.
    Screen& currentScreen() const;
    // The shop chosen last, which is null when the person went on without a pick; throws
    // std::out_of_range when there is none.
    Shop* lastChosenShop() const;
    // Name of the shop chosen last; throws ZOLT::Exception when that is null.
    const std::string& lastChosenName() const;
    // The entry of the current level if it offers exactly one, otherwise null.
    Shop* onlyEntryOfLevel();
    // The entry that is reached from SHOP by going down while there is exactly one child; SHOP
    // itself if there is not.
    Shop* lastOfOnlyChildren(Shop* shop);
    // Shows a new screen and makes it the current one.
    void present(std::unique_ptr<Screen> screen);
    template <typename ScreenType>
    void presentNew();
    // Shows POPUP with its sound, and with the focus on PART unless that is null.
    void presentPopup(Popup* popup, const char* part);
    // Handle an event. False, without an effect, if the event cannot have this REASON.
    bool stepDone(int reason);
    bool closeGui(int reason);
    void showShopList();
    void showUnstableConnection();

    // --- the operations behind buttons and popups
    // Whether there is a screen below the current one.
    bool canGoBack() const;
    // Deletes the current screen and shows the one below it.
    // Takes the screens off the front whose window was closed from outside: what is pressed on the
    // screen that can be seen, and what the daemon reports, belongs there.
    void dropClosedScreens();
    void goBack();
    // Destroys the popup of the screen below the current one.
    void clearPopupBelow();
    // Destroys the current screen's popup. A selection popup with an earlier confirmation is only
    // hidden, and returns to that confirmation.
    void dismissPopup();
    void showDeletionPopup();
    // Asks the daemon to delete the registration. Blocks the buttons of POPUP, which asked the
    // person.
    void deleteRegistration(Popup& popup);
    // Shows TEXT in a loading popup and asks the daemon for the shop list.
    void searchShops(const char* text);
    // Asks the daemon for the registration that SCREEN shows. The buttons of SCREEN are out of
    // reach meanwhile.
    void registerShown(RegistrationInfoScreen& screen);
    // Opens the drop-down of SCREEN: shows its popup again, or a new one.
    void openSelection(ShopListScreen& screen);
    // Makes SHOP, whose row is selected, the pick in POPUP.
    void pick(SelectionPopup& popup, Shop* shop);
    // Makes the pick in POPUP the choice on SCREEN and hides the popup.
    void confirmPick(ShopListScreen& screen, SelectionPopup& popup);
    // Goes on with the pick in POPUP, to the next level or to the confirmation.
    void goToNextLevel(const SelectionPopup& popup);
    void goToConfirmation(const SelectionPopup& popup);
    void goToPreviousLevel();

    GuiProxy m_guiProxy;
    ShopListParser m_shopListParser;
    std::deque<Screen*> m_history;        // front: current, back: oldest. Deleted here
    std::deque<Shop*> m_chosenShops;      // front: chosen last. Owned by m_shopListParser
    uint32_t m_currentLevel = 0;          // of the parser's levels, the one on display
    uint32_t m_initialLevel = 0;          // the first that offers a choice
    DeviceInfo* m_deviceInfo;             // not owned
    std::mutex m_mutex;                   // guards nothing: all of the flow runs on one thread
    std::condition_variable m_condition;  // nothing waits for it, for the same reason
};

}  // namespace ZOLT::GUI
