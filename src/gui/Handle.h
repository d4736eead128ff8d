// SPDX-License-Identifier: Apache-2.0
// A widget handle that is null once the toolkit has deleted the widget.
#pragma once

#include <Elementary.h>

namespace ZOLT::GUI {

// Whether an exception has left the main loop through the toolkit's own functions. The toolkit may
// then hold pointers into stack frames that no longer exist, and any call on a widget can crash the
// process before main has logged the exception. So no widget is touched any more; the process ends
// at once and takes them with it.
bool toolkitLost();
void setToolkitLost(bool lost);

// A pointer to a widget that becomes null when the widget is deleted. Its parent may delete it at
// any time: when the window manager closes a window, all of its widgets are deleted. The pointer
// also reads as null once the toolkit is lost, so that no widget is used any more. The widget
// outlives the handle unless destroy is called. Main loop thread only.
class Handle {
  public:
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle();

    // Points at WIDGET from now on, which may be null.
    Handle& operator=(Evas_Object* widget);

    // The widget, or null.
    operator Evas_Object*() const;

    // Deletes the widget, if it still exists. The handle is null at once, even if the toolkit
    // delays the deletion because it is inside one of the widget's callbacks.
    void destroy();

  private:
    static void forget(void* data, Evas* canvas, Evas_Object* object, void* eventInfo);

    Evas_Object* m_widget = nullptr;  // deleted by its parent, or by destroy
};

}  // namespace ZOLT::GUI
