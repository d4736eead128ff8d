// SPDX-License-Identifier: Apache-2.0
// Reads the screen to a person with a remote control.
#pragma once

#include <string>
#include <vector>

#include <Ecore.h>
#include <Elementary.h>
#include <Evas.h>

#include "host/speech/SpeechProgram.h"

namespace host {

// The toolkit's own reader is made for touch screens: it reads what is touched, needs two taps to
// press a button, and moves the focus onto texts. It stays off. While this object lives and
// ScreenReader is true in the description, it reads each widget or list row once when the focus
// moves to it, and speaks what the program passes to elm_access_say. Every text is a line in the
// log.
class ScreenReader {
  public:
    ScreenReader();
    ~ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    // The object that exists, or null.
    static ScreenReader* running();

    void say(const std::string& text);

  private:
    // What has the focus. Both belong to the program and may have been deleted.
    struct Place {
        Evas_Object* widget = nullptr;
        const Elm_Object_Item* row = nullptr;  // of a list
        bool operator==(const Place& other) const {
            return widget == other.widget && row == other.row;
        }
    };

    static Eina_Bool onIdle(void* self);
    static Eina_Bool onTick(void* self);
    Evas_Object* focusedWidget();
    Place focusedPlace();
    void follow(const Place& place);
    void rest();

    Ecore_Idle_Enterer* m_idle;           // deleted by this class
    Ecore_Timer* m_timer = nullptr;       // runs until the focus rests; deleted by this class
    int m_ticks = 0;                      // of the timer, since the focus moved
    Place m_place;                        // where the focus was at the last check
    Place m_read;                         // the last place that was read
    Evas_Object* m_keyboard = nullptr;    // the window with the keyboard; only compared
    std::vector<Evas_Object*> m_windows;  // the windows shown then; only compared
    SpeechProgram m_program;
};

}  // namespace host
