// SPDX-License-Identifier: Apache-2.0
// Base of the tests of screens: real widgets on the toolkit's buffer engine, and keys fed to them.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <Elementary.h>
#include <gtest/gtest.h>

#include "gui/Popup.h"
#include "gui/Screen.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

namespace support {

// Position and size of an object, in pixels.
struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// Each test gets a working television, its own configuration and clean state in the program's
// classes. A line at warning priority that the test did not announce fails the test.
class GuiFixture : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    static ScriptedPlatform& platform() { return ScriptedPlatform::get(); }

    // --- the log
    // MESSAGE is expected at warning priority, COUNT times.
    void announceWarning(const std::string& message, int count = 1);
    // Whether the program logged MESSAGE at debug priority in its ordinary buffer.
    static bool logged(const std::string& message);
    // How often functions of the program with this unqualified name were entered; with FILE only
    // those of that source.
    static int entered(const std::string& function, const std::string& file = "");

    // --- the configuration
    // Replaces the value of a key and reads the configuration anew.
    void configure(const std::string& key, const std::string& value);
    static std::string themeFolder();
    // Uses these texts for the ids until the test ends. Without it every id is its own text.
    void translate(const std::vector<std::pair<std::string, std::string>>& catalogue);

    // --- the protected parts of a screen
    static Evas_Object* windowOf(const ZOLT::GUI::Screen& screen);
    static Evas_Object* layoutOf(const ZOLT::GUI::Screen& screen);
    static Evas_Object* widgetOf(const ZOLT::GUI::Popup& popup);
    static Evas_Object* backgroundOf(const ZOLT::GUI::Popup& popup);

    // --- looking
    static std::string textOf(Evas_Object* object, const char* part = nullptr);
    static Evas_Object* partOf(Evas_Object* object, const char* part = nullptr);
    static std::string styleOf(Evas_Object* object);
    // The group that a layout has loaded.
    static std::string groupOf(Evas_Object* layout);
    // The name of the icon in BUTTON, or "none".
    static std::string iconOf(Evas_Object* button);
    // The widgets in a box part of a layout, in order.
    static std::vector<Evas_Object*> childrenOf(Evas_Object* layout, const char* part);
    // Whether BUTTON is drawn as one that has the focus.
    static bool looksFocused(Evas_Object* button);
    // The widget that has the focus in the window of OBJECT.
    static Evas_Object* focusedIn(Evas_Object* object);
    // Adds NAME to ORDER, which must outlive OBJECT, whenever OBJECT gets EVENT.
    static void noteEvent(Evas_Object* object, Evas_Callback_Type event, const std::string& name,
                          std::vector<std::string>& order);
    static Box geometryOf(const Evas_Object* object);
    static Box minimumOf(const Evas_Object* object);
    static Box maximumOf(const Evas_Object* object);

    // --- doing
    // Gives the keyboard to the window of SCREEN, which must be shown.
    static void activate(const ZOLT::GUI::Screen& screen);
    // Presses and releases a key on the canvas of OBJECT and lets the main loop settle.
    static void press(Evas_Object* object, const std::string& key);
    static void keyDown(Evas_Object* object, const std::string& key);
    static void keyUp(Evas_Object* object, const std::string& key);
    // Runs the main loop until no work is pending.
    static void settle();
    // Lets the canvas of OBJECT draw two frames: a list makes its rows only when it is drawn.
    static void draw(Evas_Object* object);
    // Runs the main loop until PREDICATE is true; false at the deadline.
    static bool turnUntil(const std::function<bool()>& predicate);
    // Whether ACTION, called inside a running main loop, ends that loop. ACTION must not run the
    // loop.
    static bool endsMainLoop(const std::function<void()>& action);
    // Feeds a key to the canvas of OBJECT without running the main loop.
    static void feedKeyDown(Evas_Object* object, const std::string& key);
    static void feedKeyUp(Evas_Object* object, const std::string& key);
    // Tries whether WIDGET takes the focus. The toolkit's own query also counts a button's icon.
    static bool takesFocus(Evas_Object* widget);

  private:
    void writeConfiguration();

    TemporaryFolder m_folder;
    std::vector<std::pair<std::string, std::string>> m_settings;
    std::vector<std::string> m_announced;
    bool m_translated = false;
};

}  // namespace support
