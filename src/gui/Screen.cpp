// SPDX-License-Identifier: Apache-2.0
// Base of every full-screen view, and the one place where widgets are made.
#include "gui/Screen.h"

#include <cstring>
#include <memory>

#include <Ecore_X.h>

#include "common/Exception.h"
#include "common/Logger.h"
#include "common/ZoltConfig.h"
#include "gui/EventHandler.h"
#include "gui/Modes.h"
#include "gui/Popup.h"
#include "gui/Widgets.h"
#include "utilx.h"
#include "vconf.h"

namespace ZOLT::GUI {

namespace {

constexpr char BUTTON_STYLE[] = "c_button_icontext";

// Without the arrow and back keys: those reach the program as ordinary key events.
constexpr const char* GRABBED_KEYS[] = {"XF86Display",
                                        "XF86Hdmi",
                                        "1",
                                        "2",
                                        "3",
                                        "4",
                                        "5",
                                        "6",
                                        "7",
                                        "8",
                                        "9",
                                        "0",
                                        "minus",
                                        "XF86PreviousChannel",
                                        "XF86ChannelList",
                                        "XF86SysMenu",
                                        "XF86Home",
                                        "XF86Search",
                                        "XF86SimpleMenu",
                                        "XF86Info",
                                        "XF86Red",
                                        "XF86Green",
                                        "XF86Yellow",
                                        "XF86PIP",
                                        "XF86ChannelGuide",
                                        "XF86PictureMode",
                                        "XF86UsbHub",
                                        "XF86PictureSize",
                                        "XF86FavoriteChannel",
                                        "XF86AudioRewind",
                                        "XF86AudioPause",
                                        "XF86AudioNext",
                                        "XF86AudioRecord",
                                        "XF86AudioPlay",
                                        "XF86AudioStop",
                                        "XF86WIFIPairing",
                                        "XF86BTVoice",
                                        "XF86Recommend",
                                        "XF86NumberPad",
                                        "XF86AspectRatio169",
                                        "XF86MTS",
                                        "XF86FactoryMode",
                                        "XF86SoundMode",
                                        "XF86TVSNS",
                                        "XF863D",
                                        "XF86Apps",
                                        "XF86TTXMIX",
                                        "XF86Caption",
                                        "XF86SRSSXT",
                                        "XF86Sleep",
                                        "XF86ZoomIn",
                                        "XF86AudioDescription"};

struct ButtonIcon {
    const char* text;
    const char* leftToRight;
    const char* rightToLeft;
};

constexpr ButtonIcon BUTTON_ICONS[] = {{"SID_OK", "i_ok_done_allow", "i_ok_done_allow"},
                                       {"SID_PREVIOUS", "i_previous", "i_next"},
                                       {"SID_NEXT", "i_next", "i_previous"},
                                       {"SID_REGISTER", "i_allow", "i_allow"},
                                       {"SID_CANCEL", "i_close_cancel", "i_close_cancel"}};

const char* iconOfButton(const char* text, bool mirrored) {
    for (const ButtonIcon& icon : BUTTON_ICONS) {
        if (std::strcmp(icon.text, text) == 0) {
            return mirrored ? icon.rightToLeft : icon.leftToRight;
        }
    }
    return "";
}

std::string layoutPath(const std::string& layoutFile) {
    return ZoltConfig::get("LayoutPath") + "/" + layoutFile;
}

[[noreturn]] void failAllocation(const char* message) {
    throw Exception(message, GENERIC_ERROR);
}

// Returns WIDGET, or throws with MESSAGE if it is null, which means that the toolkit is out of
// memory.
Evas_Object* required(Evas_Object* widget, const char* message) {
    if (widget == nullptr) {
        failAllocation(message);
    }
    return widget;
}

Evas_Object* createWindow(const char* title, int width, int height) {
    Evas_Object* window = required(elm_win_util_standard_add("zoltgui", title),
                                   "Cannot allocate memory for window instance");
    evas_object_resize(window, width, height);
    elm_win_focus_highlight_enabled_set(window, EINA_TRUE);
    elm_win_autodel_set(window, EINA_TRUE);
    return window;
}

// The window manager has closed the window, whose widgets are deleted with it. No focus sounds
// until this iteration of the main loop ends, as when a screen is deleted.
void onWindowGone(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*window*/, void* /*eventInfo*/) {
    auto silence = std::make_unique<FocusSilence>();
    const auto end = [](void* data) { delete static_cast<FocusSilence*>(data); };
    if (ecore_job_add(end, silence.get()) != nullptr) {
        static_cast<void>(silence.release());  // the job deletes it
    }
}

// The group to use for GROUP in enlarged mode. Other screens that have an enlarged group choose it
// themselves.
const char* enlargedGroup(const char* group) {
    return std::strcmp(group, "WaitingWindow") == 0 ? "WaitingWindow_Enlarge" : group;
}

// Whether the user interface runs right to left. Sets the toolkit's direction to match, for all
// screens of the process.
bool applyDirection() {
    const bool mirrored = modes::mirrored();
    elm_config_mirrored_set(mirrored ? EINA_TRUE : EINA_FALSE);
    return mirrored;
}

}  // namespace

const std::string Screen::m_layoutName = "gui.edj";

int IsHighContrastMode() {
    ZOLT_TRACE();
    int value = 0;
    return vconf_get_int("db/menu/system/accessibility/highcontrast", &value) == 0 ? value : 0;
}

Screen::Screen(const char* windowTitle, std::string layoutFile, const char* layoutGroup, int width,
               int height)
    : m_width(width), m_height(height), m_mirrored(false), m_popup(nullptr) {
    ZOLT_TRACE();
    const std::string path = layoutPath(layoutFile);
    m_window = createWindow(windowTitle, width, height);
    m_layout = elm_layout_add(m_window);
    if (m_layout == nullptr) {
        m_window.destroy();
        failAllocation("Cannot allocate memory for window instance");
    }
    if (modes::enlarged()) {
        ZOLT_DEBUG("Enlarge Mode ON");
        elm_object_scale_set(m_layout, modes::ENLARGED_SCALE);
        layoutGroup = enlargedGroup(layoutGroup);
    }
    // If the file or the group is missing the layout stays empty, which is not an error.
    elm_layout_file_set(m_layout, path.c_str(), layoutGroup);
    evas_object_size_hint_weight_set(m_layout, 1.0, 1.0);
    elm_win_resize_object_add(m_window, m_layout);
    if (modes::highContrast()) {
        ZOLT_DEBUG("High Contrast Mode ON");
        evas_object_data_set(m_window, HIGH_CONTRAST_KEY, HIGH_CONTRAST_KEY);
    }
    followContrast(m_layout);
    evas_object_show(m_layout);
    m_mirrored = applyDirection();
    evas_object_event_callback_add(m_window, EVAS_CALLBACK_KEY_DOWN, onKeyPress, this);
    evas_object_event_callback_add(m_window, EVAS_CALLBACK_DEL, onWindowGone, nullptr);
    elm_layout_signal_callback_add(m_layout, "size,changed", "", onSizeChanged, m_layout);
    enableKeysGrabbing();
}

Screen::~Screen() {
    ZOLT_TRACE();
    const FocusSilence silence;
    delete m_popup;
    m_popup = nullptr;
    if (m_window != nullptr) {
        // If the toolkit delays the deletion, no callback may reach this object.
        evas_object_event_callback_del_full(m_window, EVAS_CALLBACK_KEY_DOWN, onKeyPress, this);
        evas_object_event_callback_del(m_window, EVAS_CALLBACK_DEL, onWindowGone);
    }
    m_layout.destroy();
    m_window.destroy();
}

void Screen::show() {
    ZOLT_TRACE();
    evas_object_show(m_window);
}

Popup* Screen::getPopup() {
    ZOLT_TRACE();
    return m_popup;
}

bool Screen::getIfMirrored() const {
    ZOLT_TRACE();
    return m_mirrored;
}

bool Screen::covers(const Evas_Object* widget) const {
    return m_window != nullptr && elm_object_top_widget_get(widget) != m_window;
}

void Screen::destroyPopup() {
    ZOLT_TRACE();
    if (m_popup == nullptr) {
        return;
    }
    // Deliberately does not delete the object: one of the popup's own callbacks may have called
    // this, and may use the popup afterwards.
    m_popup->destroy();
    m_popup = nullptr;
}

void Screen::enableKeysGrabbing() {
    ZOLT_TRACE();
    constexpr int GRAB_MODE = 0x20000;
    const Ecore_X_Window window = elm_win_xwindow_get(m_window);
    for (const char* key : GRABBED_KEYS) {
        if (utilx_grab_key(ecore_x_display_get(), window, key, GRAB_MODE) != 0) {
            ZOLT_WARN("Error caught during grabbing %s key", key);
        }
    }
}

void Screen::loadLayouts() {
    ZOLT_TRACE();
    elm_theme_overlay_add(nullptr, layoutPath("gui.edj").c_str());
}

void Screen::onKeyPress(void* data, Evas* /*canvas*/, Evas_Object* object, void* eventInfo) {
    ZOLT_TRACE();
    if (eventInfo == nullptr) {
        ZOLT_WARN("Incorrect callback call - no event info");
        return;
    }
    const auto* event = static_cast<Evas_Event_Key_Down*>(eventInfo);
    if (event->key != nullptr && std::strcmp(event->key, "XF86Back") == 0) {
        EventHandler::quitRequested(data, object, eventInfo);
    }
}

void Screen::onSizeChanged(void* /*data*/, Evas_Object* object, const char* /*emission*/,
                           const char* /*source*/) {
    ZOLT_TRACE();
    Evas_Object* edje = object != nullptr ? elm_layout_edje_get(object) : nullptr;
    if (edje == nullptr) {
        ZOLT_WARN("Could not retrieve layout");
        return;
    }
    int width = 0;
    int height = 0;
    elm_layout_sizing_eval(object);
    edje_object_size_min_calc(edje, &width, &height);
    ZOLT_DEBUG("Minimum size for current theme is %dx%d", width, height);
}

Evas_Object* Screen::createLabel(Evas_Object* parent, const char* text, const char* style) {
    ZOLT_TRACE();
    Evas_Object* label =
        required(elm_label_add(parent), "Cannot allocate memory for label instance");
    elm_object_style_set(label, style);
    setTranslatable(label, nullptr, text);
    followContrast(label);
    return label;
}

Evas_Object* Screen::createIcon(Evas_Object* parent, const char* name) {
    ZOLT_TRACE();
    Evas_Object* icon = elm_icon_add(parent);
    if (icon != nullptr) {
        elm_icon_standard_set(icon, name);
    }
    return icon;
}

Evas_Object* Screen::createButton(Evas_Object* parent, const char* text, Evas_Smart_Cb callback,
                                  void* data, char* icon, const char* style) {
    ZOLT_TRACE();
    Evas_Object* button =
        required(elm_button_add(parent), "Cannot allocate memory for button instance");
    elm_object_style_set(button, style);
    evas_object_size_hint_weight_set(button, 1.0, 1.0);
    evas_object_size_hint_align_set(button, -1.0, -1.0);
    // Deliberately two calls, in this order. The second hint counts until a part takes the button.
    evas_object_size_hint_min_set(button, 1, 1);
    evas_object_size_hint_min_set(button, 1080, 720);
    setTranslatable(button, nullptr, text);
    elm_access_info_cb_set(button, ELM_ACCESS_INFO, EventHandler::accessCallback, translated(text));
    evas_object_smart_callback_add(button, "clicked", callback, data);
    evas_object_smart_callback_add(button, "focused", EventHandler::focusedItemCb, nullptr);
    evas_object_smart_callback_add(button, "unfocused", EventHandler::unfocusedItemCb, nullptr);
    evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_UP, EventHandler::onKeyPress, nullptr);
    if (icon != nullptr) {
        elm_object_part_content_set(button, "icon", createIcon(button, icon));
    }
    followContrast(button);
    return button;
}

Evas_Object* Screen::createImage(Evas_Object* parent, const char* file, int width, int height) {
    ZOLT_TRACE();
    Evas_Object* image =
        required(elm_image_add(parent), "Cannot allocate memory for image instance");
    elm_image_resizable_set(image, EINA_FALSE, EINA_FALSE);
    elm_image_no_scale_set(image, EINA_TRUE);
    elm_image_aspect_fixed_set(image, EINA_TRUE);
    elm_image_file_set(image, file, nullptr);
    evas_object_resize(image, width, height);
    return image;
}

Evas_Object* Screen::createProgressAnimation(Evas_Object* parent) {
    ZOLT_TRACE();
    Evas_Object* progress =
        required(elm_progressbar_add(parent), "Cannot allocate memory for progress bar instance");
    evas_object_size_hint_weight_set(progress, 1.0, 1.0);
    evas_object_size_hint_align_set(progress, -1.0, 0.5);
    elm_object_style_set(progress, "c_progress_circle_normal");
    elm_progressbar_pulse(progress, EINA_TRUE);
    return progress;
}

void Screen::addButton(const char* part, const char* text, Evas_Smart_Cb callback, void* data,
                       bool focusable, bool focused) {
    ZOLT_TRACE();
    Evas_Object* button = createButton(m_layout, text, callback, data, nullptr, BUTTON_STYLE);
    elm_object_part_content_set(m_layout, part, button);
    leaveSizeToPart(button);
    // A text that has no icon gets one with an empty name.
    elm_object_part_content_set(button, "icon", createIcon(button, iconOfButton(text, m_mirrored)));
    evas_object_show(button);
    elm_object_focus_allow_set(button, focusable ? EINA_TRUE : EINA_FALSE);
    elm_object_focus_set(button, focusable && focused ? EINA_TRUE : EINA_FALSE);
    if (!focusable) {
        showBlocked(button);
    }
}

void Screen::modifyButtonText(const char* part, const char* text) {
    ZOLT_TRACE();
    Evas_Object* button = elm_object_part_content_get(m_layout, part);
    setTranslatable(button, nullptr, text);
    elm_object_part_content_set(m_layout, part, button);
}

void Screen::fillMenu(std::initializer_list<MenuButton> buttons) {
    for (const MenuButton& entry : buttons) {
        Evas_Object* button = createButton(m_layout, entry.text, entry.callback, nullptr,
                                           iconName(entry.icon), BUTTON_STYLE);
        elm_object_part_content_set(m_layout, entry.part, button);
        leaveSizeToPart(button);
        evas_object_show(button);
    }
    Evas_Object* first = elm_object_part_content_get(m_layout, buttons.begin()->part);
    elm_object_focus_allow_set(first, EINA_TRUE);
    elm_object_focus_set(first, EINA_TRUE);
}

Evas_Object* Screen::fillWaiting(const char* text1, const char* text2) {
    Evas_Object* progress = createProgressAnimation(m_layout);
    elm_layout_box_append(m_layout, "animationBox", progress);
    evas_object_show(progress);
    setTranslatable(m_layout, "text1", text1);
    setTranslatable(m_layout, "text2", text2);
    return progress;
}

}  // namespace ZOLT::GUI
