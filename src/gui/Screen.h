// SPDX-License-Identifier: Apache-2.0
// Base of every full-screen view, and the one place where widgets are made.
#pragma once

#include <initializer_list>
#include <string>

#include <Elementary.h>

#include "gdbus/ZOLTEvents.h"
#include "gui/Handle.h"

namespace ZOLT::GUI {

class Popup;
class MessagePopup;

// Whether the TV's high contrast setting is on: its value, or 0 if it cannot be read.
int IsHighContrastMode();

// The factories take the name of an icon as char*, yet never write to it.
inline char* iconName(const char* name) {
    return const_cast<char*>(name);
}

// One window, the layout that fills it and at most one popup. Texts are translation ids unless a
// comment says otherwise. Main loop thread only.
class Screen {
  public:
    // LAYOUTFILE is a file in the theme's folder and LAYOUTGROUP a group in it; WIDTH and HEIGHT
    // are the screen's size in pixels. Throws ZOLT::Exception when the toolkit gives no window or
    // layout. The window is not shown.
    Screen(const char* windowTitle, std::string layoutFile, const char* layoutGroup, int width,
           int height);
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    virtual ~Screen() = 0;
    virtual void show();
    // The popup on this screen, or null. Belongs to the screen.
    virtual Popup* getPopup();
    // Puts a new button into PART of the layout, with the icon that goes with TEXT.
    virtual void addButton(const char* part, const char* text, Evas_Smart_Cb callback, void* data,
                           bool focusable, bool focused);
    virtual void modifyButtonText(const char* part, const char* text);

    // Each makes a popup, hidden, and keeps it as the screen's. An earlier popup of the screen is
    // not destroyed, only no longer referenced: call destroyPopup first.
    virtual Popup* addMessagePopup(const char* text);
    virtual Popup* addNetworkFailurePopup(ZOLTEventsType event, ZOLTEventsReasonType reason);
    virtual Popup* addLoadingPopup(const char* text);
    virtual Popup* addDeregistrationPopup();
    virtual Popup* RegistrationInfoDeletionPopup();
    virtual Popup* addCompletionPopup();

    // Whether the user interface ran right to left when this screen was made.
    bool getIfMirrored() const;

    // Whether this screen's window is open and WIDGET is in another window, which it covers.
    bool covers(const Evas_Object* widget) const;
    // Whether the window is still there: it may be closed from outside.
    bool isOpen() const { return m_window != nullptr; }

    // Destroys the popup, if there is one.
    void destroyPopup();

    // Grabs the keys that must not reach the rest of the TV.
    void enableKeysGrabbing();

    // Loads the theme's widget styles for the whole process. Called once, before any screen.
    static void loadLayouts();

    // The factories return a hidden widget that belongs to PARENT. If the toolkit creates none they
    // throw ZOLT::Exception, except createIcon, which returns null.
    static Evas_Object* createLabel(Evas_Object* parent, const char* text, const char* style);
    static Evas_Object* createIcon(Evas_Object* parent, const char* name);
    // DATA is handed to CALLBACK. ICON may be null.
    static Evas_Object* createButton(Evas_Object* parent, const char* text, Evas_Smart_Cb callback,
                                     void* data, char* icon, const char* style);
    static Evas_Object* createImage(Evas_Object* parent, const char* file, int width, int height);
    static Evas_Object* createProgressAnimation(Evas_Object* parent);

    // Key event on the window; DATA is the Screen.
    static void onKeyPress(void* data, Evas* canvas, Evas_Object* object, void* eventInfo);
    // Signal of the layout; logs the layout's minimum size.
    static void onSizeChanged(void* data, Evas_Object* object, const char* emission,
                              const char* source);

  protected:
    // Makes a popup with an OK button that calls BUTTONCALLBACK. TIMEOUTCALLBACK is called after
    // TIMEOUT seconds if that is more than 0. The caller owns the result.
    MessagePopup* createBasicMessagePopup(const char* text, double timeout,
                                          Evas_Smart_Cb timeoutCallback,
                                          Evas_Smart_Cb buttonCallback);

    // A button of a menu: its part, text, icon and callback.
    struct MenuButton {
        const char* part;
        const char* text;
        const char* icon;
        Evas_Smart_Cb callback;
    };
    // Makes BUTTONS in their order; the first gets the focus.
    void fillMenu(std::initializer_list<MenuButton> buttons);
    // Makes the turning circle of a waiting screen, with two lines of text. The circle belongs to
    // the layout.
    Evas_Object* fillWaiting(const char* text1, const char* text2);

    // Every derived class passes a copy of it to the constructor.
    static const std::string m_layoutName;

    int m_width;
    int m_height;
    bool m_mirrored;
    Handle m_window;  // deleted by the destructor, or by the window manager's close request
    Handle m_layout;  // deleted by the destructor, or with the window
    Popup* m_popup;   // deleted by the destructor, but not by destroyPopup

  private:
    // A popup of two buttons, OK with CONFIRMED and the popup as data, and Cancel.
    MessagePopup* createQuestionPopup(const char* text, Evas_Smart_Cb confirmed);
};

}  // namespace ZOLT::GUI
