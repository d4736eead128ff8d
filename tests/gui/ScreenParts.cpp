// SPDX-License-Identifier: Apache-2.0
// The protected widgets of screens and popups.
#include "gui/ScreenParts.h"

namespace support {

namespace {

using ZOLT::GUI::Popup;
using ZOLT::GUI::Screen;

// A derived class may name the protected members of its base.
struct ScreenFamily : Screen {
    static constexpr ZOLT::GUI::Handle Screen::*window = &ScreenFamily::m_window;
    static constexpr ZOLT::GUI::Handle Screen::*layout = &ScreenFamily::m_layout;
};

struct PopupFamily : Popup {
    static constexpr ZOLT::GUI::Handle Popup::*widget = &PopupFamily::m_popup;
    static constexpr ZOLT::GUI::Handle Popup::*background = &PopupFamily::m_background;
};

}  // namespace

Evas_Object* windowOf(const Screen& screen) {
    return screen.*ScreenFamily::window;
}

Evas_Object* layoutOf(const Screen& screen) {
    return screen.*ScreenFamily::layout;
}

Evas_Object* widgetOf(const Popup& popup) {
    return popup.*PopupFamily::widget;
}

Evas_Object* backgroundOf(const Popup& popup) {
    return popup.*PopupFamily::background;
}

}  // namespace support
