// SPDX-License-Identifier: Apache-2.0
// A popup with a turning circle and a text, shown while the daemon works. No key dismisses it.
#pragma once

#include "gui/Handle.h"
#include "gui/Popup.h"

namespace ZOLT::GUI {

class LoadingPopup : public Popup {
  public:
    LoadingPopup(Evas_Object* parent, const char* style, int width, int height);
    ~LoadingPopup() override;

    void setText(const char* text, const char* style) override;
    void addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) override;

    // Stops the circle, which stays visible.
    void RemoveProgressBar();

  protected:
    Evas_Object* m_table;  // belongs to the popup widget
    Handle m_progress;     // belongs to the table
};

}  // namespace ZOLT::GUI
