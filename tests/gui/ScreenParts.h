// SPDX-License-Identifier: Apache-2.0
// The protected widgets of screens and popups.
#pragma once

#include <Elementary.h>

#include "gui/Popup.h"
#include "gui/Screen.h"

namespace support {

Evas_Object* windowOf(const ZOLT::GUI::Screen& screen);
Evas_Object* layoutOf(const ZOLT::GUI::Screen& screen);
Evas_Object* widgetOf(const ZOLT::GUI::Popup& popup);
Evas_Object* backgroundOf(const ZOLT::GUI::Popup& popup);

}  // namespace support
