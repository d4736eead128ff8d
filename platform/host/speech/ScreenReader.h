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

// The toolkit's own reader is made for a finger: it reads what is touched, wants two taps to press
// a button, and lets the focus walk onto texts. It stays off. While this object lives and the set's
// reader is on, each move of the focus reads the widget that has it, or the row of a list, once;
// and what the program itself has said is spoken. Every text is a line in the log.
class ScreenReader {
  public:
    ScreenReader();
    ~ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    // The one that lives, or null.
    static ScreenReader* running();

    void say(const std::string& text);

  private:
    // What has the focus; both belong to the program, and may be gone.
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
    Ecore_Timer* m_timer = nullptr;       // while the focus comes to rest; deleted by this class
    int m_ticks = 0;                      // of the timer, since the focus moved
    Place m_place;                        // where it was seen last
    Place m_read;                         // where it rested last
    Evas_Object* m_keyboard = nullptr;    // the window that has it; to be compared only
    std::vector<Evas_Object*> m_windows;  // those that were shown then, likewise
    SpeechProgram m_program;
};

}  // namespace host
