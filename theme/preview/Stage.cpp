// SPDX-License-Identifier: Apache-2.0
// Makes widgets with the calls, hints and styles that the program's screens use.
#include "Stage.h"

#include <cstring>

#include <libintl.h>

namespace ZOLT::Preview {

namespace {

const char* const kDomain = "ZOLT";
const char* const kButtonStyle = "c_button_icontext";
const unsigned kListRows = 11;

char* rowText(void* data, Evas_Object*, const char* part) {
    const bool known = std::strcmp(part, "elm.text") == 0 || std::strcmp(part, "elm.text.1") == 0;
    return strdup(known ? static_cast<const char*>(data) : "");
}

void hints(Evas_Object* object, double weight, double alignX, double alignY) {
    evas_object_size_hint_weight_set(object, weight, weight);
    evas_object_size_hint_align_set(object, alignX, alignY);
}

void rowDeleted(void* data, Evas*, Evas_Object*, void*) {
    delete static_cast<std::vector<std::string>*>(data);
}

}  // namespace

Stage::Stage(const Look& look, const std::string& group) : m_look(look) {
    m_window = elm_win_util_standard_add("zoltgui", group.c_str());
    evas_object_resize(m_window, look.width, look.height);
    elm_win_focus_highlight_enabled_set(m_window, EINA_TRUE);
    m_layout = elm_layout_add(m_window);
    if (look.enlarge) {
        elm_object_scale_set(m_layout, 1.2);
    }
    elm_layout_file_set(m_layout, look.theme.c_str(), group.c_str());
    evas_object_size_hint_weight_set(m_layout, 1.0, 1.0);
    elm_win_resize_object_add(m_window, m_layout);
    if (look.contrast) {
        elm_layout_signal_emit(m_layout, "WIN_CONTRAST_1", "");
        elm_layout_signal_emit(m_layout, "WIN_CONTRAST_2", "");
    }
    evas_object_show(m_layout);
    elm_config_mirrored_set(look.mirrored);
    elm_object_domain_translatable_part_text_set(m_layout, "title", kDomain,
                                                 "COM_SID_ZOLT_CONTENT");
}

Stage::~Stage() {
    evas_object_del(m_background);
    evas_object_del(m_window);
}

Evas_Object* Stage::label(Evas_Object* parent, const std::string& text, const char* style) {
    Evas_Object* made = elm_label_add(parent);
    elm_object_style_set(made, style);
    elm_object_domain_translatable_text_set(made, kDomain, text.c_str());
    return made;
}

Evas_Object* Stage::button(Evas_Object* parent, const char* text, const char* icon) {
    Evas_Object* made = elm_button_add(parent);
    elm_object_style_set(made, kButtonStyle);
    hints(made, 1.0, -1.0, -1.0);
    evas_object_size_hint_min_set(made, 1080, 720);
    elm_object_domain_translatable_text_set(made, kDomain, text);
    if (icon != nullptr) {
        Evas_Object* image = elm_icon_add(made);
        elm_icon_standard_set(image, icon);
        elm_object_part_content_set(made, "icon", image);
    }
    return made;
}

void Stage::menuButton(const char* part, const char* text, const char* icon, bool focused) {
    Evas_Object* made = button(m_layout, text, icon);
    elm_object_part_content_set(m_layout, part, made);
    evas_object_size_hint_min_set(made, 0, 0);
    evas_object_show(made);
    if (focused) {
        elm_object_focus_allow_set(made, EINA_TRUE);
        elm_object_focus_set(made, EINA_TRUE);
    }
}

void Stage::navigationButton(const char* part, const char* text, bool focusable, bool focused) {
    const std::string id = text;
    const bool mirrored = m_look.mirrored;
    const char* icon = id == "SID_OK"         ? "i_ok_done_allow"
                       : id == "SID_PREVIOUS" ? (mirrored ? "i_next" : "i_previous")
                       : id == "SID_NEXT"     ? (mirrored ? "i_previous" : "i_next")
                       : id == "SID_REGISTER" ? "i_allow"
                                              : "i_close_cancel";
    Evas_Object* made = button(m_layout, text, nullptr);
    elm_object_part_content_set(m_layout, part, made);
    Evas_Object* image = elm_icon_add(made);
    elm_icon_standard_set(image, icon);
    elm_object_part_content_set(made, "icon", image);
    evas_object_size_hint_min_set(made, 0, 0);
    evas_object_show(made);
    elm_object_focus_allow_set(made, focusable);
    elm_object_focus_set(made, focusable && focused);
}

Evas_Object* Stage::progress(Evas_Object* parent) {
    Evas_Object* made = elm_progressbar_add(parent);
    hints(made, 1.0, -1.0, 0.5);
    elm_object_style_set(made, "c_progress_circle_normal");
    elm_progressbar_pulse(made, EINA_TRUE);
    return made;
}

void Stage::open() {
    if (m_open) {
        return;
    }
    m_open = true;
    evas_object_show(m_window);
    // The ring around the focus shows when the keyboard comes to the window; in memory the window
    // has the keyboard from the start, so it goes away first.
    Ecore_Evas* buffer = ecore_evas_ecore_evas_get(evas_object_evas_get(m_window));
    ecore_evas_focus_set(buffer, EINA_FALSE);
    calculate(*this);
    ecore_evas_focus_set(buffer, EINA_TRUE);
    calculate(*this);
}

void Stage::makePopup(const char* style) {
    // The program opens popups on a screen that already has its size, and their place depends on
    // it.
    open();
    m_background = evas_object_rectangle_add(evas_object_evas_get(m_layout));
    evas_object_color_set(m_background, 0, 0, 0, 76);
    evas_object_resize(m_background, m_look.width, m_look.height);
    m_popup = elm_popup_add(m_layout);
    evas_object_resize(m_popup, m_look.width, m_look.height);
    elm_object_style_set(m_popup, style);
    if (m_look.width == 1920 && m_look.height == 1080) {
        evas_object_move(m_popup, 0, 0);
    } else if (m_look.width == 1280 && m_look.height == 720) {
        evas_object_move(m_popup, 334, 206);
    }
    elm_object_domain_translatable_part_text_set(m_popup, "title,text", kDomain,
                                                 "COM_SID_ZOLT_CONTENT");
}

void Stage::messageText(const char* id) {
    Evas_Object* text = label(m_popup, id, "popup/c_popup_bottom");
    hints(text, 1.0, 0.5, 0.5);
    const std::string markup = std::string("<align=center>") + dgettext(kDomain, id) + "</align>";
    elm_object_text_set(text, markup.c_str());
    elm_object_content_set(m_popup, text);
    evas_object_show(text);
}

void Stage::loadingContent(const char* id) {
    Evas_Object* table = elm_table_add(m_popup);
    elm_table_padding_set(table, 34, 0);
    evas_object_size_hint_weight_set(table, 1.0, 1.0);
    elm_object_content_set(m_popup, table);
    evas_object_show(table);
    const int cellWidth = static_cast<int>(m_look.width * 0.044791);
    const int cellHeight = static_cast<int>(m_look.height * 0.079629);
    Evas_Object* margin = elm_label_add(table);
    evas_object_size_hint_min_set(margin, cellWidth, cellHeight);
    evas_object_show(margin);
    elm_table_pack(table, margin, 0, 0, 1, 1);
    Evas_Object* circle = progress(table);
    elm_table_pack(table, circle, 1, 0, 1, 1);
    evas_object_size_hint_max_set(circle, cellWidth, cellHeight);
    evas_object_show(circle);
    Evas_Object* text = elm_label_add(table);
    hints(text, 1.0, -1.0, -1.0);
    elm_object_style_set(text, "popup/LoadingPopup");
    elm_object_domain_translatable_text_set(text, kDomain, id);
    evas_object_size_hint_min_set(text, static_cast<int>(m_look.width * 0.332812), cellHeight);
    evas_object_show(text);
    elm_table_pack(table, text, 2, 0, 1, 1);
}

Evas_Object* Stage::listContent(const std::vector<std::string>& names) {
    Evas_Object* box = elm_box_add(m_popup);
    hints(box, 1.0, -1.0, -1.0);
    elm_object_content_set(m_popup, box);
    evas_object_show(box);
    Evas_Object* table = elm_table_add(box);
    elm_table_homogeneous_set(table, EINA_TRUE);
    evas_object_show(table);
    Evas_Object* list = elm_genlist_add(table);
    hints(list, 1.0, -1.0, -1.0);
    elm_genlist_select_mode_set(list, ELM_OBJECT_SELECT_MODE_ALWAYS);
    elm_table_pack(table, list, 0, 0, 1, kListRows);
    elm_object_focus_allow_set(list, EINA_TRUE);
    elm_object_focus_set(list, EINA_TRUE);
    evas_object_show(list);
    Evas_Object* spacer = label(table, "ZOLT_CONTENT_SPACER", "default");
    hints(spacer, 1.0, -1.0, -1.0);
    evas_object_resize(spacer, 600, 0);
    elm_table_pack(table, spacer, 0, 9, 1, 1);
    evas_object_hide(spacer);
    elm_box_pack_end(box, table);

    auto* kept = new std::vector<std::string>(names);
    evas_object_event_callback_add(list, EVAS_CALLBACK_FREE, rowDeleted, kept);
    Elm_Genlist_Item_Class* rows = elm_genlist_item_class_new();
    rows->item_style = "c_list_texticon";
    rows->func.text_get = rowText;
    for (std::string& name : *kept) {
        elm_genlist_item_append(list, rows, name.data(), nullptr, ELM_GENLIST_ITEM_NONE, nullptr,
                                nullptr);
    }
    elm_genlist_item_class_free(rows);
    return list;
}

void Stage::popupButton(const char* text, const char* icon, bool narrow) {
    Evas_Object* made = button(m_popup, text, icon);
    if (narrow) {
        evas_object_size_hint_max_set(made, 500, 100);
        evas_object_size_hint_min_set(made, 250, 56);
    }
    const std::string part = "button" + std::to_string(++m_buttons);
    elm_object_part_content_set(m_popup, part.c_str(), made);
    evas_object_size_hint_min_set(made, 0, 0);
}

void Stage::focusPopupButton(const char* part) {
    Evas_Object* made = elm_object_part_content_get(m_popup, part);
    elm_object_focus_allow_set(made, EINA_TRUE);
    elm_object_focus_set(made, EINA_TRUE);
}

void Stage::blockPopupButton(const char* part) {
    Evas_Object* made = elm_object_part_content_get(m_popup, part);
    elm_object_focus_allow_set(made, EINA_FALSE);
    elm_object_focus_set(made, EINA_FALSE);
}

void Stage::showPopup() {
    evas_object_show(m_background);
    evas_object_show(m_popup);
}

void Stage::settle(double seconds) {
    const double end = ecore_time_get() + seconds;
    while (ecore_time_get() < end) {
        ecore_main_loop_iterate_may_block(0);
    }
}

void Stage::calculate(Stage& stage) {
    // Widgets answer one another's sizes from turn to turn; the deepest chain here takes six.
    const int turns = 12;
    for (int turn = 0; turn < turns; ++turn) {
        ecore_main_loop_iterate();
        evas_render(evas_object_evas_get(stage.m_window));
    }
}

unsigned Stage::pixel(int x, int y) {
    Evas* canvas = evas_object_evas_get(m_window);
    evas_render(canvas);
    const void* pixels = ecore_evas_buffer_pixels_get(ecore_evas_ecore_evas_get(canvas));
    return static_cast<const unsigned*>(pixels)[static_cast<size_t>(y) * m_look.width + x];
}

void Stage::press(const std::string& key) {
    Evas* canvas = evas_object_evas_get(m_window);
    evas_event_feed_key_down(canvas, key.c_str(), key.c_str(), nullptr, nullptr, 0, nullptr);
    evas_event_feed_key_up(canvas, key.c_str(), key.c_str(), nullptr, nullptr, 0, nullptr);
}

bool Stage::save(const std::string& file) {
    Evas* canvas = evas_object_evas_get(m_window);
    Ecore_Evas* buffer = ecore_evas_ecore_evas_get(canvas);
    evas_render(canvas);
    const void* pixels = ecore_evas_buffer_pixels_get(buffer);
    if (pixels == nullptr) {
        return false;
    }
    Evas_Object* picture = evas_object_image_filled_add(canvas);
    evas_object_image_size_set(picture, m_look.width, m_look.height);
    evas_object_image_data_copy_set(picture, const_cast<void*>(pixels));
    const bool saved =
        evas_object_image_save(picture, file.c_str(), nullptr, "compress=3") == EINA_TRUE;
    evas_object_del(picture);
    return saved;
}

}  // namespace ZOLT::Preview
