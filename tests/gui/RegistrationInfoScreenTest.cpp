// SPDX-License-Identifier: Apache-2.0
// The table of choices that lead to a shop, in both directions and sizes.
#include <array>
#include <memory>
#include <utility>

#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShownScreen.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT;
using namespace ZOLT::GUI;

class RegistrationInfoScreenTest : public support::GuiFixture {
  protected:
    void TearDown() override {
        m_screen.reset();
        GuiFixture::TearDown();
    }

    // A screen with one row for each level name, shop name and shop code.
    void show(const std::vector<std::array<std::string, 3>>& levels) {
        std::vector<std::unique_ptr<Shop>> shops;
        std::vector<ShopList> records;
        for (const auto& [level, name, code] : levels) {
            shops.push_back(std::make_unique<Shop>());
            shops.back()->name = name;
            shops.back()->code = code;
            records.emplace_back();
            records.back().name = level;
            records.back().shops.push_back(shops.back().get());
        }
        m_screen = std::make_unique<RegistrationInfoScreen>(records, 1920, 1080);
        // The shops are deleted here, before anything is drawn.
    }
    // The weight hints of a widget, horizontal and vertical.
    static std::pair<double, double> weightOf(const Evas_Object* widget) {
        std::pair<double, double> weight;
        evas_object_size_hint_weight_get(widget, &weight.first, &weight.second);
        return weight;
    }
    static std::pair<double, double> alignmentOf(const Evas_Object* widget) {
        std::pair<double, double> alignment;
        evas_object_size_hint_align_get(widget, &alignment.first, &alignment.second);
        return alignment;
    }
    Evas_Object* scroller() const { return partOf(layoutOf(*m_screen), "scroller"); }
    std::vector<Evas_Object*> rows() const {
        std::vector<Evas_Object*> all;
        Eina_List* list = elm_box_children_get(partOf(scroller()));
        void* row = nullptr;
        EINA_LIST_FREE(list, row) {
            all.push_back(static_cast<Evas_Object*>(row));
        }
        return all;
    }

    std::unique_ptr<RegistrationInfoScreen> m_screen;
};

TEST_F(RegistrationInfoScreenTest, WithoutRecordsThereIsATitleAndAnEmptyScroller) {
    show({});
    EXPECT_STREQ("RegistrationInfoScreen", elm_win_title_get(windowOf(*m_screen)));
    EXPECT_EQ("RegistrationInfoWindow", groupOf(layoutOf(*m_screen)));
    EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(layoutOf(*m_screen), "title"));
    ASSERT_NE(nullptr, scroller());
    EXPECT_TRUE(rows().empty());
}

TEST_F(RegistrationInfoScreenTest, ThereIsARowForEachLevelAndOneForTheCodeOfTheLast) {
    translate({{"TV_SID_SHOP_CODE", "Code"}});
    show({{"Country", "Freedonia", "01"}, {"City", "Fredville", "0102"}});
    ASSERT_EQ(3U, rows().size());
    EXPECT_EQ("Country :", textOf(rows()[0], "leftText"));
    EXPECT_EQ("Freedonia", textOf(rows()[0], "rightText"));
    EXPECT_EQ("City :", textOf(rows()[1], "leftText"));
    EXPECT_EQ("Fredville", textOf(rows()[1], "rightText"));
    EXPECT_EQ("Code :", textOf(rows()[2], "leftText"));
    EXPECT_EQ("0102", textOf(rows()[2], "rightText"));
    for (Evas_Object* row : rows()) {
        EXPECT_EQ("RegistrationRecord", styleOf(row));
        EXPECT_EQ("", textOf(row, "leftText_RTL"));
        EXPECT_EQ("", textOf(row, "rightText_RTL"));
        EXPECT_TRUE(evas_object_visible_get(row));
        EXPECT_EQ(std::pair(-1.0, -1.0), alignmentOf(row));
        EXPECT_EQ(std::pair(1.0, 1.0), weightOf(row));
        EXPECT_EQ(1.0, elm_object_scale_get(row));
    }
}

TEST_F(RegistrationInfoScreenTest, RightToLeftOnlyTheLevelsHaveTheirColonInFront) {
    translate({{"TV_SID_SHOP_CODE", "Code"}});
    platform().setOrientation(1);
    show({{"City", "Fredville", "0102"}});
    ASSERT_EQ(2U, rows().size());
    EXPECT_EQ(": City", textOf(rows()[0], "leftText_RTL"));
    EXPECT_EQ("Fredville", textOf(rows()[0], "rightText_RTL"));
    EXPECT_EQ("Code :", textOf(rows()[1], "leftText_RTL"));
    EXPECT_EQ("0102", textOf(rows()[1], "rightText_RTL"));
    EXPECT_EQ("", textOf(rows()[0], "leftText"));
    EXPECT_EQ("", textOf(rows()[1], "rightText"));
}

TEST_F(RegistrationInfoScreenTest, NamesAreEncodedAndTheCodeIsNot) {
    show({{"A<B", "C&D", "<br>"}});
    EXPECT_EQ("A&lt;B :", textOf(rows()[0], "leftText"));
    EXPECT_EQ("C&amp;D", textOf(rows()[0], "rightText"));
    EXPECT_EQ("<br>", textOf(rows()[1], "rightText").substr(0, 4));
}

TEST_F(RegistrationInfoScreenTest, InEnlargedModeItHasAnotherGroupAndLargerRows) {
    Controller::Enlarge = 1;
    show({{"Country", "Freedonia", "01"}, {"City", "Fredville", "0102"}});
    EXPECT_EQ("RegistrationInfoWindowEnlarge", groupOf(layoutOf(*m_screen)));
    EXPECT_DOUBLE_EQ(1.2, elm_object_scale_get(layoutOf(*m_screen)));
    // A row without its own scale would inherit the layout's.
    elm_object_scale_set(layoutOf(*m_screen), 3.0);
    ASSERT_EQ(3U, rows().size());
    for (Evas_Object* row : rows()) {
        EXPECT_DOUBLE_EQ(1.2, elm_object_scale_get(row));
    }
    EXPECT_EQ(4, platform().countLines("Enlarge Mode ON"));
}

TEST_F(RegistrationInfoScreenTest, ARecordWithoutAShopHasARowWithoutAValueAndNoCode) {
    std::vector<ShopList> records(1);
    records.front().name = "City";
    m_screen = std::make_unique<RegistrationInfoScreen>(records, 1920, 1080);
    ASSERT_EQ(1U, rows().size());
    EXPECT_EQ("City :", textOf(rows()[0], "leftText"));
    EXPECT_EQ("", textOf(rows()[0], "rightText"));
}

TEST_F(RegistrationInfoScreenTest, ItScrollsUpAndDownOnly) {
    show({{"City", "Fredville", "0102"}});
    Elm_Scroller_Policy across = ELM_SCROLLER_POLICY_LAST;
    Elm_Scroller_Policy down = ELM_SCROLLER_POLICY_LAST;
    elm_scroller_policy_get(scroller(), &across, &down);
    EXPECT_EQ(ELM_SCROLLER_POLICY_OFF, across);
    EXPECT_EQ(ELM_SCROLLER_POLICY_AUTO, down);
    Eina_Bool bounceAcross = EINA_FALSE;
    Eina_Bool bounceDown = EINA_TRUE;
    elm_scroller_bounce_get(scroller(), &bounceAcross, &bounceDown);
    EXPECT_TRUE(bounceAcross);
    EXPECT_FALSE(bounceDown);
    EXPECT_TRUE(elm_scroller_propagate_events_get(scroller()));
}

TEST_F(RegistrationInfoScreenTest, TheScrollerIsMadeOnTheWindowAndFillsItsPart) {
    const support::ToolkitWatch toolkit;
    show({{"City", "Fredville", "0102"}});
    EXPECT_EQ(std::vector<Evas_Object*>{windowOf(*m_screen)}, toolkit.callsOf("elm_scroller_add"));
    EXPECT_EQ(std::pair(-1.0, -1.0), alignmentOf(scroller()));
    EXPECT_EQ(std::pair(1.0, 1.0), weightOf(scroller()));
}

TEST_F(RegistrationInfoScreenTest, ItsRowsArePackedAtTheTop) {
    show({{"City", "Fredville", "0102"}});
    Evas_Object* box = partOf(scroller());
    int across = -1;
    int down = -1;
    elm_box_padding_get(box, &across, &down);
    EXPECT_EQ(std::pair(0, 0), std::pair(across, down));
    EXPECT_EQ(std::pair(0.5, 0.0), weightOf(box));
}

// The events are sent directly, because the toolkit also sends them for the content of the
// scroller.
TEST_F(RegistrationInfoScreenTest, TheScrollerCallsBackWhenItGetsAndLosesTheFocus) {
    show({{"City", "Fredville", "0102"}});
    evas_object_smart_callback_call(scroller(), "unfocused", nullptr);
    EXPECT_EQ(1, entered("unfocusedItemCb"));
    EXPECT_EQ(0, entered("focusedItemCb"));
    evas_object_smart_callback_call(scroller(), "focused", nullptr);
    EXPECT_EQ(1, entered("focusedItemCb"));
    EXPECT_EQ(1, entered("unfocusedItemCb"));
}

TEST_F(RegistrationInfoScreenTest, TheScrollerCallsBackForKeysWhenTheyArePressed) {
    show({{"City", "Fredville", "0102"}});
    m_screen->show();
    activate(*m_screen);
    draw(layoutOf(*m_screen));
    elm_object_focus_set(scroller(), EINA_TRUE);
    evas_object_focus_set(scroller(), EINA_TRUE);
    settle();
    EXPECT_GE(entered("focusedItemCb"), 1);
    platform().clearLog();
    keyDown(scroller(), "XF86Red");
    EXPECT_EQ(1, entered("onKeyPress"));
    keyUp(scroller(), "XF86Red");
    EXPECT_EQ(1, entered("onKeyPress"));
}

TEST_F(RegistrationInfoScreenTest, AChangeOfLanguageCallsBackWithTheIdOfTheCode) {
    show({{"City", "Fredville", "0102"}});
    Evas_Object* code = rows()[1];
    const support::ShownScreen flow(m_screen.release());
    translate({{"TV_SID_SHOP_CODE", "Code"}});
    elm_language_set("C.UTF-8");
    settle();
    EXPECT_EQ(1, entered("languageChanged"));
    EXPECT_EQ("Code :", textOf(code, "leftText"));
}

TEST_F(RegistrationInfoScreenTest, ThePreviousAndNextButtonsCanBeRemovedAndASingleOneStays) {
    show({{"City", "Fredville", "0102"}});
    for (const char* part : {"prevBtn", "regBtn", "singleBtn"}) {
        m_screen->addButton(
            part, "SID_REGISTER", [](void*, Evas_Object*, void*) {}, nullptr, true, true);
    }
    m_screen->removeButtons();
    EXPECT_EQ(nullptr, partOf(layoutOf(*m_screen), "prevBtn"));
    EXPECT_EQ(nullptr, partOf(layoutOf(*m_screen), "regBtn"));
    EXPECT_NE(nullptr, partOf(layoutOf(*m_screen), "singleBtn"));
}

}  // namespace
