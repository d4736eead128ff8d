// SPDX-License-Identifier: Apache-2.0
// Shows the PIN with which the TV is registered to a shop.
#include "gui/PinDisplayingScreen.h"

#include <memory>

#include "common/Logger.h"
#include "common/Utils.h"
#include "common/ZoltConfig.h"
#include "gui/EventHandler.h"
#include "gui/Modes.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

constexpr char PIN_CODE_ID[] = "TV_SID_PIN_CODE";
constexpr char KEY_STYLE[] = "pinCodeKeyStyle";
constexpr char VALUE_STYLE[] = "pinCodeValStyle";
constexpr std::size_t SPOKEN_CHARACTERS = 8;

// The separators make the screen reader speak the characters one by one.
std::string spokenPin(const std::string& pin) {
    const std::unique_ptr<Eina_Strbuf, decltype(&eina_strbuf_free)> text(eina_strbuf_new(),
                                                                         eina_strbuf_free);
    eina_strbuf_append(text.get(), translated(PIN_CODE_ID));
    for (std::size_t place = 0; place < SPOKEN_CHARACTERS; ++place) {
        eina_strbuf_append_printf(text.get(), ", %c", pin.at(place));
    }
    return eina_strbuf_string_get(text.get());
}

void appendLabel(Evas_Object* layout, const char* text, const char* style) {
    Evas_Object* label = Screen::createLabel(layout, text, style);
    followLanguage(label);
    elm_layout_box_append(layout, "pinCodeVal", label);
    evas_object_show(label);
}

// PIN is shown as it was sent, even if a label would read it as markup.
void fillPinBox(Evas_Object* layout, const std::string& pin) {
    const std::string shown = Utils::htmlEncode(pin);
    constexpr char SEPARATOR[] = " :  ";
    if (modes::mirrored()) {
        // The mark makes the label's text run left to right.
        const std::string marked = std::string("&#x200e;") + translated(PIN_CODE_ID);
        appendLabel(layout, shown.c_str(), VALUE_STYLE);
        appendLabel(layout, SEPARATOR, KEY_STYLE);
        appendLabel(layout, marked.c_str(), KEY_STYLE);
        return;
    }
    appendLabel(layout, PIN_CODE_ID, KEY_STYLE);
    appendLabel(layout, SEPARATOR, KEY_STYLE);
    appendLabel(layout, shown.c_str(), VALUE_STYLE);
}

// The one button stands in the part for the enlarged mode in every mode: there is no other.
void addCancelButton(Evas_Object* layout) {
    Evas_Object* button =
        Screen::createButton(layout, "SID_CANCEL", EventHandler::quitRequested, nullptr,
                             iconName("i_close_cancel"), "c_button_icontext");
    elm_object_part_content_set(layout, "cancelBtnEnlarge", button);
    leaveSizeToPart(button);
    evas_object_show(button);
    elm_object_focus_allow_set(button, EINA_TRUE);
    elm_object_focus_set(button, EINA_TRUE);
}

}  // namespace

PinDisplayingScreen::PinDisplayingScreen(std::string pin, std::string registrationInfo, int width,
                                         int height)
    : Screen("PinDisplaying", m_layoutName, "PinDisplayingWindow", width, height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    elm_object_part_text_set(m_layout, "SoftwareVersion", versionLine().c_str());
    evas_object_smart_callback_add(m_layout, "language,changed", EventHandler::languageChanged,
                                   VERSION_ID);
    const std::string spoken = spokenPin(pin);
    if (registrationInfo.empty()) {
        setTranslatable(m_layout, "RegistrationInfo", "TV_SID_UNREGISTERED");
    } else {
        elm_object_part_text_set(m_layout, "RegistrationInfo", registrationInfo.c_str());
    }
    fillPinBox(m_layout, pin);
    modes::announce(spoken);
    addCancelButton(m_layout);
}

std::string PinDisplayingScreen::versionLine() {
    return std::string(translated(VERSION_ID)) + " : " + ZoltConfig::get("SourceVersion");
}

PinDisplayingScreen::~PinDisplayingScreen() {
    ZOLT_TRACE();
}

}  // namespace ZOLT::GUI
