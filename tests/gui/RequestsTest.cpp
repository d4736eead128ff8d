// SPDX-License-Identifier: Apache-2.0
// Calls to the toolkit whose effect no widget shows here, because this toolkit does the same
// without the call, or ignores it. A television's toolkit may need them.
#include <memory>
#include <set>

#include <gmock/gmock.h>

#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/MessagePopup.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/RegistrationChangeScreen.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"
#include "gui/ShownScreen.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT;
using namespace ZOLT::GUI;
using support::ToolkitWatch;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;

class RequestsTest : public support::GuiFixture {
  protected:
    static std::string content(const char* part, const void* widget) {
        return "elm_object_part_content_set(" +
               (part != nullptr ? "\"" + std::string(part) + "\"" : "null") + ", " +
               ToolkitWatch::pointer(widget) + ")";
    }
    // The requests for OBJECT that begin with BEGINNING.
    static std::vector<std::string> of(const ToolkitWatch& watch, const void* object,
                                       const std::string& beginning) {
        std::vector<std::string> calls;
        for (const std::string& call : watch.requestsFor(object)) {
            if (call.rfind(beginning, 0) == 0) {
                calls.push_back(call);
            }
        }
        return calls;
    }
    static std::vector<std::string> focusOf(const ToolkitWatch& watch, const void* widget) {
        return of(watch, widget, "elm_object_focus_");
    }
    std::unique_ptr<ShopListScreen> level() {
        std::string name = "Level";
        std::queue<std::string> chosen;
        return std::make_unique<ShopListScreen>(name, chosen, 1920, 1080, "");
    }
    SelectionPopup& selection(ShopListScreen& screen) {
        m_shop.name = "Shop";
        m_shop.code = "01";
        std::set<Shop*, Shop::ShopComp> shops = {&m_shop};
        return dynamic_cast<SelectionPopup&>(*screen.addSelectionPopup(shops));
    }
    const std::vector<std::string> m_giveFocus = {"elm_object_focus_allow_set(true)",
                                                  "elm_object_focus_set(true)"};
    Shop m_shop;
};

// --- screens

TEST_F(RequestsTest, ALayoutIsMadeToFillItsWindow) {
    const ToolkitWatch watch;
    const MainMenuRegisteredScreen screen(1920, 1080);
    EXPECT_THAT(watch.requestsFor(layoutOf(screen)),
                Contains("evas_object_size_hint_weight_set(1, 1)"));
    EXPECT_THAT(
        watch.requestsFor(windowOf(screen)),
        Contains("elm_win_resize_object_add(" + ToolkitWatch::pointer(layoutOf(screen)) + ")"));
}

TEST_F(RequestsTest, AChangeOfSizeMeasuresTheLayoutAnew) {
    const MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    Screen::onSizeChanged(nullptr, layoutOf(screen), "size,changed", "");
    EXPECT_THAT(watch.requestsFor(layoutOf(screen)), ElementsAre("elm_layout_sizing_eval()"));
}

TEST_F(RequestsTest, AButtonHasTwoMinimumSizesOneAfterTheOther) {
    const MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    const Evas_Object* const button = Screen::createButton(
        layoutOf(screen), "SID_OK", EventHandler::quitRequested, nullptr, nullptr, "default");
    EXPECT_THAT(of(watch, button, "evas_object_size_hint_min_set"),
                ElementsAre("evas_object_size_hint_min_set(1, 1)",
                            "evas_object_size_hint_min_set(1080, 720)"));
}

TEST_F(RequestsTest, AButtonIsPutBackWithItsNewText) {
    const auto screen = level();
    Evas_Object* const button = partOf(layoutOf(*screen), "selectBtn");
    const ToolkitWatch watch;
    screen->modifyButtonText("selectBtn", "Chosen");
    EXPECT_THAT(watch.requestsFor(layoutOf(*screen)), ElementsAre(content("selectBtn", button)));
}

TEST_F(RequestsTest, ATextWithoutAnIconGetsAnIconWithAnEmptyName) {
    MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    screen.addButton("cancelBtn", "SID_ANY", EventHandler::quitRequested, nullptr, true, false);
    const Evas_Object* const icon = partOf(partOf(layoutOf(screen), "cancelBtn"), "icon");
    EXPECT_THAT(watch.requestsFor(icon), Contains("elm_icon_standard_set(\"\")"));
}

TEST_F(RequestsTest, OneButtonOfAScreenIsAllowedTheFocusAndGivenIt) {
    const ToolkitWatch watch;
    const MainMenuRegisteredScreen registered(1920, 1080);
    const MainMenuUnregisteredScreen unregistered(1920, 1080);
    const RegistrationChangeScreen change(1920, 1080);
    const PinDisplayingScreen pin("12345678", "", 1920, 1080);
    const auto list = level();
    for (const auto& [screen, part] :
         {std::pair<const Screen*, const char*>(&registered, "regChangeBtn"),
          {&unregistered, "newRegBtn"},
          {&change, "reRegBtn"},
          {&pin, "cancelBtnEnlarge"},
          {list.get(), "selectBtn"}}) {
        EXPECT_EQ(m_giveFocus, focusOf(watch, partOf(layoutOf(*screen), part))) << part;
    }
    EXPECT_THAT(focusOf(watch, partOf(layoutOf(registered), "deregBtn")), ElementsAre());
}

TEST_F(RequestsTest, TheDropDownCallsBackForAReleasedKey) {
    const ToolkitWatch watch;
    const auto screen = level();
    const Evas_Object* const dropDown = partOf(layoutOf(*screen), "selectBtn");
    EXPECT_THAT(of(watch, dropDown, "evas_object_event_callback_add"),
                ElementsAre("evas_object_event_callback_add(KEY_UP)"));
}

// --- popups

TEST_F(RequestsTest, APopupIsResizedToTheScreen) {
    MainMenuRegisteredScreen screen(1366, 768);
    const ToolkitWatch watch;
    const Popup* const popup = screen.addMessagePopup("SID_ANY");
    EXPECT_THAT(watch.requestsFor(widgetOf(*popup)), Contains("evas_object_resize(1366, 768)"));
}

TEST_F(RequestsTest, OkOfAQuestionPassesThePopupToItsCallback) {
    MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    for (Popup* const popup :
         {screen.addDeregistrationPopup(), screen.RegistrationInfoDeletionPopup()}) {
        const auto clicked = [&](const char* part) {
            return of(watch, partOf(widgetOf(*popup), part),
                      "evas_object_smart_callback_add(\"clicked\"");
        };
        EXPECT_THAT(clicked("button1"), ElementsAre("evas_object_smart_callback_add(\"clicked\", " +
                                                    ToolkitWatch::pointer(popup) + ")"));
        EXPECT_THAT(clicked("button2"), ElementsAre("evas_object_smart_callback_add(\"clicked\", " +
                                                    ToolkitWatch::pointer(nullptr) + ")"));
    }
}

TEST_F(RequestsTest, ADeactivatedButtonLosesTheFocusAndMayNotHaveIt) {
    MainMenuRegisteredScreen screen(1920, 1080);
    Popup* const popup = screen.addCompletionPopup();
    const ToolkitWatch watch;
    popup->deactivateButton("button1");
    EXPECT_THAT(focusOf(watch, partOf(widgetOf(*popup), "button1")),
                ElementsAre("elm_object_focus_allow_set(false)", "elm_object_focus_set(false)"));
}

TEST_F(RequestsTest, EveryWidgetOfALoadingPopupIsShown) {
    MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    const Popup* const popup = screen.addLoadingPopup("SID_ANY");
    Evas_Object* const table = partOf(widgetOf(*popup));
    EXPECT_THAT(watch.requestsFor(table), Contains("evas_object_show()"));
    for (int column = 0; column < 3; ++column) {
        EXPECT_THAT(watch.requestsFor(elm_table_child_get(table, column, 0)),
                    Contains("evas_object_show()"))
            << column;
    }
}

TEST_F(RequestsTest, TheTextOfALoadingPopupIsSetAsContentOfTheTableToo) {
    MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    const Popup* const popup = screen.addLoadingPopup("SID_ANY");
    Evas_Object* const table = partOf(widgetOf(*popup));
    EXPECT_THAT(watch.requestsFor(table),
                Contains(content(nullptr, elm_table_child_get(table, 2, 0))));
}

TEST_F(RequestsTest, TheTextOfAMessageIsShown) {
    MainMenuRegisteredScreen screen(1920, 1080);
    const ToolkitWatch watch;
    const Popup* const popup = screen.addMessagePopup("SID_ANY");
    EXPECT_THAT(watch.requestsFor(partOf(widgetOf(*popup))), Contains("evas_object_show()"));
}

// --- the list popup

TEST_F(RequestsTest, AListPopupMarksTheFocusInTheDefaultStyle) {
    const auto screen = level();
    const ToolkitWatch watch;
    const SelectionPopup& popup = selection(*screen);
    EXPECT_THAT(watch.requestsFor(widgetOf(popup)),
                Contains("elm_win_focus_highlight_style_set(\"default\")"));
}

TEST_F(RequestsTest, TheBoxAndTheListOfAListPopupAreMadeToFillIt) {
    const auto screen = level();
    const ToolkitWatch watch;
    const SelectionPopup& popup = selection(*screen);
    for (Evas_Object* const widget : {popup.m_box, static_cast<Evas_Object*>(popup.m_list)}) {
        EXPECT_THAT(
            watch.requestsFor(widget),
            IsSupersetOf({"evas_object_size_hint_weight_set(1, 1)",
                          "evas_object_size_hint_align_set(-1, -1)", "evas_object_show()"}));
    }
    EXPECT_EQ(m_giveFocus, focusOf(watch, popup.m_list));
}

TEST_F(RequestsTest, AListPopupWithoutAPickGivesItsListTheFocusBeforeItIsShown) {
    const auto screen = level();
    SelectionPopup& popup = selection(*screen);
    const ToolkitWatch watch;
    popup.show();
    EXPECT_THAT(focusOf(watch, popup.m_list), ElementsAre("elm_object_focus_set(true)"));
}

TEST_F(RequestsTest, AListPopupWithAPickGivesItsRowTheFocusBeforeItIsShown) {
    const auto screen = level();
    SelectionPopup& popup = selection(*screen);
    popup.m_selectedItem = elm_genlist_first_item_get(popup.m_list);
    popup.m_selectedShop = &m_shop;
    const ToolkitWatch watch;
    popup.show();
    std::vector<std::string> order;
    for (const ToolkitWatch::Request& request : watch.requests()) {
        if (request.call == "elm_object_item_focus_set(true)") {
            EXPECT_EQ(popup.m_selectedItem, request.object);
            order.emplace_back("focus");
        } else if (request.call == "evas_object_show()") {
            order.emplace_back("show");
        }
    }
    // The last is for newer toolkits, which choose a focus themselves when a popup is shown.
    EXPECT_THAT(order, ElementsAre("focus", "show", "show", "focus"));
}

TEST_F(RequestsTest, ReopeningRestoresFocusRegionAndRowInThisOrder) {
    ShopListScreen* const screen = level().release();
    const support::ShownScreen flow(screen);  // selecting a row calls back into the flow
    SelectionPopup& popup = selection(*screen);
    popup.m_previousItem = elm_genlist_first_item_get(popup.m_list);
    popup.m_region = {1, 2, 3, 4};
    const ToolkitWatch watch;
    popup.restoreSelectedItemSetting();
    EXPECT_THAT(watch.requestsFor(popup.m_list),
                ElementsAre("elm_object_focus_allow_set(true)", "elm_object_focus_set(true)",
                            "elm_scroller_region_show(1, 2, 3, 4)"));
    EXPECT_THAT(
        watch.requestsFor(popup.m_previousItem),
        ElementsAre("elm_genlist_item_selected_set(true)", "elm_object_item_focus_set(true)"));
    EXPECT_EQ(popup.m_previousItem, watch.requests().back().object);
}

}  // namespace
