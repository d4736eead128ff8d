// SPDX-License-Identifier: Apache-2.0
// Sets the screens with texts of the lengths that shops and levels really have.
#include "Scenes.h"

#include <utility>
#include <vector>

#include <libintl.h>

namespace ZOLT::Preview {

namespace {

const std::vector<std::string> kShops = {
    "Seoul Gangnam Flagship",
    "Busan Haeundae Department Store, 4th floor, television hall",
    "서울 강남 본점",
    "فرع القاهرة الجديدة",
    "R&D <Corner> \"Outlet\"",
    "Daegu",
    "Incheon Airport",
    "Gwangju",
    "Daejeon",
    "Ulsan",
    "Suwon",
    "Changwon",
    "Jeju"};

void unregistered(Stage& stage) {
    stage.menuButton("newRegBtn", "TV_SID_NEW_REGISTRATION", "i_create_account", true);
    stage.menuButton("existRegBtn", "TV_SID_EXISTING_REGISTRATION",
                     stage.look().mirrored ? "i_go_r" : "i_go", false);
    stage.menuButton("cancelBtn", "SID_CANCEL", "i_close_cancel", false);
}

void registered(Stage& stage) {
    stage.menuButton("regChangeBtn", "TV_SID_REGISTRATION_CHANGE", "i_change", true);
    stage.menuButton("deregBtn", "TV_SID_DEREGISTRATION", "i_remove_account", false);
    stage.menuButton("regInfoBtn", "COM_REGISTRATION_INFORMATION", "i_more_info", false);
    stage.menuButton("cancelBtn", "SID_CANCEL", "i_close_cancel", false);
}

void change(Stage& stage) {
    stage.menuButton("reRegBtn", "COM_RE_REGISTRATION", "i_create_account", true);
    stage.menuButton("regInfoBtn", "COM_REGISTRATION_INFORMATION",
                     stage.look().mirrored ? "i_go_r" : "i_go", false);
    stage.menuButton("cancelBtn", "SID_CANCEL", "i_close_cancel", false);
}

void waiting(Stage& stage) {
    Evas_Object* circle = stage.progress(stage.layout());
    elm_layout_box_append(stage.layout(), "animationBox", circle);
    evas_object_show(circle);
    elm_object_domain_translatable_part_text_set(stage.layout(), "text1", "ZOLT",
                                                 "SID_CONNECTING_TO_NETWORK_SERVER");
    elm_object_domain_translatable_part_text_set(stage.layout(), "text2", "ZOLT",
                                                 "SID_PLEASE_WAIT_DOT_KR_DIFF");
}

Evas_Object* append(Stage& stage, const char* part, const std::string& text, const char* style) {
    Evas_Object* label = stage.label(stage.layout(), text, style);
    elm_layout_box_append(stage.layout(), part, label);
    evas_object_show(label);
    return label;
}

void pinWith(Stage& stage, const std::string& registration) {
    const std::string version = std::string(dgettext("ZOLT", "SID_SOFTWARE_VERSION")) + " : 1.0.0";
    elm_object_part_text_set(stage.layout(), "SoftwareVersion", version.c_str());
    if (registration.empty()) {
        elm_object_domain_translatable_part_text_set(stage.layout(), "RegistrationInfo", "ZOLT",
                                                     "TV_SID_UNREGISTERED");
    } else {
        elm_object_part_text_set(stage.layout(), "RegistrationInfo", registration.c_str());
    }
    if (stage.look().mirrored) {
        append(stage, "pinCodeVal", "12345678", "pinCodeValStyle");
        append(stage, "pinCodeVal", " :  ", "pinCodeKeyStyle");
        append(stage, "pinCodeVal", std::string("&#x200e;") + dgettext("ZOLT", "TV_SID_PIN_CODE"),
               "pinCodeKeyStyle");
    } else {
        append(stage, "pinCodeVal", "TV_SID_PIN_CODE", "pinCodeKeyStyle");
        append(stage, "pinCodeVal", " :  ", "pinCodeKeyStyle");
        append(stage, "pinCodeVal", "12345678", "pinCodeValStyle");
    }
    stage.menuButton("cancelBtnEnlarge", "SID_CANCEL", "i_close_cancel", true);
}

void shopList(Stage& stage, const std::string& level, const std::string& chosen) {
    append(stage, "selectText", "TV_SID_SELECT_M_MSG", "subHeadingStyle");
    evas_object_size_hint_padding_set(append(stage, "selectText", " ", "subHeadingStyle"), 5, 5, 0,
                                      0);
    append(stage, "selectText", level, "subHeadingStyle");
    if (!chosen.empty()) {
        elm_object_part_text_set(stage.layout(), stage.look().mirrored ? "shopname" : "shop1",
                                 chosen.c_str());
    }
    Evas_Object* drop = elm_hoversel_add(stage.layout());
    elm_hoversel_hover_parent_set(drop, stage.layout());
    elm_object_style_set(drop, "c_dropdown_black");
    elm_object_domain_translatable_text_set(drop, "ZOLT", "TV_SID_SELECT_M_MSG");
    elm_layout_signal_emit(drop, "edc,align,left", "");
    elm_object_part_content_set(stage.layout(), "selectBtn", drop);
    evas_object_show(drop);
    elm_object_focus_allow_set(drop, EINA_TRUE);
    elm_object_focus_set(drop, EINA_TRUE);
}

void chooseShop(Stage& stage, const char* name) {
    Evas_Object* drop = elm_object_part_content_get(stage.layout(), "selectBtn");
    elm_object_domain_translatable_text_set(drop, "ZOLT", name);
}

void firstLevel(Stage& stage) {
    shopList(stage, "Country", "");
    stage.navigationButton("singleBtn", "SID_NEXT", false, false);
}

void laterLevel(Stage& stage) {
    shopList(stage, "Shop", "Korea South Eastern Region, Gyeongsang Province and Ulsan");
    chooseShop(stage, "Busan Haeundae Department Store, 4th floor, television hall");
    stage.navigationButton("prevBtn", "SID_PREVIOUS", true, false);
    stage.navigationButton("nextBtn", "SID_NEXT", true, true);
}

void record(Stage& stage, Evas_Object* box, const std::string& left, const std::string& right) {
    Evas_Object* row = elm_label_add(box);
    elm_object_style_set(row, "RegistrationRecord");
    evas_object_size_hint_align_set(row, -1.0, -1.0);
    evas_object_size_hint_weight_set(row, 1.0, 1.0);
    const bool mirrored = stage.look().mirrored;
    elm_object_part_text_set(row, mirrored ? "leftText_RTL" : "leftText", left.c_str());
    elm_object_part_text_set(row, mirrored ? "rightText_RTL" : "rightText", right.c_str());
    if (stage.look().enlarge) {
        elm_object_scale_set(row, 1.2);
    }
    elm_box_pack_end(box, row);
    evas_object_show(row);
}

void information(Stage& stage, bool confirm) {
    Evas_Object* scroller = elm_scroller_add(stage.window());
    elm_scroller_bounce_set(scroller, EINA_TRUE, EINA_FALSE);
    elm_scroller_policy_set(scroller, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_AUTO);
    elm_scroller_propagate_events_set(scroller, EINA_TRUE);
    evas_object_size_hint_align_set(scroller, -1.0, -1.0);
    evas_object_size_hint_weight_set(scroller, 1.0, 1.0);
    Evas_Object* box = elm_box_add(scroller);
    elm_box_padding_set(box, 0, 0);
    evas_object_size_hint_weight_set(box, 0.5, 0.0);
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"Country", "Korea"},
        {"Region", "Seoul"},
        {"Chain", "R&amp;D &lt;Corner&gt;"},
        {"Shop", "Busan Haeundae Department Store, 4th floor, television hall"}};
    for (int copy = 0; copy < (confirm ? 3 : 1); ++copy) {
        for (const auto& [level, name] : rows) {
            record(stage, box, stage.look().mirrored ? ": " + level : level + " :", name);
        }
    }
    record(stage, box, std::string(dgettext("ZOLT", "TV_SID_SHOP_CODE")) + " :", "KR-SEL-0417");
    elm_object_content_set(scroller, box);
    elm_object_part_content_set(stage.layout(), "scroller", scroller);
    if (confirm) {
        stage.navigationButton("prevBtn", "SID_PREVIOUS", true, false);
        stage.navigationButton("regBtn", "SID_REGISTER", true, true);
    } else {
        stage.navigationButton("singleBtn", "SID_OK", true, true);
    }
}

void message(Stage& stage, const char* id, bool question) {
    stage.makePopup("c_popup_bottom");
    stage.messageText(id);
    stage.popupButton("SID_OK", "i_ok_done_allow", true);
    if (question) {
        stage.popupButton("SID_CANCEL", "i_close_cancel", true);
    }
    stage.showPopup();
    if (!question) {
        stage.focusPopupButton("button1");
    }
}

void loading(Stage& stage, const char* id) {
    stage.makePopup("c_popup_bottom");
    stage.loadingContent(id);
    stage.showPopup();
}

void selection(Stage& stage) {
    laterLevel(stage);
    stage.makePopup("c_popup_right");
    Evas_Object* list = stage.listContent(kShops);
    elm_object_domain_translatable_part_text_set(stage.popup(), "title,text", "ZOLT",
                                                 "TV_SID_SELECT_M_MSG");
    stage.popupButton("SID_OK", "i_ok_done_allow", false);
    stage.popupButton("SID_CANCEL", "i_close_cancel", false);
    stage.blockPopupButton("button1");
    elm_object_focus_set(list, EINA_TRUE);
    stage.showPopup();
}

void selected(Stage& stage) {
    selection(stage);
    Stage::calculate(stage);
    stage.press("Down");
    stage.press("Return");
    stage.focusPopupButton("button1");
}

const std::map<std::string, Scene> kScenes = {
    {"unregistered", {"MainMenuUnregisteredWindow", false, unregistered}},
    {"registered", {"MainMenuRegisteredWindow", false, registered}},
    {"change", {"RegChangeWindow", false, change}},
    {"waiting", {"WaitingWindow", true, waiting}},
    {"pin", {"PinDisplayingWindow", false, [](Stage& s) { pinWith(s, ""); }}},
    {"pin-shop",
     {"PinDisplayingWindow", false,
      [](Stage& s) { pinWith(s, "Seoul Gangnam Flagship : KR-SEL-0417"); }}},
    {"level-first", {"ShopListWindow", true, firstLevel}},
    {"level-later", {"ShopListWindow", true, laterLevel}},
    {"selection", {"ShopListWindow", true, selection}},
    {"selection-made", {"ShopListWindow", true, selected}},
    {"information", {"RegistrationInfoWindow", true, [](Stage& s) { information(s, false); }}},
    {"confirmation", {"RegistrationInfoWindow", true, [](Stage& s) { information(s, true); }}},
    {"message",
     {"RegistrationInfoWindow", true,
      [](Stage& s) {
          information(s, true);
          message(s, "COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS", false);
      }}},
    {"failure",
     {"MainMenuUnregisteredWindow", false,
      [](Stage& s) {
          unregistered(s);
          message(s, "SID_INTERNET_CONNECTION_NOT_STABLE_MSG", false);
      }}},
    {"question",
     {"MainMenuRegisteredWindow", false,
      [](Stage& s) {
          registered(s);
          message(s, "TV_SID_SURE_CHANGE_REGISTRATION_INFO_DELETED", true);
      }}},
    {"loading", {"MainMenuUnregisteredWindow", false, [](Stage& s) {
                     unregistered(s);
                     loading(s, "TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT");
                 }}}};

}  // namespace

const std::map<std::string, Scene>& scenes() {
    return kScenes;
}

std::string groupOf(const Scene& scene, bool enlarge) {
    std::string group = scene.group;
    if (!enlarge || !scene.hasEnlarged) {
        return group;
    }
    return group == "WaitingWindow" ? "WaitingWindow_Enlarge" : group + "Enlarge";
}

}  // namespace ZOLT::Preview
