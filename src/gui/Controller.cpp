// SPDX-License-Identifier: Apache-2.0
// The flow: which screen is shown, and what an event of the daemon does.
#include "gui/Controller.h"

#include <queue>
#include <utility>
#include <vector>

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
#include "gui/RegistrationChangeScreen.h"
#include "gui/RegistrationInfoScreen.h"
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

}  // namespace ZOLT::GUI
