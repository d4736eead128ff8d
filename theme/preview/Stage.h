// SPDX-License-Identifier: Apache-2.0
// Sets every screen and popup of the program on a window in memory, with the widgets that the
// program makes.
#pragma once

#include <string>
#include <vector>

#include <Elementary.h>

namespace ZOLT::Preview {

/// How the picture is to look; sizes in pixels.
struct Look {
    std::string theme;
    int width = 1920;
    int height = 1080;
    bool mirrored = false;
    bool enlarge = false;
    bool contrast = false;
};

/// One window with one layout, as a screen of the program has it.
class Stage {
  public:
    Stage(const Look& look, const std::string& group);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    Evas_Object* window() const { return m_window; }
    Evas_Object* layout() const { return m_layout; }
    Evas_Object* popup() const { return m_popup; }
    const Look& look() const { return m_look; }

    Evas_Object* label(Evas_Object* parent, const std::string& text, const char* style);
    Evas_Object* button(Evas_Object* parent, const char* text, const char* icon);
    void menuButton(const char* part, const char* text, const char* icon, bool focused);
    void navigationButton(const char* part, const char* text, bool focusable, bool focused);
    Evas_Object* progress(Evas_Object* parent);

    /// Shows the window and gives it the keyboard.
    void open();
    /// Makes the dimming rectangle and the popup; nothing shows before showPopup().
    void makePopup(const char* style);
    void messageText(const char* id);
    void loadingContent(const char* id);
    Evas_Object* listContent(const std::vector<std::string>& names);
    void popupButton(const char* text, const char* icon, bool narrow);
    void focusPopupButton(const char* part);
    void blockPopupButton(const char* part);
    void showPopup();

    /// Runs the main loop for a time given in seconds, so that animations come to rest.
    static void settle(double seconds);
    /// Turns the main loop and draws until nothing that stands still is left to compute.
    static void calculate(Stage& stage);
    /// What the window shows at a place, as 0xAARRGGBB.
    unsigned pixel(int x, int y);
    void press(const std::string& key);
    /// Writes what the window shows; false when the file cannot be written.
    bool save(const std::string& file);

  private:
    const Look m_look;
    Evas_Object* m_window = nullptr;      // deleted here
    Evas_Object* m_layout = nullptr;      // deleted with the window
    Evas_Object* m_popup = nullptr;       // deleted with the window
    Evas_Object* m_background = nullptr;  // deleted here: a bare rectangle has no widget parent
    int m_buttons = 0;
    bool m_open = false;
};

}  // namespace ZOLT::Preview
