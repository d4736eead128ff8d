// SPDX-License-Identifier: Apache-2.0
// The popups that a screen makes.
#include <memory>

#define ZOLT_LOG_FILE "Screen.cpp"
#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/LoadingPopup.h"
#include "gui/MessagePopup.h"
#include "gui/Screen.h"

namespace ZOLT::GUI {

namespace {

constexpr char POPUP_STYLE[] = "c_popup_bottom";
constexpr char POPUP_TEXT_STYLE[] = "popup/c_popup_bottom";
constexpr double NETWORK_FAILURE_TIMEOUT = 60.0;  // seconds

}  // namespace

MessagePopup* Screen::createBasicMessagePopup(const char* text, double timeout,
                                              Evas_Smart_Cb timeoutCallback,
                                              Evas_Smart_Cb buttonCallback) {
    ZOLT_TRACE();
    auto popup = std::make_unique<MessagePopup>(m_layout, POPUP_STYLE, m_width, m_height);
    if (timeout > 0) {
        popup->setTimeout(timeout, timeoutCallback);
    }
    popup->setText(text, POPUP_TEXT_STYLE);
    popup->addButton("SID_OK", buttonCallback, nullptr, iconName("i_ok_done_allow"));
    return popup.release();
}

Popup* Screen::addMessagePopup(const char* text) {
    ZOLT_TRACE();
    m_popup = createBasicMessagePopup(text, -1.0, nullptr, EventHandler::quitRequested);
    return m_popup;
}

Popup* Screen::addNetworkFailurePopup(ZOLTEventsType /*event*/, ZOLTEventsReasonType reason) {
    ZOLT_TRACE();
    const ReasonFacts* facts = findReason(reason);
    if (facts == nullptr || facts->failureText == nullptr) {
        ZOLT_WARN("Cannot recognize the reason type");
        facts = findReason(REASON_NETWORK_UNSTABLE);
    }
    m_popup = createBasicMessagePopup(facts->failureText, NETWORK_FAILURE_TIMEOUT,
                                      EventHandler::quitRequested, EventHandler::quitRequested);
    return m_popup;
}

Popup* Screen::addLoadingPopup(const char* text) {
    ZOLT_TRACE();
    m_popup = new LoadingPopup(m_layout, POPUP_STYLE, m_width, m_height);
    m_popup->setText(text, "popup/LoadingPopup");
    return m_popup;
}

MessagePopup* Screen::createQuestionPopup(const char* text, Evas_Smart_Cb confirmed) {
    auto popup = std::make_unique<MessagePopup>(m_layout, POPUP_STYLE, m_width, m_height);
    popup->setText(text, POPUP_TEXT_STYLE);
    popup->addButton("SID_OK", confirmed, popup.get(), iconName("i_ok_done_allow"));
    popup->addButton("SID_CANCEL", EventHandler::popupHideRequested, nullptr,
                     iconName("i_close_cancel"));
    return popup.release();
}

Popup* Screen::addDeregistrationPopup() {
    ZOLT_TRACE();
    m_popup = createQuestionPopup("TV_SID_ARE_YOU_SURE_YOU_WANT_TO_DEREGISTER",
                                  EventHandler::deregistrationRequested);
    return m_popup;
}

Popup* Screen::RegistrationInfoDeletionPopup() {
    ZOLT_TRACE();
    m_popup = createQuestionPopup("TV_SID_SURE_CHANGE_REGISTRATION_INFO_DELETED",
                                  EventHandler::RegistrationChange);
    return m_popup;
}

Popup* Screen::addCompletionPopup() {
    ZOLT_TRACE();
    m_popup = createBasicMessagePopup("COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS", -1.0, nullptr,
                                      EventHandler::quitRequested);
    return m_popup;
}

}  // namespace ZOLT::GUI
