// SPDX-License-Identifier: Apache-2.0
// What screens and popups hand to Elementary as callbacks.
#include "gui/EventHandler.h"

#include <array>
#include <cstring>

#include <libintl.h>

#include "common/Exception.h"
#include "common/Logger.h"
#include "common/ZoltConfig.h"
#include "gui/AUIPlayer.h"
#include "gui/Controller.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/Popup.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/Screen.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"

namespace ZOLT::GUI {

bool EventHandler::m_keyUnfocused = false;
int EventHandler::m_focusState = FOCUS_STATE_NONE;

namespace {

constexpr const char* DOMAIN = "ZOLT";
constexpr const char* CONNECTING_TEXT = "SID_CONNECTING_TO_NETWORK_SERVER";
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
    Screen* const screen = controller().current();
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
        play(AUI_SOUND_MOVE);  // Right always leads from the list to the buttons, ...
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
