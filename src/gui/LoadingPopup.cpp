// SPDX-License-Identifier: Apache-2.0
// A popup with a turning circle and a text, shown while the daemon works.
#include "gui/LoadingPopup.h"

#include "common/Logger.h"
#include "gui/Modes.h"
#include "gui/Screen.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

// Fractions of the screen's size; products are rounded down.
constexpr double CELL_WIDTH_SHARE = 0.044791;
constexpr double TEXT_WIDTH_SHARE = 0.332812;
constexpr double HEIGHT_SHARE = 0.079629;

int shareOf(int size, double share) {
    return static_cast<int>(size * share);
}

}  // namespace

LoadingPopup::LoadingPopup(Evas_Object* parent, const char* style, int width, int height)
    : Popup(parent, style, width, height), m_table(nullptr) {
    ZOLT_TRACE();
    m_table = elm_table_add(m_popup);
    elm_table_homogeneous_set(m_table, EINA_FALSE);
    elm_table_padding_set(m_table, 34, 0);
    evas_object_size_hint_weight_set(m_table, 1.0, 1.0);
    elm_object_content_set(m_popup, m_table);
    evas_object_show(m_table);

    const int cellWidth = shareOf(m_width, CELL_WIDTH_SHARE);
    const int cellHeight = shareOf(m_height, HEIGHT_SHARE);
    Evas_Object* margin = elm_label_add(m_table);
    elm_table_pack(m_table, margin, 0, 0, 1, 1);
    evas_object_size_hint_min_set(margin, cellWidth, cellHeight);
    evas_object_show(margin);

    m_progress = Screen::createProgressAnimation(m_table);
    elm_table_pack(m_table, m_progress, 1, 0, 1, 1);
    evas_object_size_hint_max_set(m_progress, cellWidth, cellHeight);
    evas_object_show(m_progress);
}

LoadingPopup::~LoadingPopup() {
    ZOLT_TRACE();
}

void LoadingPopup::setText(const char* text, const char* style) {
    ZOLT_TRACE();
    Evas_Object* label = elm_label_add(m_table);
    evas_object_size_hint_align_set(label, -1.0, -1.0);
    evas_object_size_hint_weight_set(label, 1.0, 1.0);
    modes::announce(translated(text));
    elm_object_style_set(label, style);
    setTranslatable(label, nullptr, text);
    // Has no effect, because a table has no content part. Deliberate: packing places the label.
    elm_object_part_content_set(m_table, nullptr, label);
    evas_object_size_hint_min_set(label, shareOf(m_width, TEXT_WIDTH_SHARE),
                                  shareOf(m_height, HEIGHT_SHARE));
    evas_object_show(label);
    elm_table_pack(m_table, label, 2, 0, 1, 1);
}

void LoadingPopup::addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) {
    ZOLT_TRACE();
    Evas_Object* button =
        Screen::createButton(m_popup, text, callback, data, icon, "c_button_icontext");
    appendButton(button);
    leaveSizeToPart(button);
}

void LoadingPopup::RemoveProgressBar() {
    ZOLT_TRACE();
    if (m_progress != nullptr) {
        elm_layout_signal_emit(m_progress, "stop_pulse", "elm");
    }
}

}  // namespace ZOLT::GUI
