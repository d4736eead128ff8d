// SPDX-License-Identifier: Apache-2.0
// What screens and popups hand to Elementary as callbacks. Their log lines name Controller.cpp, the
// source of the flow that they drive.
#pragma once

#include <string>

#include <Elementary.h>

namespace ZOLT::GUI {

// What happened to the focus since the last key.
enum FocusState {
    FOCUS_STATE_NONE = 0,       // a key was handled
    FOCUS_STATE_UNFOCUSED = 1,  // an item lost the focus
    FOCUS_STATE_FOCUSED = 2     // an item took the focus
};

// Suppresses the sounds of focus changes while it exists. A deleted widget hands the focus to
// another one; sounds are for what a person does, so the end of a screen or popup must be silent.
// These changes also do not count as an effect of a key.
class FocusSilence {
  public:
    FocusSilence();
    ~FocusSilence();
    FocusSilence(const FocusSilence&) = delete;
    FocusSilence& operator=(const FocusSilence&) = delete;
};

// The callbacks of all buttons, popups, keys and of speech. They use the flow that
// Controller::m_self points at. Those that need a controller or a screen throw ZOLT::Exception
// without one, which ends the main loop. No callback catches what the daemon's calls throw. Main
// loop thread only.
class EventHandler {
  public:
    EventHandler() = delete;

    // --- buttons and popups, in the form of a smart callback
    // Each does nothing if a newer screen covers OBJECT.
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
    // DATA is the translation id of a text that OBJECT cannot translate itself.
    static void languageChanged(void* data, Evas_Object* object, void* eventInfo);

    // --- keys: EVENTINFO is that of a key-up or of a key-down event
    static void onKeyPress(void* data, Evas* evas, Evas_Object* object, void* eventInfo);
    static void selectionPopupListOnKeyPress(void* data, Evas* evas, Evas_Object* object,
                                             void* eventInfo);

    // --- speech
    // What the screen reader says of OBJECT, with DATA its text. To be released with free.
    static char* accessCallback(void* data, Evas_Object* object);
    // TEXT with a blank in place of each colour, line break and tab tag.
    static std::string removeSpecialTags(const std::string& text);

    // The click sound of a button.
    static void buttonClickedCb();

    static bool m_keyUnfocused;  // an item lost the focus since the last key was handled
    static int m_focusState;     // a FocusState

  private:
    // Whether OBJECT was pressed but the open window of a newer screen covers it. False if OBJECT
    // is a window, a popup or null: those call back for keys and timeouts, which are always
    // handled.
    static bool isCovered(const Evas_Object* object);
    // Plays the click sound; false, without a sound, if OBJECT is covered.
    static bool click(const Evas_Object* object);
};

}  // namespace ZOLT::GUI
