// SPDX-License-Identifier: Apache-2.0
// Key grabs on an X server.
#include "utilx.h"

#include <X11/Xlib.h>

namespace {

int s_failure = 0;

int noteError(Display*, XErrorEvent* event) {
    s_failure = event->error_code;
    return 0;
}

// Keeps an X error from ending the process, such as that of a key which another program has
// grabbed.
class ErrorTrap {
  public:
    explicit ErrorTrap(Display* display) : m_display(display) {
        XSync(m_display, False);
        s_failure = 0;
        m_previous = XSetErrorHandler(noteError);
    }
    ~ErrorTrap() { XSetErrorHandler(m_previous); }
    ErrorTrap(const ErrorTrap&) = delete;
    ErrorTrap& operator=(const ErrorTrap&) = delete;

    // The error of the requests so far, or 0.
    int error() const {
        XSync(m_display, False);
        return s_failure;
    }

  private:
    Display* m_display;
    XErrorHandler m_previous = nullptr;
};

constexpr int FAILED = -1;

}  // namespace

extern "C" int utilx_grab_key(void* display, unsigned int window, const char* key, int mode) {
    if (display == nullptr || window == 0 || key == nullptr) {
        return FAILED;
    }
    if (mode != TOP_POSITION_GRAB && mode != SHARED_GRAB && mode != EXCLUSIVE_GRAB) {
        return FAILED;
    }
    auto* server = static_cast<Display*>(display);
    const KeySym symbol = XStringToKeysym(key);
    const KeyCode code = symbol == NoSymbol ? 0 : XKeysymToKeycode(server, symbol);
    if (code == 0) {
        return FAILED;
    }
    // An exclusive grab holds wherever the focus is; the others while the window is on top.
    const Window target = mode == EXCLUSIVE_GRAB ? DefaultRootWindow(server) : window;
    const ErrorTrap trap(server);
    XGrabKey(server, code, AnyModifier, target, False, GrabModeAsync, GrabModeAsync);
    return trap.error() == 0 ? 0 : FAILED;
}
