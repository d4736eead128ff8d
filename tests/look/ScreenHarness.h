// SPDX-License-Identifier: Apache-2.0
// One screen of the program in a window in memory. The caller presses the keys and moves the clock.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <Elementary.h>

#include "common/ShopListParser.h"
#include "gui/Popup.h"
#include "gui/Screen.h"
#include "gui/ShownScreen.h"
#include "look/Frame.h"
#include "look/Mode.h"

namespace look {

struct Scene;

// Main loop thread only, and one at a time: there is one scripted platform.
class ScreenHarness {
  public:
    // Makes SCENE, shows it and waits until nothing moves.
    ScreenHarness(const Scene& scene, const Mode& mode);
    ~ScreenHarness();
    ScreenHarness(const ScreenHarness&) = delete;
    ScreenHarness& operator=(const ScreenHarness&) = delete;

    const Mode& mode() const { return m_mode; }
    ZOLT::GUI::Screen& screen() const { return *m_screen; }
    Evas_Object* window() const { return m_window; }
    Evas* canvas() const { return evas_object_evas_get(m_window); }
    // The widget of the popup that lies over the screen, or null.
    Evas_Object* popup() const;
    // The widget that has the focus, or null.
    Evas_Object* focused() const;

    // Presses and releases a key and waits until nothing moves.
    void press(const std::string& key);
    void focus(Evas_Object* widget);
    // Changes the language while the screen is shown, as the platform does: to that of MODE, whose
    // direction the platform reports from then on. CATALOGUES is as for Mode::apply.
    void changeLanguage(const Mode& mode, const std::string& catalogues);
    // Moves the clock of the animations, which stands still otherwise, by SECONDS.
    void pass(double seconds);
    // Waits, on that clock, until nothing moves.
    void settle();
    // Draws what has changed and gives a view of the whole picture.
    Frame draw();

    // Shops of these names, each with a code, which live as long as this.
    std::set<ZOLT::Shop*, ZOLT::Shop::ShopComp> shops(const std::vector<std::string>& names);

  private:
    const Mode m_mode;
    std::vector<std::unique_ptr<ZOLT::Shop>> m_shops;
    std::unique_ptr<support::ShownScreen> m_shown;
    ZOLT::GUI::Screen* m_screen = nullptr;  // belongs to m_shown
    Evas_Object* m_window = nullptr;        // belongs to the screen
};

}  // namespace look
