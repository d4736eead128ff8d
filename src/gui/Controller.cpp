// SPDX-License-Identifier: Apache-2.0
// The flow: which screen is shown, and what an event of the daemon or a callback of the toolkit
// does.
#include "gui/Controller.h"

#include <array>
#include <cstring>
#include <queue>
#include <utility>
#include <vector>

#include <libintl.h>
#include <unistd.h>

#include <Elementary.h>

#include "common/Exception.h"
#include "common/Logger.h"
#include "common/ZoltConfig.h"
#include "gui/AUIPlayer.h"
#include "gui/EventHandler.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/PinRequestingScreen.h"
#include "gui/Popup.h"
#include "gui/RegistrationChangeScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/Screen.h"
#include "gui/SearchRegInfoScreen.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"
#include "vconf.h"

namespace ZOLT::GUI {

Controller* Controller::m_self = nullptr;
std::string Controller::m_currentLabelText;
bool Controller::m_wasLabelRead = false;
int Controller::Enlarge = 0;

namespace {

constexpr const char* FOCUS_ZOOM_KEY = "db/menu/system/accessibility/focuszoom";
constexpr const char* CONNECTING_TEXT = "SID_CONNECTING_TO_NETWORK_SERVER";
constexpr const char* FIRST_BUTTON = "button1";

// The levels of a registration document, whose shops belong to whoever parsed it.
struct RegistrationRecords {
    explicit RegistrationRecords(std::vector<ShopList> parsed) : lists(std::move(parsed)) {}
    RegistrationRecords(const RegistrationRecords&) = delete;
    RegistrationRecords& operator=(const RegistrationRecords&) = delete;
    ~RegistrationRecords() { clean(); }

    // Deletes the shops; once more does no harm.
    void clean() {
        for (ShopList& list : lists) {
            list.clean();
        }
    }

    // The registered shop itself; throws std::out_of_range when a document names none.
    const Shop& shop() const { return *lists.at(lists.size() - 1).shops.at(0); }

    std::vector<ShopList> lists;
};

// The way on, taken without a pick, leaves a null among the chosen shops, of which a document can
// be made but no screen.
const std::string& nameOf(const Shop* shop) {
    if (shop == nullptr) {
        throw Exception("No shop chosen", GENERIC_ERROR);
    }
    return shop->name;
}

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
                // Blames the type although the reason is at fault: wanted.
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
            showLoadingPopup(CONNECTING_TEXT);
            m_guiProxy.requestShopInfoList();
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
    switch (reason) {
        case REASON_NETWORK_UNSTABLE:
        case REASON_NO_NETWORK:
        case REASON_NO_SERVER:
        case REASON_PIN_TIME_EXPIRED:
        case REASON_NOT_FOUND_IN_LAN:
            currentScreen().destroyPopup();
            showNetworkFailurePopup(EVENT_CLOSE_GUI, static_cast<ZOLTEventsReasonType>(reason));
            return true;
        case REASON_CLOSE_REQUESTED:
        case REASON_CLOSE_REQUESTED_AGAIN:
            elm_exit();
            return true;
        default:
            return false;
    }
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

// The flow relies on a current screen. Where there is none the program ends in an orderly way.
Screen& Controller::currentScreen() const {
    Screen* const screen = current();
    if (screen == nullptr) {
        throw Exception("No current screen", GENERIC_ERROR);
    }
    return *screen;
}

Shop* Controller::lastChosenShop() const {
    return m_chosenShops.at(0);
}

const std::string& Controller::lastChosenName() const {
    return nameOf(lastChosenShop());
}

void Controller::present(std::unique_ptr<Screen> screen) {
    screen->show();
    historyAppend(screen.release());
}

template <typename ScreenType>
void Controller::presentNew() {
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    present(std::make_unique<ScreenType>(width, height));
}

void Controller::clearPopupBelow() {
    if (m_history.size() < 2) {
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

void Controller::showMainMenuRegisteredScreen() {
    ZOLT_TRACE();
    presentNew<MainMenuRegisteredScreen>();
}

void Controller::showMainMenuUnregisteredScreen() {
    ZOLT_TRACE();
    presentNew<MainMenuUnregisteredScreen>();
}

void Controller::showRegistrationChangeScreen() {
    ZOLT_TRACE();
    presentNew<RegistrationChangeScreen>();
}

void Controller::showPinRequestingScreen() {
    ZOLT_TRACE();
    presentNew<PinRequestingScreen>();
    m_guiProxy.requestPincode();
}

void Controller::showSearchRegInfoScreen() {
    ZOLT_TRACE();
    presentNew<SearchRegInfoScreen>();
    m_guiProxy.requestShopInfoList();
}

void Controller::showPinDisplayingScreen() {
    ZOLT_TRACE();
    const bool registered = m_guiProxy.checkShopRegistration();
    const std::string pin = m_guiProxy.getPincode();
    const std::string shop = registered ? getRegisteredShopInfo() : std::string();
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    auto screen = std::make_unique<PinDisplayingScreen>(pin, shop, width, height);
    if (auto* const waiting = dynamic_cast<PinRequestingScreen*>(current())) {
        waiting->RemoveProgressBar();
    }
    present(std::move(screen));
    m_guiProxy.requestPincodeVerification();
}

std::unique_ptr<RegistrationInfoScreen> Controller::makeInfoScreen(std::vector<ShopList>& levels) {
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    return std::make_unique<RegistrationInfoScreen>(levels, width, height);
}

void Controller::showRegistrationInformationScreen() {
    ZOLT_TRACE();
    RegistrationRecords records(
        m_shopListParser.parseRegisteredShopXML(m_guiProxy.getRegisteredShopInfo()));
    auto screen = makeInfoScreen(records.lists);
    screen->addButton("singleBtn", "SID_OK", EventHandler::goBackRequested, nullptr, true, true);
    records.clean();
    present(std::move(screen));
}

void Controller::showRegistrationConfirmationScreen() {
    ZOLT_TRACE();
    // Read back from the document itself: what is shown is what will be sent.
    RegistrationRecords records(m_shopListParser.parseRegisteredShopXML(
        m_shopListParser.getRegistrationXml(lastChosenShop())));
    Screen* const left = current();
    auto screen = makeInfoScreen(records.lists);
    if (dynamic_cast<ShopListScreen*>(left) != nullptr) {
        screen->addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested,
                          nullptr, true, false);
        screen->addButton("regBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                          nullptr, true, true);
    } else {
        screen->addButton("singleBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                          nullptr, true, true);
    }
    records.clean();
    if (auto* const popup =
            left != nullptr ? dynamic_cast<LoadingPopup*>(left->getPopup()) : nullptr) {
        popup->RemoveProgressBar();
    }
    present(std::move(screen));
}

void Controller::unregister() {
    ZOLT_TRACE();
    Popup* const popup = currentScreen().getPopup();
    if (popup == nullptr) {
        throw Exception("No popup", GENERIC_ERROR);  // only a popup's button leads here
    }
    popup->blockAllButtons();
    m_guiProxy.unregister();
}

void Controller::registerShop(Shop* shop) {
    ZOLT_TRACE();
    m_guiProxy.requestRegistrationShopInfo(m_shopListParser.getRegistrationXml(shop));
}

// Leaves m_chosenShops as it is: its shops stay alive with the parser.
void Controller::prepareShopList() {
    ZOLT_TRACE();
    m_currentLevel = 0;
    m_initialLevel = 0;
    m_shopListParser.clean();
    m_shopListParser.parseShopListXML(m_guiProxy.getShopInfoList());
}

Shop* Controller::onlyEntryOfLevel() {
    if (m_currentLevel == 0) {
        const auto& shops = m_shopListParser.getShopList().at(0).shops;
        return shops.size() == 1 ? shops.front() : nullptr;
    }
    const auto& shops = m_shopListParser.getSubs(lastChosenName());
    return shops.size() == 1 ? *shops.begin() : nullptr;
}

unsigned Controller::getInitialShopListLevel(bool* handled) {
    ZOLT_TRACE();
    if (handled == nullptr) {
        throw Exception("Incorrect Controller::getInitialShopListLevel() function call",
                        GENERIC_ERROR);
    }
    *handled = false;
    const unsigned levels = m_shopListParser.getAmountOfLevels();
    // Without any level the difference wraps and the first access throws: wanted, since the user
    // is to see a failure rather than an empty screen.
    while (m_currentLevel <= levels - 1) {
        Shop* const shop = onlyEntryOfLevel();
        if (shop == nullptr) {
            break;
        }
        m_chosenShops.push_front(shop);
        if (!shop->hasSubs) {
            *handled = true;
            showRegistrationConfirmationScreen();
            break;
        }
        ++m_currentLevel;
    }
    return m_currentLevel;
}

Shop* Controller::lastOfOnlyChildren(Shop* shop) {
    while (shop->hasSubs) {
        const auto& children = m_shopListParser.getSubs(shop->name);
        if (children.size() != 1) {
            break;
        }
        shop = *children.begin();
    }
    return shop;
}

void Controller::showShopListScreen(unsigned /*level*/) {
    ZOLT_TRACE();
    std::queue<std::string> chosen;
    for (const Shop* shop : m_chosenShops) {
        chosen.push(nameOf(shop));
    }
    ShopList& list = m_shopListParser.getShopList().at(m_currentLevel);
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    auto screen =
        std::make_unique<ShopListScreen>(list.name, chosen, width, height, getRegisteredShopName());
    // A way on takes no focus before a shop has been picked.
    if (m_currentLevel == m_initialLevel) {
        screen->addButton("singleBtn", "SID_NEXT", EventHandler::nextSelectionScreenRequested,
                          nullptr, false, false);
    } else {
        screen->addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested,
                          nullptr, true, false);
        screen->addButton("nextBtn", "SID_NEXT", EventHandler::nextSelectionScreenRequested,
                          nullptr, false, false);
    }
    present(std::move(screen));
}

void Controller::showSelectionPopup() {
    ZOLT_TRACE();
    auto* const screen = dynamic_cast<ShopListScreen*>(current());
    if (screen == nullptr) {
        ZOLT_WARN("Cannot show selection popup on current screen");
        return;
    }
    // A copy: the screen takes the registered shop out of what it offers, and the list keeps it.
    std::set<Shop*, Shop::ShopComp> shops =
        m_shopListParser.getSubs(m_currentLevel == 0 ? "Root" : lastChosenName());
    presentPopup(screen->addSelectionPopup(shops), nullptr);
}

std::string Controller::getRegisteredShopInfo() {
    ZOLT_TRACE();
    const RegistrationRecords records(
        m_shopListParser.parseRegisteredShopXML(m_guiProxy.getRegisteredShopInfo()));
    const Shop& shop = records.shop();
    return shop.name + " : " + shop.code;
}

std::string Controller::getRegisteredShopName() {
    ZOLT_TRACE();
    std::string document = m_guiProxy.getRegisteredShopInfo();
    if (document == "null" || document.empty()) {
        return document;
    }
    const RegistrationRecords records(m_shopListParser.parseRegisteredShopXML(document));
    return records.shop().name;
}

bool EventHandler::m_keyUnfocused = false;
int EventHandler::m_focusState = FOCUS_STATE_NONE;

namespace {

constexpr const char* DOMAIN = "ZOLT";
constexpr const char* SEARCHING_TEXT = "TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT";

// A second launch leaves a controller that nobody can find. A button that is pressed then ends the
// program in an orderly way: the exception leaves the main loop and main puts everything back.
Controller& controller() {
    if (Controller::m_self == nullptr) {
        throw Exception("No controller", GENERIC_ERROR);
    }
    return *Controller::m_self;
}

// The popup of SCREEN as a PopupType, or null when either is missing or it is another.
template <typename PopupType>
PopupType* popupOf(Screen* screen) {
    return screen != nullptr ? dynamic_cast<PopupType*>(screen->getPopup()) : nullptr;
}

void play(AUISoundType sound) {
    AUIPlayer().play(sound);
}

// Events of a key that goes down and of one that comes up begin alike.
std::string keyOf(void* eventInfo) {
    const char* key = static_cast<Evas_Event_Key_Up*>(eventInfo)->key;
    return key != nullptr ? key : "";
}

bool isReturnKey(const std::string& key) {
    return key == "XF86Back" || key == "XF86Close";
}

bool isArrowKey(const std::string& key) {
    return key == "Down" || key == "Up" || key == "Right" || key == "Left";
}

// A popup that asks something takes the return key as its own "no".
bool answersReturnKey(Popup* popup) {
    return popup != nullptr && popup->getVisible() && popup->getButtonCount() >= 2;
}

// Moves POPUP's position down or up by one row. False when the list ends there.
bool moveDown(SelectionPopup& popup) {
    if (popup.m_position + 1 >= popup.m_itemsCount) {
        return false;
    }
    ++popup.m_position;
    return true;
}

bool moveUp(SelectionPopup& popup) {
    if (popup.m_position == 0) {
        return false;
    }
    --popup.m_position;
    return true;
}

// The navigation buttons of a list screen once SHOP has been confirmed on it.
void addNavigationButtons(Screen& screen, const Shop& shop, bool onInitialLevel) {
    const char* const text = shop.hasSubs ? "SID_NEXT" : "SID_REGISTER";
    const Evas_Smart_Cb callback = shop.hasSubs
                                       ? EventHandler::nextSelectionScreenRequested
                                       : EventHandler::registrationConfirmationScreenRequested;
    if (onInitialLevel) {
        screen.addButton("singleBtn", text, callback, nullptr, true, true);
        return;
    }
    screen.addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested, nullptr,
                     true, false);
    screen.addButton("nextBtn", text, callback, nullptr, true, true);
}

// The confirmation's buttons again, now out of the focus's reach while the request runs.
void addUnreachableButtons(Screen& screen, bool fromShopList) {
    if (!fromShopList) {
        screen.addButton("singleBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                         nullptr, false, false);
        return;
    }
    screen.addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested, nullptr,
                     false, false);
    screen.addButton("regBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested, nullptr,
                     false, false);
}

}  // namespace

void EventHandler::buttonClickedCb() {
    ZOLT_TRACE();
    play(AUI_SOUND_SELECT);
}

// Keys of one frame, and those of the time in which a call of the daemon kept the program waiting,
// all go to the window that was on top then. A second screen of the same kind, and a second request
// to the daemon, would be what comes of them.
void EventHandler::dropIfCovered(void* /*data*/, Evas_Object* object, void* /*eventInfo*/) {
    const Controller* const flow = Controller::m_self;
    const Screen* const screen = flow != nullptr ? flow->current() : nullptr;
    if (screen != nullptr && !screen->holds(object)) {
        efl_event_callback_stop(object);
    }
}

void EventHandler::quitRequested(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    elm_exit();
}

void EventHandler::goBackRequested(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller* const flow = Controller::m_self;
    if (flow == nullptr) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "controller is nullptr! Skipping operation");
        return;
    }
    if (flow->m_history.size() < 2) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "No back screen history present - exit");
        elm_exit();
        return;
    }
    ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "We have some back screen history - let's return back");
    std::unique_ptr<Screen> left(flow->m_history.front());
    flow->m_history.pop_front();
    flow->currentScreen().destroyPopup();
    left.reset();
    flow->currentScreen().show();
}

void EventHandler::popupHideRequested(void* /*data*/, Evas_Object* /*object*/,
                                      void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Screen& screen = controller().currentScreen();
    auto* const popup = popupOf<SelectionPopup>(&screen);
    if (popup == nullptr || !popup->m_shopSelected || popup->m_previousShop == nullptr) {
        screen.destroyPopup();
        return;
    }
    popup->m_selectedShop = popup->m_previousShop;
    popup->hide();
}

void EventHandler::deregistrationPopupRequested(void* /*data*/, Evas_Object* /*object*/,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    controller().showDeregistrationPopup();
}

void EventHandler::deregistrationRequested(void* /*data*/, Evas_Object* /*object*/,
                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    controller().unregister();
}

void EventHandler::reRegistrationScreenRequested(void* /*data*/, Evas_Object* /*object*/,
                                                 void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    controller().currentScreen().RegistrationInfoDeletionPopup()->show();
    play(AUI_SOUND_POPUP);
}

void EventHandler::RegistrationChange(void* /*data*/, Evas_Object* /*object*/,
                                      void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller* const flow = Controller::m_self;
    if (flow == nullptr || flow->m_history.empty()) {
        return;
    }
    Screen* const screen = flow->current();
    if (screen == nullptr) {
        ZOLT_DEBUG("Screen is NULL");
        return;
    }
    Popup* const popup = screen->getPopup();
    if (popup == nullptr) {
        ZOLT_DEBUG("Popup is NULL");
        return;
    }
    popup->blockAllButtons();
    flow->m_guiProxy.deleteRegistrationInfo();
}

void EventHandler::reRegistrationRequested(void* /*data*/, Evas_Object* /*object*/,
                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    flow.currentScreen().destroyPopup();
    flow.showLoadingPopup(CONNECTING_TEXT);
    flow.m_guiProxy.requestShopInfoList();
}

// Makes no click, alone among the buttons: wanted.
void EventHandler::registrationInformationScreenRequested(void* /*data*/, Evas_Object* /*object*/,
                                                          void* /*eventInfo*/) {
    ZOLT_TRACE();
    controller().showRegistrationInformationScreen();
}

void EventHandler::pinRequestingScreenRequested(void* /*data*/, Evas_Object* /*object*/,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    controller().clearPopupBelow();
    controller().showPinRequestingScreen();
}

void EventHandler::displayShopsFromLANRequested(void* /*data*/, Evas_Object* /*object*/,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    flow.clearPopupBelow();
    flow.showLoadingPopup(SEARCHING_TEXT);
    flow.m_guiProxy.requestShopInfoList();
}

void EventHandler::shopRegistrationRequested(void* /*data*/, Evas_Object* /*object*/,
                                             void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    auto* const screen = dynamic_cast<RegistrationInfoScreen*>(flow.current());
    if (screen == nullptr) {
        ZOLT_WARN("Currently shown screen is not RegistrationInfoScreen");
        return;
    }
    screen->removeButtons();
    addUnreachableButtons(*screen, dynamic_cast<ShopListScreen*>(flow.m_history.at(1)) != nullptr);
    flow.registerShop(flow.lastChosenShop());
    flow.currentScreen().destroyPopup();
    flow.showLoadingPopup(CONNECTING_TEXT);
}

void EventHandler::selectionPopupRequested(void* /*data*/, Evas_Object* /*object*/,
                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    auto* const screen = dynamic_cast<ShopListScreen*>(controller().current());
    if (screen == nullptr) {
        ZOLT_WARN("Current screen is not a shop displaying screen");
        return;
    }
    if (auto* const popup = popupOf<SelectionPopup>(screen)) {
        popup->restoreSelectedItemSetting();
        popup->show();
        return;
    }
    screen->destroyPopup();
    controller().showSelectionPopup();
}

void EventHandler::selectionPopupItemSelectionCb(void* data, Evas_Object* /*object*/,
                                                 void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    if (data == nullptr) {
        ZOLT_WARN("Incorrect callback call - no shop selected");
        return;
    }
    auto* const popup = popupOf<SelectionPopup>(controller().current());
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown popup is not a Selection Popup");
        return;
    }
    popup->m_selectedItem = elm_genlist_selected_item_get(popup->m_list);
    popup->m_shopSelected = true;
    popup->m_selectedShop = static_cast<Shop*>(data);
    popup->focusButton("button1");
}

void EventHandler::selectionPopupShopChosen(void* /*data*/, Evas_Object* /*object*/,
                                            void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    auto* const screen = dynamic_cast<ShopListScreen*>(flow.current());
    if (screen == nullptr) {
        ZOLT_WARN("Currently shown screen is not ShopListScreen");
        return;
    }
    auto* const popup = popupOf<SelectionPopup>(screen);
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown popup is not a Selection Popup");
        return;
    }
    if (!popup->m_shopSelected) {
        ZOLT_WARN("Shop is not selected");
        return;
    }
    if (popup->m_selectedShop == nullptr) {
        ZOLT_WARN("No shop selected");
        return;
    }
    Shop* const shop = flow.lastOfOnlyChildren(popup->m_selectedShop);
    popup->m_selectedShop = shop;
    screen->modifyButtonText("selectBtn", shop->name.c_str());
    screen->removeButtons();
    addNavigationButtons(*screen, *shop, flow.m_currentLevel == flow.m_initialLevel);
    popup->m_previousItem = popup->m_selectedItem;
    popup->setPreviouslySelectedShop(shop);
    popup->hide();
}

// Here and on the way to the confirmation the pick goes on as it is: these buttons come within
// reach by a confirmed pick only, and without one the next step throws.
void EventHandler::nextSelectionScreenRequested(void* /*data*/, Evas_Object* /*object*/,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    auto* const popup = popupOf<SelectionPopup>(flow.current());
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown screen is not a ShopList screen");
        return;
    }
    flow.m_chosenShops.push_front(popup->m_selectedShop);
    flow.currentScreen().destroyPopup();
    ++flow.m_currentLevel;
    flow.showShopListScreen(flow.m_currentLevel);
}

void EventHandler::prevSelectionScreenRequested(void* /*data*/, Evas_Object* /*object*/,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    --flow.m_currentLevel;
    if (flow.m_currentLevel == 0) {
        flow.m_chosenShops.clear();
    } else if (!flow.m_chosenShops.empty()) {  // taking one from none would be undefined
        flow.m_chosenShops.pop_front();
    }
    flow.showShopListScreen(flow.m_currentLevel);
}

void EventHandler::registrationConfirmationScreenRequested(void* /*data*/, Evas_Object* /*object*/,
                                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    buttonClickedCb();
    Controller& flow = controller();
    auto* const popup = popupOf<SelectionPopup>(flow.current());
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown screen is not a ShopList screen");
        return;
    }
    flow.m_chosenShops.push_front(popup->m_selectedShop);
    ++flow.m_currentLevel;
    flow.showRegistrationConfirmationScreen();
}

// The first focus of a new screen follows no loss of focus, and so makes no sound.
void EventHandler::focusedItemCb(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (m_focusState == FOCUS_STATE_UNFOCUSED) {
        play(AUI_SOUND_MOVE);
    }
    m_focusState = FOCUS_STATE_FOCUSED;
}

void EventHandler::unfocusedItemCb(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ZOLT_TRACE();
    m_keyUnfocused = true;
    m_focusState = FOCUS_STATE_UNFOCUSED;
}

// The separators of the two labels differ: wanted.
void EventHandler::languageChanged(void* data, Evas_Object* object, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (data == nullptr) {
        ZOLT_WARN("Incorrect callback call - return immediately");
        return;
    }
    const Controller* const flow = Controller::m_self;
    Screen* const screen = flow != nullptr ? flow->current() : nullptr;
    if (screen == nullptr) {
        return;
    }
    const std::string id = static_cast<const char*>(data);
    if (dynamic_cast<PinDisplayingScreen*>(screen) != nullptr && id == "SID_SOFTWARE_VERSION") {
        const std::string text =
            dgettext(DOMAIN, "SID_SOFTWARE_VERSION") + (" : " + ZoltConfig::get("SourceVersion"));
        elm_object_part_text_set(object, "SoftwareVersion", text.c_str());
    } else if (dynamic_cast<RegistrationInfoScreen*>(screen) != nullptr &&
               id == "TV_SID_SHOP_CODE") {
        const std::string text = dgettext(DOMAIN, "TV_SID_SHOP_CODE") + std::string(" :");
        elm_object_part_text_set(object, "leftText", text.c_str());
    }
}

// Relies on the order of events: the focus has moved before the key that moved it gets here.
void EventHandler::onKeyPress(void* data, Evas* /*evas*/, Evas_Object* object, void* eventInfo) {
    ZOLT_TRACE();
    if (eventInfo == nullptr) {
        ZOLT_WARN("Incorrect callback call - no input");
        return;
    }
    m_focusState = FOCUS_STATE_NONE;
    const std::string key = keyOf(eventInfo);
    if (isReturnKey(key)) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "return button pressed");
        play(AUI_SOUND_BACK);
        Screen* const screen = controller().current();
        if (screen == nullptr) {
            ZOLT_WARN("screen is NULL");
        } else if (answersReturnKey(screen->getPopup())) {
            ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "just go to its popup OnKeyPress");
        } else {
            ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "quit is requested");
            quitRequested(data, object, eventInfo);
        }
    } else if (isArrowKey(key) && !m_keyUnfocused) {
        ZOLT_DEBUG("No Focus Key Event pressed");
        play(AUI_SOUND_BLOCKED);
    }
    m_keyUnfocused = false;
}

void EventHandler::selectionPopupListOnKeyPress(void* data, Evas* /*evas*/, Evas_Object* object,
                                                void* eventInfo) {
    ZOLT_TRACE();
    if (eventInfo == nullptr) {
        ZOLT_WARN("Incorrect callback call - no input");
        return;
    }
    auto* const screen = dynamic_cast<ShopListScreen*>(controller().current());
    if (screen == nullptr) {
        ZOLT_WARN("Currently shown screen is not ShopListScreen");
        return;
    }
    auto* const popup = popupOf<SelectionPopup>(screen);
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown popup is not a Selection Popup");
        return;
    }
    const std::string key = keyOf(eventInfo);
    if (key == "Down") {
        play(moveDown(*popup) ? AUI_SOUND_MOVE : AUI_SOUND_BLOCKED);
    } else if (key == "Up") {
        play(moveUp(*popup) ? AUI_SOUND_MOVE : AUI_SOUND_BLOCKED);
    } else if (key == "Right") {
        play(AUI_SOUND_MOVE);  // leads from the list to the buttons, ...
    } else if (key == "Left") {
        play(AUI_SOUND_BLOCKED);  // ... and Left never leads anywhere: the difference is wanted
    } else if (isReturnKey(key)) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "popup hide called");
        popupHideRequested(data, object, eventInfo);
    } else {
        ZOLT_DEBUG("unhandles");
    }
}

std::string EventHandler::removeSpecialTags(const std::string& text) {
    ZOLT_TRACE();
    struct Tag {
        const char* text;
        size_t following;  // characters after the tag that go with it
    };
    constexpr size_t COLOUR_DIGITS_AND_BRACKET = 7;
    static constexpr std::array<Tag, 5> TAGS = {{{"<color=#", COLOUR_DIGITS_AND_BRACKET},
                                                 {"<br/>", 0},
                                                 {"<br>", 0},
                                                 {"</color>", 0},
                                                 {"<tab>", 0}}};
    std::string result = text;
    for (const Tag& tag : TAGS) {
        const size_t length = std::strlen(tag.text) + tag.following;
        for (size_t hit = result.find(tag.text); hit != std::string::npos;
             hit = result.find(tag.text, hit + 1)) {
            result.replace(hit, length, " ");
        }
    }
    return result;
}

char* EventHandler::accessCallback(void* data, Evas_Object* /*object*/) {
    ZOLT_TRACE();
    ZOLT_DEBUG("TTS Access callback");
    if (data == nullptr) {
        ZOLT_WARN("No input data");
        return nullptr;
    }
    const std::string text = removeSpecialTags(static_cast<const char*>(data));
    Eina_Strbuf* const buffer = eina_strbuf_new();
    if (!Controller::m_wasLabelRead) {
        ZOLT_DEBUG("Label wasn't read yet");
        Controller::m_wasLabelRead = true;
        eina_strbuf_append_printf(buffer, "%s, %s",
                                  removeSpecialTags(Controller::m_currentLabelText).c_str(),
                                  text.c_str());
    } else {
        eina_strbuf_append_printf(buffer, "%s", text.c_str());
    }
    char* const spoken = eina_strbuf_string_steal(buffer);
    // Empties the buffer and keeps its header: a small leak for each speech, which is wanted.
    eina_strbuf_string_free(buffer);
    ZOLT_DEBUG("%s", spoken);
    return spoken;
}

}  // namespace ZOLT::GUI
