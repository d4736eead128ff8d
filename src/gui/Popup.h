// SPDX-License-Identifier: Apache-2.0
// Base of the popups that are shown above a screen.
#pragma once

#include <string>

#include <Elementary.h>

#include "gui/Handle.h"

namespace ZOLT::GUI {

// A popup widget at the full size of the screen, above a rectangle that dims the screen. Created
// hidden. Main loop thread only.
class Popup {
  public:
    // PARENT is the layout on which the popup lies and must outlive it. STYLE is the widget style;
    // WIDTH and HEIGHT are the screen's, in pixels. Throws ZOLT::Exception when the toolkit gives
    // no widget.
    Popup(Evas_Object* parent, const char* style, int width, int height);
    Popup(const Popup&) = delete;
    Popup& operator=(const Popup&) = delete;

    virtual ~Popup();
    virtual void show();
    // Hides the popup; show shows it again unchanged.
    virtual void hide();
    // Deletes the widgets, not this object.
    virtual void destroy();
    // Lets the widget in PART take the focus and gives it the focus.
    virtual void focusButton(std::string part);
    // Takes the focus from the widget in PART and keeps it from taking it again.
    virtual void deactivateButton(std::string part);
    // Deactivates every button.
    virtual void blockAllButtons();
    virtual int getButtonCount();
    virtual bool getVisible();
    // TITLE is a translation id.
    virtual void setTitle(const char* title);
    // TEXT is a translation id, STYLE the style of its label.
    virtual void setText(const char* text, const char* style) = 0;
    // Adds the next button: TEXT is a translation id, DATA is handed to CALLBACK, ICON may be null.
    virtual void addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) = 0;

    // Calls CALLBACK once after SECONDS, with this popup as data.
    void setTimeout(double seconds, Evas_Smart_Cb callback);

    // Key event on the popup widget; DATA is the Popup.
    static void onKeyPress(void* data, Evas* canvas, Evas_Object* object, void* eventInfo);

  protected:
    // Counts BUTTON and puts it into the part of its number, which then owns it.
    void appendButton(Evas_Object* button);
    // Remembers which widget has the focus, before the popup takes it.
    void rememberFocus();

    Handle m_popup;       // deleted by destroy, or with its window
    Handle m_background;  // deleted by destroy, or with its window's canvas
    int m_buttonsCnt;
    int m_width;
    int m_height;
    bool m_visible;

  private:
    // The widget of the window that has the focus; null if there is none, or if it belongs to this
    // popup.
    Evas_Object* focusedOutside() const;

    Handle m_focusBefore;  // not owned
};

}  // namespace ZOLT::GUI
