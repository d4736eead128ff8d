// SPDX-License-Identifier: Apache-2.0
// The way down the shop list: one screen for each level that leaves a choice.
#define ZOLT_LOG_FILE "Controller.cpp"
#include <memory>
#include <queue>
#include <set>
#include <utility>

#include "common/Exception.h"
#include "common/Logger.h"
#include "gui/Controller.h"
#include "gui/FlowScreens.h"
#include "gui/SelectionPopup.h"

namespace ZOLT::GUI {

namespace {

// Going on without a pick puts a null among the chosen shops. A document can be made of it, but no
// screen.
const std::string& nameOf(const Shop* shop) {
    if (shop == nullptr) {
        throw Exception("No shop chosen", GENERIC_ERROR);
    }
    return shop->name;
}

}  // namespace

Shop* Controller::lastChosenShop() const {
    return m_chosenShops.at(0);
}

const std::string& Controller::lastChosenName() const {
    return nameOf(lastChosenShop());
}

// Does not clear m_chosenShops, so its shops must outlive the list that they come from.
void Controller::prepareShopList() {
    ZOLT_TRACE();
    m_currentLevel = 0;
    m_initialLevel = 0;
    m_shopListParser.keep(m_chosenShops);
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
    // Without any level the difference wraps and the first access throws. Deliberate: the person
    // sees a failure rather than an empty screen.
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
    present(makeShopListScreen(list.name, chosen, width, height, getRegisteredShopName(),
                               m_currentLevel == m_initialLevel));
}

void Controller::showSelectionPopup() {
    ZOLT_TRACE();
    auto* const screen = dynamic_cast<ShopListScreen*>(current());
    if (screen == nullptr) {
        ZOLT_WARN("Cannot show selection popup on current screen");
        return;
    }
    // A copy: the screen removes the registered shop from it, and the list must keep that shop.
    std::set<Shop*, Shop::ShopComp> shops =
        m_shopListParser.getSubs(m_currentLevel == 0 ? "Root" : lastChosenName());
    presentPopup(screen->addSelectionPopup(shops), nullptr);
}

void Controller::dismissPopup() {
    Screen& screen = currentScreen();
    auto* const popup = dynamic_cast<SelectionPopup*>(screen.getPopup());
    if (popup == nullptr || !popup->m_shopSelected || popup->m_previousShop == nullptr) {
        screen.destroyPopup();
        return;
    }
    popup->m_selectedShop = popup->m_previousShop;
    popup->hide();
}

void Controller::openSelection(ShopListScreen& screen) {
    if (auto* const popup = dynamic_cast<SelectionPopup*>(screen.getPopup())) {
        popup->restoreSelectedItemSetting();
        popup->show();
        return;
    }
    screen.destroyPopup();
    showSelectionPopup();
}

void Controller::pick(SelectionPopup& popup, Shop* shop) {
    popup.m_selectedItem = elm_genlist_selected_item_get(popup.m_list);
    popup.m_shopSelected = true;
    popup.m_selectedShop = shop;
    popup.focusButton("button1");
}

void Controller::confirmPick(ShopListScreen& screen, SelectionPopup& popup) {
    Shop* const shop = lastOfOnlyChildren(popup.m_selectedShop);
    popup.m_selectedShop = shop;
    showChoice(screen, *shop, m_currentLevel == m_initialLevel);
    popup.m_previousItem = popup.m_selectedItem;
    popup.setPreviouslySelectedShop(shop);
    popup.hide();
}

// Here and before the confirmation the pick is not checked: a confirmed pick is what makes these
// buttons reachable, and without one the next step throws.
void Controller::goToNextLevel(const SelectionPopup& popup) {
    m_chosenShops.push_front(popup.m_selectedShop);
    currentScreen().destroyPopup();
    ++m_currentLevel;
    showShopListScreen(m_currentLevel);
}

void Controller::goToConfirmation(const SelectionPopup& popup) {
    m_chosenShops.push_front(popup.m_selectedShop);
    ++m_currentLevel;
    showRegistrationConfirmationScreen();
}

void Controller::goToPreviousLevel() {
    --m_currentLevel;
    if (m_currentLevel == 0) {
        m_chosenShops.clear();
    } else if (!m_chosenShops.empty()) {  // popping an empty deque would be undefined
        m_chosenShops.pop_front();
    }
    showShopListScreen(m_currentLevel);
}

}  // namespace ZOLT::GUI
