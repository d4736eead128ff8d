// SPDX-License-Identifier: Apache-2.0
// The flow itself: its start and end, what an event of the daemon does, and the history of screens.
#include "gui/Controller.h"

#include <unistd.h>

#include <Elementary.h>

#include "common/Exception.h"
#include "common/Logger.h"
#include "common/ZoltConfig.h"
#include "gui/AUIPlayer.h"
#include "gui/EventHandler.h"
#include "gui/Popup.h"
#include "gui/Screen.h"
#include "vconf.h"

namespace ZOLT::GUI {

Controller* Controller::m_self = nullptr;
std::string Controller::m_currentLabelText;
bool Controller::m_wasLabelRead = false;
int Controller::Enlarge = 0;

namespace {

constexpr const char* FOCUS_ZOOM_KEY = "db/menu/system/accessibility/focuszoom";
constexpr const char* FIRST_BUTTON = "button1";

}  // namespace

Controller::Controller(DeviceInfo* deviceInfo) : m_deviceInfo(deviceInfo) {
    ZOLT_TRACE();
    GuiProxy::m_sendEventCallback = [this](int event, int reason) {
        callbackManager(event, reason);
    };
    m_self = this;
}

Controller::~Controller() {
    ZOLT_TRACE();
    while (!m_history.empty()) {
        delete m_history.back();
        m_history.pop_back();
    }
    m_self = nullptr;
}

Controller* Controller::getController() {
    return m_self;
}

void Controller::initialize() {
    ZOLT_TRACE();
    Screen::loadLayouts();
    const std::string registrationFile = ZoltConfig::get("ShopRegistrationFilePath");
    const bool registered = access(registrationFile.c_str(), F_OK) == 0;
    int focusZoom = 0;
    if (vconf_get_int(FOCUS_ZOOM_KEY, &focusZoom) == 0) {
        Enlarge = focusZoom;
    }
    if (registered) {
        showMainMenuRegisteredScreen();
    } else {
        showMainMenuUnregisteredScreen();
    }
}

void Controller::callbackManager(int event, int reason) {
    ZOLT_TRACE();
    ZOLT_DEBUG("Controller::callbackManager called (Event: %d; Reason: %d)", event, reason);
    dropClosedScreens();
    try {
        if (event == EVENT_STEP_DONE) {
            if (!stepDone(reason)) {
                ZOLT_WARN("Received unknown event reason [Event: %d; Reason: %d]", event, reason);
                throw Exception("Unknown event reason", GENERIC_ERROR);
            }
        } else if (event == EVENT_CLOSE_GUI) {
            if (!closeGui(reason)) {
                ZOLT_WARN("Received unknown reason to close GUI [Event: %d; Reason: %d]", event,
                          reason);
                // Deliberately reports the type, although the reason is invalid.
                throw Exception("Unknown event type", GENERIC_ERROR);
            }
        } else {
            ZOLT_WARN("Received unknown event type [Event: %d; Reason: %d]", event, reason);
            throw Exception("Unknown event type", GENERIC_ERROR);
        }
    } catch (const Exception& exception) {
        ZOLT_WARN("Exception caught during event handling: %s", exception.what());
        showUnstableConnection();
    } catch (const std::exception& exception) {
        ZOLT_WARN("Exception caught during event handling: %s", exception.what());
        showUnstableConnection();
    } catch (...) {
        ZOLT_WARN("Unknown exception caught during event handling");
        showUnstableConnection();
    }
}

bool Controller::stepDone(int reason) {
    switch (reason) {
        case REASON_PINCODE_READY:
            showPinDisplayingScreen();
            return true;
        case REASON_PINCODE_VERIFIED:
            searchShops(CONNECTING_TEXT);
            return true;
        case REASON_SHOP_LIST_READY:
            showShopList();
            return true;
        case REASON_REGISTRATION_DONE:
            currentScreen().destroyPopup();
            showCompletionPopup();
            return true;
        case REASON_DEREGISTRATION_DONE:
            currentScreen().destroyPopup();
            showDeregistrationSucceededPopup();
            return true;
        case REASON_REGISTRATION_INFO_DELETED:
            showMainMenuUnregisteredScreen();
            return true;
        default:
            return false;
    }
}

bool Controller::closeGui(int reason) {
    const ReasonFacts* const facts = findReason(reason);
    if (facts == nullptr || facts->event != EVENT_CLOSE_GUI) {
        return false;
    }
    if (facts->failureText == nullptr) {
        elm_exit();
    } else {
        currentScreen().destroyPopup();
        showNetworkFailurePopup(EVENT_CLOSE_GUI, facts->reason);
    }
    return true;
}

void Controller::showShopList() {
    prepareShopList();
    bool handled = false;
    m_initialLevel = getInitialShopListLevel(&handled);
    currentScreen().destroyPopup();
    if (!handled) {
        showShopListScreen(m_initialLevel);
    }
}

void Controller::showUnstableConnection() {
    currentScreen().destroyPopup();
    showNetworkFailurePopup(EVENT_CLOSE_GUI, REASON_NETWORK_UNSTABLE);
}

void Controller::cancel() {
    ZOLT_TRACE();
    m_guiProxy.applicationCancelled();
}

void Controller::terminate() {
    ZOLT_TRACE();
    elm_exit();
}

void Controller::historyAppend(Screen* screen) {
    ZOLT_TRACE();
    m_history.push_front(screen);
    while (m_history.size() > m_historySizeLimit) {
        delete m_history.back();
        m_history.pop_back();
    }
}

void Controller::hidePopups(Screen* screen) {
    ZOLT_TRACE();
    screen->destroyPopup();
}

Screen* Controller::current() const {
    return m_history.empty() ? nullptr : m_history.front();
}

// The flow relies on a current screen. Without one the program ends with a log line.
Screen& Controller::currentScreen() const {
    Screen* const screen = current();
    if (screen == nullptr) {
        throw Exception("No current screen", GENERIC_ERROR);
    }
    return *screen;
}

// The last one stays: without any the flow would have nothing to show its failures on.
void Controller::dropClosedScreens() {
    while (canGoBack() && !m_history.front()->isOpen()) {
        delete m_history.front();
        m_history.pop_front();
    }
}

void Controller::present(std::unique_ptr<Screen> screen) {
    screen->show();
    historyAppend(screen.release());
}

bool Controller::canGoBack() const {
    return m_history.size() > 1;
}

void Controller::goBack() {
    std::unique_ptr<Screen> left(m_history.front());
    m_history.pop_front();
    currentScreen().destroyPopup();
    left.reset();
    currentScreen().show();
}

void Controller::clearPopupBelow() {
    if (!canGoBack()) {
        return;
    }
    Screen* const screen = m_history.front();
    m_history.pop_front();
    if (Screen* const below = current()) {
        below->destroyPopup();
    }
    historyAppend(screen);
}

void Controller::showLoadingPopup(const char* text) {
    ZOLT_TRACE();
    currentScreen().addLoadingPopup(text)->show();
    elm_access_say(EventHandler::removeSpecialTags(m_currentLabelText).c_str());
    m_wasLabelRead = true;
    AUIPlayer().play(AUI_SOUND_POPUP);
}

void Controller::presentPopup(Popup* popup, const char* part) {
    popup->show();
    if (part != nullptr) {
        popup->focusButton(part);
    }
    AUIPlayer().play(AUI_SOUND_POPUP);
}

void Controller::showCompletionPopup() {
    ZOLT_TRACE();
    presentPopup(currentScreen().addCompletionPopup(), FIRST_BUTTON);
}

void Controller::showDeregistrationPopup() {
    ZOLT_TRACE();
    presentPopup(currentScreen().addDeregistrationPopup(), nullptr);
}

void Controller::showDeregistrationSucceededPopup() {
    ZOLT_TRACE();
    presentPopup(currentScreen().addMessagePopup("COM_SID_DEREGISTERED_SUCCESSFULLY"),
                 FIRST_BUTTON);
}

void Controller::showNetworkFailurePopup(ZOLTEventsType event, ZOLTEventsReasonType reason) {
    ZOLT_TRACE();
    presentPopup(currentScreen().addNetworkFailurePopup(event, reason), FIRST_BUTTON);
}

}  // namespace ZOLT::GUI
