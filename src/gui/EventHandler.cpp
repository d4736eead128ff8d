// SPDX-License-Identifier: Apache-2.0
// What buttons, popups, keys, the focus and the screen reader do. The flow acts; these ask it.
#define ZOLT_LOG_FILE "Controller.cpp"
#include "gui/EventHandler.h"

#include <array>
#include <cstring>

#include "common/Exception.h"
#include "common/Logger.h"
#include "gui/AUIPlayer.h"
#include "gui/Controller.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"

namespace ZOLT::GUI {

bool EventHandler::m_keyUnfocused = false;
int EventHandler::m_focusState = FOCUS_STATE_NONE;

namespace {

constexpr const char* SEARCHING_TEXT = "TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT";

int focusSilences = 0;  // how many FocusSilence objects exist

// After a second launch m_self is null although a controller exists. Pressing a button then ends
// the program: the exception leaves the main loop, and main logs it and cleans up.
Controller& controller() {
    if (Controller::m_self == nullptr) {
        throw Exception("No controller", GENERIC_ERROR);
    }
    return *Controller::m_self;
}

// The popup of SCREEN as a PopupType, or null if there is no SCREEN, no popup, or one of another
// type.
template <typename PopupType>
PopupType* popupOf(Screen* screen) {
    return screen != nullptr ? dynamic_cast<PopupType*>(screen->getPopup()) : nullptr;
}

void play(AUISoundType sound) {
    AUIPlayer().play(sound);
}

// Key-down and key-up events have the same first members.
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

// A popup with a question (two buttons) handles the back key itself, as "no".
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

// Whether OBJECT is a window or popup. These call back for a back key or a timeout, not because
// they were pressed.
bool isFrame(const Evas_Object* object) {
    const char* const type = evas_object_type_get(object);
    return type != nullptr &&
           (std::strcmp(type, "elm_win") == 0 || std::strcmp(type, "elm_popup") == 0);
}

}  // namespace

FocusSilence::FocusSilence() {
    ++focusSilences;
}

FocusSilence::~FocusSilence() {
    --focusSilences;
}

void EventHandler::buttonClickedCb() {
    ZOLT_TRACE();
    play(AUI_SOUND_SELECT);
}

// Several keys in one frame, and keys pressed while a call to the daemon blocks the program, all go
// to the window that was on top at that time. Without this check they would create a second screen
// of the same kind, or send the daemon a second request.
bool EventHandler::isCovered(const Evas_Object* object) {
    if (Controller::m_self != nullptr) {
        Controller::m_self->dropClosedScreens();
    }
    const Controller* const flow = Controller::m_self;
    const Screen* const screen = flow != nullptr ? flow->current() : nullptr;
    if (object == nullptr || isFrame(object) || screen == nullptr || !screen->covers(object)) {
        return false;
    }
    ZOLT_DEBUG("Press on a covered screen is ignored");
    return true;
}

bool EventHandler::click(const Evas_Object* object) {
    if (isCovered(object)) {
        return false;
    }
    buttonClickedCb();
    return true;
}

void EventHandler::quitRequested(void* /*data*/, Evas_Object* object, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    elm_exit();
}

void EventHandler::goBackRequested(void* /*data*/, Evas_Object* object, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    Controller* const flow = Controller::m_self;
    if (flow == nullptr) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "controller is nullptr! Skipping operation");
        return;
    }
    if (!flow->canGoBack()) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "No back screen history present - exit");
        elm_exit();
        return;
    }
    ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "We have some back screen history - let's return back");
    flow->goBack();
}

void EventHandler::popupHideRequested(void* /*data*/, Evas_Object* object, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().dismissPopup();
}

void EventHandler::deregistrationPopupRequested(void* /*data*/, Evas_Object* object,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().showDeregistrationPopup();
}

void EventHandler::deregistrationRequested(void* /*data*/, Evas_Object* object,
                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().unregister();
}

void EventHandler::reRegistrationScreenRequested(void* /*data*/, Evas_Object* object,
                                                 void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().showDeletionPopup();
}

void EventHandler::RegistrationChange(void* /*data*/, Evas_Object* object, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
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
    flow->deleteRegistration(*popup);
}

void EventHandler::reRegistrationRequested(void* /*data*/, Evas_Object* object,
                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().currentScreen().destroyPopup();
    controller().searchShops(Controller::CONNECTING_TEXT);
}

// Deliberately the only button without a click sound.
void EventHandler::registrationInformationScreenRequested(void* /*data*/, Evas_Object* object,
                                                          void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (isCovered(object)) {
        return;
    }
    controller().showRegistrationInformationScreen();
}

void EventHandler::pinRequestingScreenRequested(void* /*data*/, Evas_Object* object,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().clearPopupBelow();
    controller().showPinRequestingScreen();
}

void EventHandler::displayShopsFromLANRequested(void* /*data*/, Evas_Object* object,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().clearPopupBelow();
    controller().searchShops(SEARCHING_TEXT);
}

void EventHandler::shopRegistrationRequested(void* /*data*/, Evas_Object* object,
                                             void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    auto* const screen = dynamic_cast<RegistrationInfoScreen*>(controller().current());
    if (screen == nullptr) {
        ZOLT_WARN("Currently shown screen is not RegistrationInfoScreen");
        return;
    }
    controller().registerShown(*screen);
}

void EventHandler::selectionPopupRequested(void* /*data*/, Evas_Object* object,
                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    auto* const screen = dynamic_cast<ShopListScreen*>(controller().current());
    if (screen == nullptr) {
        ZOLT_WARN("Current screen is not a shop displaying screen");
        return;
    }
    controller().openSelection(*screen);
}

void EventHandler::selectionPopupItemSelectionCb(void* data, Evas_Object* object,
                                                 void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    if (data == nullptr) {
        ZOLT_WARN("Incorrect callback call - no shop selected");
        return;
    }
    auto* const popup = popupOf<SelectionPopup>(controller().current());
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown popup is not a Selection Popup");
        return;
    }
    controller().pick(*popup, static_cast<Shop*>(data));
}

void EventHandler::selectionPopupShopChosen(void* /*data*/, Evas_Object* object,
                                            void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
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
    if (!popup->m_shopSelected) {
        ZOLT_WARN("Shop is not selected");
        return;
    }
    if (popup->m_selectedShop == nullptr) {
        ZOLT_WARN("No shop selected");
        return;
    }
    controller().confirmPick(*screen, *popup);
}

void EventHandler::nextSelectionScreenRequested(void* /*data*/, Evas_Object* object,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    auto* const popup = popupOf<SelectionPopup>(controller().current());
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown screen is not a ShopList screen");
        return;
    }
    controller().goToNextLevel(*popup);
}

void EventHandler::prevSelectionScreenRequested(void* /*data*/, Evas_Object* object,
                                                void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    controller().goToPreviousLevel();
}

void EventHandler::registrationConfirmationScreenRequested(void* /*data*/, Evas_Object* object,
                                                           void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (!click(object)) {
        return;
    }
    auto* const popup = popupOf<SelectionPopup>(controller().current());
    if (popup == nullptr) {
        ZOLT_WARN("Currently shown screen is not a ShopList screen");
        return;
    }
    controller().goToConfirmation(*popup);
}

// The first focus of a new screen makes no sound, because no widget lost the focus before it.
void EventHandler::focusedItemCb(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (m_focusState == FOCUS_STATE_UNFOCUSED && focusSilences == 0) {
        play(AUI_SOUND_MOVE);
    }
    m_focusState = FOCUS_STATE_FOCUSED;
}

void EventHandler::unfocusedItemCb(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ZOLT_TRACE();
    if (focusSilences != 0) {
        // The widget that takes the focus next may do so after the silence, as that of a screen
        // does that is shown again. It is silent too.
        m_focusState = FOCUS_STATE_NONE;
        return;
    }
    m_keyUnfocused = true;
    m_focusState = FOCUS_STATE_UNFOCUSED;
}

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
    if (dynamic_cast<PinDisplayingScreen*>(screen) != nullptr &&
        id == PinDisplayingScreen::VERSION_ID) {
        elm_object_part_text_set(object, "SoftwareVersion",
                                 PinDisplayingScreen::versionLine().c_str());
    } else if (dynamic_cast<RegistrationInfoScreen*>(screen) != nullptr &&
               id == RegistrationInfoScreen::SHOP_CODE_ID) {
        elm_object_part_text_set(object, "leftText",
                                 RegistrationInfoScreen::shopCodeLabel().c_str());
    }
}

// Relies on the order of events: the focus moves before the key event that moved it arrives here.
void EventHandler::onKeyPress(void* data, Evas* /*evas*/, Evas_Object* /*object*/,
                              void* eventInfo) {
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
            quitRequested(data, nullptr, eventInfo);  // no button was pressed
        }
    } else if (isArrowKey(key) && !m_keyUnfocused) {
        ZOLT_DEBUG("No Focus Key Event pressed");
        play(AUI_SOUND_BLOCKED);
    }
    m_keyUnfocused = false;
}

void EventHandler::selectionPopupListOnKeyPress(void* data, Evas* /*evas*/, Evas_Object* /*object*/,
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
        play(AUI_SOUND_MOVE);  // moves from the list to the buttons
    } else if (key == "Left") {
        play(AUI_SOUND_BLOCKED);  // deliberately unlike Right: Left never moves the focus
    } else if (isReturnKey(key)) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "popup hide called");
        popupHideRequested(data, nullptr, eventInfo);
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
    Eina_Strbuf* const buffer = eina_strbuf_new();
    if (!Controller::m_wasLabelRead) {
        ZOLT_DEBUG("Label wasn't read yet");
        Controller::m_wasLabelRead = true;
        const std::string label = removeSpecialTags(Controller::m_currentLabelText);
        eina_strbuf_append_printf(buffer, "%s, ", label.c_str());
    }
    const std::string text = removeSpecialTags(static_cast<const char*>(data));
    eina_strbuf_append_printf(buffer, "%s", text.c_str());
    char* const spoken = eina_strbuf_string_steal(buffer);
    // Only the text is released, not the buffer's header: a small, deliberate leak for each spoken
    // text.
    eina_strbuf_string_free(buffer);
    ZOLT_DEBUG("%s", spoken);
    return spoken;
}

}  // namespace ZOLT::GUI
