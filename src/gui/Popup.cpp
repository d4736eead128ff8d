// SPDX-License-Identifier: Apache-2.0
// Base of the popups that are shown above a screen.
#include "gui/Popup.h"

#include "common/Exception.h"
#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

Evas_Object* createBackground(Evas_Object* parent, int width, int height) {
    Evas_Object* background = evas_object_rectangle_add(evas_object_evas_get(parent));
    evas_object_color_set(background, 0, 0, 0, 76);
    evas_object_resize(background, width, height);
    return background;
}

// At any other size the toolkit places the popup. The theme draws the card in the middle of the
// screen, so it needs to know that the popup was moved.
void placePopup(Evas_Object* popup, int width, int height) {
    if (width == 1920 && height == 1080) {
        evas_object_move(popup, 0, 0);
    } else if (width == 1280 && height == 720) {
        evas_object_move(popup, 334, 206);
        elm_layout_signal_emit(popup, "popup,moved", "");
    }
}

}  // namespace

Popup::Popup(Evas_Object* parent, const char* style, int width, int height)
    : m_buttonsCnt(0), m_width(width), m_height(height), m_visible(false) {
    ZOLT_TRACE();
    m_background = createBackground(parent, width, height);
    m_popup = elm_popup_add(parent);
    if (m_popup == nullptr) {
        // The rectangle remains, hidden, until its canvas is deleted.
        throw Exception("Cannot allocate memory for popup instance", GENERIC_ERROR);
    }
    evas_object_resize(m_popup, width, height);
    elm_object_style_set(m_popup, style);
    placePopup(m_popup, width, height);
    followContrast(m_popup);
    followEnlargement(m_popup);
    setTranslatable(m_popup, "title,text", "COM_SID_ZOLT_CONTENT");
    evas_object_event_callback_add(m_popup, EVAS_CALLBACK_KEY_UP, onKeyPress, this);
}

Popup::~Popup() {
    ZOLT_TRACE();
    const FocusSilence silence;
    Popup::hide();
    Popup::destroy();
}

void Popup::show() {
    ZOLT_TRACE();
    m_visible = true;
    rememberFocus();
    evas_object_show(m_background);
    evas_object_show(m_popup);
}

void Popup::hide() {
    ZOLT_TRACE();
    m_visible = false;
    // The toolkit gives the focus back to the widget that had it before the popup, even if another
    // one has been given it since, such as the button for the next step. It skips a widget that may
    // not take the focus.
    Evas_Object* const focused = focusedOutside();
    const bool movedOn = focused != nullptr && m_focusBefore != nullptr && focused != m_focusBefore;
    if (movedOn) {
        elm_object_focus_allow_set(m_focusBefore, EINA_FALSE);
    }
    evas_object_hide(m_background);
    evas_object_hide(m_popup);
    if (movedOn) {
        elm_object_focus_allow_set(m_focusBefore, EINA_TRUE);
    }
    // The toolkit does not give it back if a widget of the popup was given the focus while hidden,
    // as happens to a list that is opened again.
    if (Evas_Object* const heir = movedOn ? focused : m_focusBefore) {
        elm_object_focus_set(heir, EINA_TRUE);
    }
    m_focusBefore = nullptr;
}

void Popup::rememberFocus() {
    m_focusBefore = elm_object_focused_object_get(m_popup);
}

Evas_Object* Popup::focusedOutside() const {
    Evas_Object* const focused =
        m_popup != nullptr ? elm_object_focused_object_get(m_popup) : nullptr;
    for (Evas_Object* widget = focused; widget != nullptr;
         widget = elm_object_parent_widget_get(widget)) {
        if (widget == m_popup) {
            return nullptr;
        }
    }
    return focused;
}

void Popup::destroy() {
    ZOLT_TRACE();
    const FocusSilence silence;
    if (m_popup != nullptr) {
        // If the toolkit delays the deletion, no callback may reach this object.
        evas_object_event_callback_del_full(m_popup, EVAS_CALLBACK_KEY_UP, onKeyPress, this);
    }
    m_popup.destroy();
    m_background.destroy();
}

void Popup::focusButton(std::string part) {
    ZOLT_TRACE();
    Evas_Object* button = elm_object_part_content_get(m_popup, part.c_str());
    elm_object_focus_allow_set(button, EINA_TRUE);
    elm_object_focus_set(button, EINA_TRUE);
}

void Popup::deactivateButton(std::string part) {
    ZOLT_TRACE();
    Evas_Object* button = elm_object_part_content_get(m_popup, part.c_str());
    elm_object_focus_allow_set(button, EINA_FALSE);
    elm_object_focus_set(button, EINA_FALSE);
    if (button != nullptr) {
        // A widget that may not have the focus gets no signal when it loses it, and would still be
        // drawn as focused.
        elm_layout_signal_emit(button, "elm,action,unfocus", "elm");
        showBlocked(button);
    }
}

void Popup::blockAllButtons() {
    ZOLT_TRACE();
    for (int number = 1; number <= m_buttonsCnt; ++number) {
        deactivateButton("button" + std::to_string(number));
    }
}

int Popup::getButtonCount() {
    ZOLT_TRACE();
    return m_buttonsCnt;
}

bool Popup::getVisible() {
    ZOLT_TRACE();
    return m_visible;
}

void Popup::setTitle(const char* title) {
    ZOLT_TRACE();
    setTranslatable(m_popup, "title,text", title);
}

void Popup::setTimeout(double seconds, Evas_Smart_Cb callback) {
    ZOLT_TRACE();
    elm_popup_timeout_set(m_popup, seconds);
    evas_object_smart_callback_add(m_popup, "timeout", callback, this);
}

void Popup::appendButton(Evas_Object* button) {
    ++m_buttonsCnt;
    const std::string part = "button" + std::to_string(m_buttonsCnt);
    elm_object_part_content_set(m_popup, part.c_str(), button);
}

}  // namespace ZOLT::GUI
