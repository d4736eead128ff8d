// SPDX-License-Identifier: Apache-2.0
// One screen of the program in a window in memory. The caller presses the keys and moves the clock.
#include "look/ScreenHarness.h"

#include <stdexcept>

#include <Ecore.h>
#include <Ecore_Evas.h>

#include "gui/EventHandler.h"
#include "gui/ScreenParts.h"
#include "gui/ToolkitLoop.h"
#include "look/Clock.h"
#include "look/Scene.h"
#include "support/ScriptedPlatform.h"

namespace look {

namespace {

constexpr double TICK = 0.05;  // seconds
constexpr int TICKS = 12;      // longer than any animation of the theme and of a list
constexpr int CALCULATIONS = 2;
constexpr int ROUNDS = 4;

Ecore_Evas* frameOf(Evas_Object* window) {
    return ecore_evas_ecore_evas_get(evas_object_evas_get(window));
}

}  // namespace

ScreenHarness::ScreenHarness(const Scene& scene, const Mode& mode) : m_mode(mode) {
    ZOLT::GUI::EventHandler::m_keyUnfocused = false;
    ZOLT::GUI::EventHandler::m_focusState = ZOLT::GUI::FOCUS_STATE_NONE;
    m_screen = scene.make(*this);
    m_window = support::windowOf(*m_screen);
    ecore_evas_manual_render_set(frameOf(m_window), EINA_TRUE);
    m_shown = std::make_unique<support::ShownScreen>(m_screen);
    support::ToolkitLoop::activate(m_window);
    settle();
    if (scene.after) {
        scene.after(*this);
        settle();
    }
}

ScreenHarness::~ScreenHarness() {
    m_shown.reset();
    support::ToolkitLoop::settle();
}

Evas_Object* ScreenHarness::popup() const {
    ZOLT::GUI::Popup* popup = m_screen->getPopup();
    return popup != nullptr && popup->getVisible() ? support::widgetOf(*popup) : nullptr;
}

Evas_Object* ScreenHarness::focused() const {
    return elm_object_focused_object_get(m_window);
}

void ScreenHarness::press(const std::string& key) {
    support::ToolkitLoop::keyDown(m_window, key);
    support::ToolkitLoop::settle();
    support::ToolkitLoop::keyUp(m_window, key);
    settle();
}

void ScreenHarness::focus(Evas_Object* widget) {
    elm_object_focus_set(widget, EINA_TRUE);
    settle();
}

void ScreenHarness::changeLanguage(const Mode& mode, const std::string& catalogues) {
    mode.useLanguage(catalogues);
    support::ScriptedPlatform::get().setOrientation(mode.mirrored() ? 1 : 0);
    elm_language_set("C.UTF-8");
    settle();
}

void ScreenHarness::pass(double seconds) {
    Clock::pass(seconds);
    support::ToolkitLoop::settle();
}

// Sizes may take several turns of the loop, a list makes its rows when a frame is drawn, and a row
// may start an animation.
void ScreenHarness::settle() {
    for (int round = 0; round < ROUNDS; ++round) {
        for (int turn = 0; turn < CALCULATIONS; ++turn) {
            support::ToolkitLoop::settle();
            evas_smart_objects_calculate(canvas());
        }
        for (int tick = 0; tick < TICKS; ++tick) {
            Clock::pass(TICK);
            ecore_main_loop_iterate_may_block(0);
        }
        support::ToolkitLoop::settle();
        ecore_evas_manual_render(frameOf(m_window));
    }
}

Frame ScreenHarness::draw() {
    Ecore_Evas* frame = frameOf(m_window);
    ecore_evas_manual_render(frame);
    const void* pixels = ecore_evas_buffer_pixels_get(frame);
    if (pixels == nullptr) {
        throw std::runtime_error("the window has no pixels");
    }
    return {m_mode.width, m_mode.height, pixels};
}

std::set<ZOLT::Shop*, ZOLT::Shop::ShopComp> ScreenHarness::shops(
    const std::vector<std::string>& names) {
    std::set<ZOLT::Shop*, ZOLT::Shop::ShopComp> shops;
    for (const std::string& name : names) {
        auto shop = std::make_unique<ZOLT::Shop>();
        shop->name = name;
        const std::string number = std::to_string(m_shops.size() + 1);
        shop->code = std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number;
        shops.insert(shop.get());
        m_shops.push_back(std::move(shop));
    }
    return shops;
}

}  // namespace look
