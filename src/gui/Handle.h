// SPDX-License-Identifier: Apache-2.0
// A widget handle that is null once the toolkit has deleted the widget.
#pragma once

#include <Elementary.h>

namespace ZOLT::GUI {

// Whether an exception has left the main loop through the toolkit's own functions. Their records of
// what they were doing then point into a stack that is gone, and touching a widget can crash the
// process before main has logged what went wrong. The process ends at once, widgets included.
bool toolkitLost();
void setToolkitLost(bool lost);

// Names one widget, which its parent may delete at any time: all widgets of a window go when the
// window manager closes it. Reads as null from then on, and also when the toolkit is lost, so that
// nothing reaches for a widget that may not be touched. The widget outlives the handle unless
// destroy is called. Main loop thread only.
class Handle {
  public:
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle();

    // Names WIDGET, which may be null, instead of the one before.
    Handle& operator=(Evas_Object* widget);

    // The widget, or null.
    operator Evas_Object*() const;

    // Deletes the widget, if it is still there. The toolkit may put the deletion off while it is
    // inside one of the widget's callbacks: the handle is null at once all the same.
    void destroy();

  private:
    static void forget(void* data, Evas* canvas, Evas_Object* object, void* eventInfo);

    Evas_Object* m_widget = nullptr;  // deleted by its parent, or by destroy
};

}  // namespace ZOLT::GUI
