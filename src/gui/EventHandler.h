// SPDX-License-Identifier: Apache-2.0
// What screens and popups hand to Elementary as callbacks. Their log lines name Controller.cpp, the
// source of the flow that they drive.
#pragma once

#include <string>

#include <Elementary.h>

namespace ZOLT::GUI {

// Where the focus stands between two keys.
enum FocusState {
    FOCUS_STATE_NONE = 0,       // a key was handled
    FOCUS_STATE_UNFOCUSED = 1,  // an item lost the focus
    FOCUS_STATE_FOCUSED = 2     // an item took the focus
};

// A sound answers a person. While one of these lives, the moves of the focus have another cause,
// the end of a screen or popup, whose widgets hand the focus on as they go: they make no sound, and
// no key counts as having moved the focus.
class FocusSilence {
  public:
    FocusSilence();
    ~FocusSilence();
    FocusSilence(const FocusSilence&) = delete;
    FocusSilence& operator=(const FocusSilence&) = delete;
};

// The callbacks of all buttons, popups, keys and of speech. They find the flow through
// Controller::m_self. Those that need a controller or a screen and find none throw
// ZOLT::Exception, which leaves the main loop. No callback catches what the daemon's calls throw.
// Main loop thread only.
class EventHandler {
  public:
    EventHandler() = delete;

    // --- buttons and popups, in the form of a smart callback
    // Each ignores the press of an OBJECT that a newer screen covers.
    static void quitRequested(void* data, Evas_Object* object, void* eventInfo);
    // Deletes the current screen: nothing may touch it after the call.
    static void goBackRequested(void* data, Evas_Object* object, void* eventInfo);
    static void popupHideRequested(void* data, Evas_Object* object, void* eventInfo);
    static void deregistrationPopupRequested(void* data, Evas_Object* object, void* eventInfo);
    static void deregistrationRequested(void* data, Evas_Object* object, void* eventInfo);
    static void reRegistrationScreenRequested(void* data, Evas_Object* object, void* eventInfo);
    static void RegistrationChange(void* data, Evas_Object* object, void* eventInfo);
    static void reRegistrationRequested(void* data, Evas_Object* object, void* eventInfo);
    static void registrationInformationScreenRequested(void* data, Evas_Object* object,
                                                       void* eventInfo);
    static void pinRequestingScreenRequested(void* data, Evas_Object* object, void* eventInfo);
    static void displayShopsFromLANRequested(void* data, Evas_Object* object, void* eventInfo);
    static void shopRegistrationRequested(void* data, Evas_Object* object, void* eventInfo);

    // --- the way down the shop list, in the same form
    static void selectionPopupRequested(void* data, Evas_Object* object, void* eventInfo);
    // DATA is the Shop of the item.
    static void selectionPopupItemSelectionCb(void* data, Evas_Object* object, void* eventInfo);
    static void selectionPopupShopChosen(void* data, Evas_Object* object, void* eventInfo);
    static void nextSelectionScreenRequested(void* data, Evas_Object* object, void* eventInfo);
    static void prevSelectionScreenRequested(void* data, Evas_Object* object, void* eventInfo);
    static void registrationConfirmationScreenRequested(void* data, Evas_Object* object,
                                                        void* eventInfo);

    // --- focus and language, in the same form
    static void focusedItemCb(void* data, Evas_Object* object, void* eventInfo);
    static void unfocusedItemCb(void* data, Evas_Object* object, void* eventInfo);
    // DATA is the translation id of a text that OBJECT cannot translate by itself.
    static void languageChanged(void* data, Evas_Object* object, void* eventInfo);

    // --- keys: EVENTINFO is that of a key-up or of a key-down event
    static void onKeyPress(void* data, Evas* evas, Evas_Object* object, void* eventInfo);
    static void selectionPopupListOnKeyPress(void* data, Evas* evas, Evas_Object* object,
                                             void* eventInfo);

    // --- speech
    // What the screen reader says of OBJECT, with DATA its text. To be released with free.
    static char* accessCallback(void* data, Evas_Object* object);
    // TEXT with a blank in place of each colour, line break and tabulator tag.
    static std::string removeSpecialTags(const std::string& text);

    // The click of a button.
    static void buttonClickedCb();

    static bool m_keyUnfocused;  // an item lost the focus since the last key was handled
    static int m_focusState;     // a FocusState

  private:
    // Whether OBJECT, which was pressed, lies under the living window of a newer screen. Keys and
    // timeouts, for which windows and popups call back, or nobody does, count everywhere.
    static bool isCovered(const Evas_Object* object);
    // Makes the click of OBJECT; false if it is covered.
    static bool click(const Evas_Object* object);
};

}  // namespace ZOLT::GUI
