// SPDX-License-Identifier: Apache-2.0
// The flow of a registration: how it is begun, shown, confirmed, changed and ended.
#define ZOLT_LOG_FILE "Controller.cpp"
#include <memory>
#include <utility>
#include <vector>

#include "common/Exception.h"
#include "common/Logger.h"
#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/FlowScreens.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/PinRequestingScreen.h"
#include "gui/RegistrationChangeScreen.h"
#include "gui/SearchRegInfoScreen.h"

namespace ZOLT::GUI {

namespace {

// Owns the levels of a parsed registration document, with their shops.
struct RegistrationRecords {
    explicit RegistrationRecords(std::vector<ShopList> parsed) : lists(std::move(parsed)) {}
    RegistrationRecords(const RegistrationRecords&) = delete;
    RegistrationRecords& operator=(const RegistrationRecords&) = delete;
    ~RegistrationRecords() { clean(); }

    // Deletes the shops. May be called again.
    void clean() {
        for (ShopList& list : lists) {
            list.clean();
        }
    }

    // The registered shop itself; throws std::out_of_range when a document names none.
    const Shop& shop() const { return *lists.at(lists.size() - 1).shops.at(0); }

    std::vector<ShopList> lists;
};

}  // namespace

template <typename ScreenType>
void Controller::presentNew() {
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    present(std::make_unique<ScreenType>(width, height));
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

void Controller::showRegistrationInformationScreen() {
    ZOLT_TRACE();
    RegistrationRecords records(
        m_shopListParser.parseRegisteredShopXML(m_guiProxy.getRegisteredShopInfo()));
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    auto screen = makeInformationScreen(records.lists, width, height);
    records.clean();
    present(std::move(screen));
}

void Controller::showRegistrationConfirmationScreen() {
    ZOLT_TRACE();
    // Read back from the document itself: what is shown is what will be sent.
    RegistrationRecords records(m_shopListParser.parseRegisteredShopXML(
        m_shopListParser.getRegistrationXml(lastChosenShop())));
    Screen* const left = current();
    const bool fromShopList = dynamic_cast<ShopListScreen*>(left) != nullptr;
    const int width = m_deviceInfo->getScreenWidth();
    const int height = m_deviceInfo->getScreenHeight();
    auto screen = makeConfirmationScreen(records.lists, width, height, fromShopList);
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
        throw Exception("No popup", GENERIC_ERROR);  // only a button of a popup calls this
    }
    popup->blockAllButtons();
    m_guiProxy.unregister();
}

void Controller::showDeletionPopup() {
    presentPopup(currentScreen().RegistrationInfoDeletionPopup(), nullptr);
}

void Controller::deleteRegistration(Popup& popup) {
    popup.blockAllButtons();
    m_guiProxy.deleteRegistrationInfo();
}

void Controller::searchShops(const char* text) {
    showLoadingPopup(text);
    m_guiProxy.requestShopInfoList();
}

void Controller::registerShown(RegistrationInfoScreen& screen) {
    {
        // The button that was pressed goes, and hands its focus on.
        const FocusSilence silence;
        screen.removeButtons();
        blockConfirmation(screen, dynamic_cast<ShopListScreen*>(m_history.at(1)) != nullptr);
    }
    registerShop(lastChosenShop());
    currentScreen().destroyPopup();
    showLoadingPopup(CONNECTING_TEXT);
}

void Controller::registerShop(Shop* shop) {
    ZOLT_TRACE();
    m_guiProxy.requestRegistrationShopInfo(m_shopListParser.getRegistrationXml(shop));
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
