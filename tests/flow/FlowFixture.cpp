// SPDX-License-Identifier: Apache-2.0
// A flow with real screens, a scripted television and a fake daemon.
#include "flow/FlowFixture.h"

#include <stdexcept>

using ZOLT::GUI::Controller;
using ZOLT::GUI::ControllerProbe;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::SelectionPopup;

namespace flow {

std::string document(const std::vector<Level>& levels) {
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok">)";
    for (size_t index = 0; index < levels.size(); ++index) {
        text += "<list level=\"" + std::to_string(index + 1) + "\" name=\"" + levels[index].name +
                R"(" is_fix="Y" is_sub="Y">)";
        for (const auto& [name, code] : levels[index].entries) {
            text.append("<sub_list name=\"")
                .append(name)
                .append("\" code=\"")
                .append(code)
                .append("\" />");
        }
        text += "</list>";
    }
    return text + "</rsp>";
}

void FlowFixture::SetUp() {
    startBus();
    GuiFixture::SetUp();
    m_daemon = std::make_unique<FakeDaemon>();
}

void FlowFixture::TearDown() {
    m_flow.reset();
    m_daemon.reset();
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    GuiFixture::TearDown();
}

Controller& FlowFixture::makeFlow() {
    m_flow = std::make_unique<Controller>(&m_deviceInfo);
    return *m_flow;
}

Controller& FlowFixture::start(bool registered) {
    const std::string file = m_folder.file("registered");
    if (registered) {
        m_folder.write("registered", "");
    }
    configure("ShopRegistrationFilePath", file);
    makeFlow().initialize();
    settle();
    return *m_flow;
}

void FlowFixture::event(int number, int reason) {
    m_flow->callbackManager(number, reason);
    settle();
}

void FlowFixture::click(void (*callback)(void*, Evas_Object*, void*)) {
    callback(nullptr, nullptr, nullptr);
    settle();
}

void FlowFixture::serve(const std::vector<Level>& levels) {
    daemon().answer("getShopInfoList", document(levels));
    m_flow->callbackManager(ZOLT::EVENT_STEP_DONE, ZOLT::REASON_SHOP_LIST_READY);
    settle();
}

std::deque<ZOLT::GUI::Screen*>& FlowFixture::history() {
    return ControllerProbe::history(*m_flow);
}

std::vector<std::string> FlowFixture::chosen() {
    std::vector<std::string> names;
    for (const ZOLT::Shop* shop : ControllerProbe::chosen(*m_flow)) {
        names.push_back(shop->name);
    }
    return names;
}

uint32_t FlowFixture::level() {
    return ControllerProbe::level(*m_flow);
}

uint32_t FlowFixture::initialLevel() {
    return ControllerProbe::initialLevel(*m_flow);
}

ZOLT::GUI::Screen& FlowFixture::screen() {
    return *history().at(0);
}

Evas_Object* FlowFixture::button(const char* part) {
    return elm_object_part_content_get(layoutOf(screen()), part);
}

std::string FlowFixture::describe(const char* part) {
    Evas_Object* const widget = button(part);
    if (widget == nullptr) {
        return "";
    }
    const std::string text = textOf(widget);
    if (focusedIn(widget) == widget) {
        return text + "*!";
    }
    return takesFocus(widget) ? text + "*" : text;
}

bool FlowFixture::waitForFocus(Evas_Object* widget) {
    const bool focused =
        waitFor([widget] { return focusedIn(widget) == widget && geometryOf(widget).width > 0; });
    settle();
    return focused;
}

std::vector<std::string> FlowFixture::offered() {
    std::vector<std::string> names;
    Evas_Object* const list = popup<SelectionPopup>()->m_list;
    for (Elm_Object_Item* item = elm_genlist_first_item_get(list); item != nullptr;
         item = elm_genlist_item_next_get(item)) {
        names.push_back(static_cast<ZOLT::Shop*>(elm_object_item_data_get(item))->name);
    }
    return names;
}

void FlowFixture::pick(const std::string& name) {
    EventHandler::selectionPopupRequested(nullptr, nullptr, nullptr);
    settle();
    Evas_Object* const list = popup<SelectionPopup>()->m_list;
    for (Elm_Object_Item* item = elm_genlist_first_item_get(list); item != nullptr;
         item = elm_genlist_item_next_get(item)) {
        if (static_cast<ZOLT::Shop*>(elm_object_item_data_get(item))->name == name) {
            elm_genlist_item_selected_set(item, EINA_TRUE);
            settle();
            return;
        }
    }
    throw std::runtime_error("no entry " + name);
}

void FlowFixture::choose(const std::string& name) {
    pick(name);
    EventHandler::selectionPopupShopChosen(nullptr, nullptr, nullptr);
    settle();
}

bool FlowFixture::waitFor(const std::function<bool()>& predicate) {
    return turnUntil([&predicate] {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        return predicate();
    });
}

std::vector<int> FlowFixture::sounds() {
    return platform().playedPatterns();
}

}  // namespace flow
