// SPDX-License-Identifier: Apache-2.0
// Makes the toolkit's screen reader follow a remote control.
#pragma once

#include <Ecore.h>
#include <Evas.h>

namespace Host {

// The toolkit's reader is made for a finger: it reads what is touched and wants two taps to press a
// button. While this object lives and the reader is on, a move of the focus reads the widget that
// has it, and one OK presses it.
class ScreenReader {
  public:
    ScreenReader();
    ~ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

  private:
    static Eina_Bool onIdle(void* self);
    static void onKeyDown(void* self, Evas* canvas, Evas_Object* widget, void* event);
    static void onDeleted(void* self, Evas* canvas, Evas_Object* widget, void* event);
    void follow(Evas_Object* widget);
    void leave();

    Ecore_Idle_Enterer* m_idle;        // deleted by this class
    Evas_Object* m_current = nullptr;  // the widget that was read; belongs to the program
};

}  // namespace Host
