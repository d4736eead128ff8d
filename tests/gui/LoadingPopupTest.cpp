// SPDX-License-Identifier: Apache-2.0
// The loading popup: its table, its sizes, its text and its circle.
#include <memory>
#include <utility>

#include "gui/Controller.h"
#include "gui/GuiFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT::GUI;

// Gives the tests access to protected members.
class OpenLoadingPopup : public LoadingPopup {
  public:
    using LoadingPopup::LoadingPopup;
    Evas_Object* table() const { return m_table; }
    Evas_Object* progress() const { return m_progress; }
};

class LoadingPopupTest : public support::GuiFixture {
  protected:
    void SetUp() override {
        GuiFixture::SetUp();
        m_screen = std::make_unique<MainMenuRegisteredScreen>(1920, 1080);
        make(1920, 1080);
    }
    void TearDown() override {
        m_popup.reset();
        m_screen.reset();
        GuiFixture::TearDown();
    }
    void make(int width, int height) {
        m_popup = std::make_unique<OpenLoadingPopup>(layoutOf(*m_screen), "c_popup_bottom", width,
                                                     height);
    }
    Evas_Object* cell(int column) const { return elm_table_child_get(m_popup->table(), column, 0); }

    std::unique_ptr<Screen> m_screen;
    std::unique_ptr<OpenLoadingPopup> m_popup;
};

TEST_F(LoadingPopupTest, ATableWithAMarginAndTheCircleIsItsContent) {
    EXPECT_EQ(m_popup->table(), partOf(widgetOf(*m_popup)));
    EXPECT_FALSE(elm_table_homogeneous_get(m_popup->table()));
    int horizontal = 0;
    int vertical = -1;
    elm_table_padding_get(m_popup->table(), &horizontal, &vertical);
    EXPECT_EQ(34, horizontal);
    EXPECT_EQ(0, vertical);
    double x = 0;
    double y = 0;
    evas_object_size_hint_weight_get(m_popup->table(), &x, &y);
    EXPECT_EQ(std::make_pair(1.0, 1.0), std::make_pair(x, y));
    EXPECT_NE(nullptr, cell(0));
    EXPECT_EQ(m_popup->progress(), cell(1));
    EXPECT_EQ(nullptr, cell(2));
    EXPECT_EQ("c_progress_circle_normal", styleOf(m_popup->progress()));
}

TEST_F(LoadingPopupTest, SizesAreFractionsOfTheScreenRoundedDown) {
    struct Row {
        int width;
        int height;
        int cellWidth;
        int textWidth;
        int cellHeight;
    };
    for (const Row& row : {Row{1920, 1080, 85, 638, 85}, Row{1280, 720, 57, 425, 57},
                           Row{3840, 2160, 171, 1277, 171}}) {
        make(row.width, row.height);
        m_popup->setText("SID_ANY", "popup/LoadingPopup");
        EXPECT_EQ(row.cellWidth, minimumOf(cell(0)).width);
        EXPECT_EQ(row.cellHeight, minimumOf(cell(0)).height);
        EXPECT_EQ(row.cellWidth, maximumOf(cell(1)).width);
        EXPECT_EQ(row.cellHeight, maximumOf(cell(1)).height);
        EXPECT_EQ(row.textWidth, minimumOf(cell(2)).width);
        EXPECT_EQ(row.cellHeight, minimumOf(cell(2)).height);
    }
}

TEST_F(LoadingPopupTest, ItsTextIsBesideTheCircleWithoutALimitOrMarkup) {
    const std::string text(700, 'a');
    m_popup->setText(text.c_str(), "popup/LoadingPopup");
    EXPECT_EQ(text, textOf(cell(2)));
    EXPECT_EQ("popup/LoadingPopup", styleOf(cell(2)));
    EXPECT_TRUE(evas_object_visible_get(cell(2)));
    double x = 0;
    double y = 0;
    evas_object_size_hint_align_get(cell(2), &x, &y);
    EXPECT_EQ(std::make_pair(-1.0, -1.0), std::make_pair(x, y));
    evas_object_size_hint_weight_get(cell(2), &x, &y);
    EXPECT_EQ(std::make_pair(1.0, 1.0), std::make_pair(x, y));
}

TEST_F(LoadingPopupTest, ItsTextFollowsALaterChangeOfLanguage) {
    m_popup->setText("SID_ANY", "popup/LoadingPopup");
    EXPECT_EQ("SID_ANY", textOf(cell(2)));
    translate({{"SID_ANY", "Some words"}});
    elm_language_set("C.UTF-8");
    settle();
    EXPECT_EQ("Some words", textOf(cell(2)));
}

TEST_F(LoadingPopupTest, ItsTextIsAnnouncedToTheScreenReader) {
    translate({{"SID_ANY", "Some words"}});
    Controller::m_wasLabelRead = true;
    m_popup->setText("SID_ANY", "popup/LoadingPopup");
    EXPECT_EQ("Some words", Controller::m_currentLabelText);
    EXPECT_FALSE(Controller::m_wasLabelRead);
}

TEST_F(LoadingPopupTest, ItsCircleIsStartedOnce) {
    const support::ToolkitWatch toolkit;
    make(1920, 1080);
    EXPECT_EQ(std::vector<Evas_Object*>{m_popup->progress()},
              toolkit.callsOf("elm_progressbar_pulse"));
}

TEST_F(LoadingPopupTest, ItsButtonsHaveTheirStyleAndNoMaximumSize) {
    m_popup->addButton(
        "SID_OK", [](void*, Evas_Object*, void*) {}, nullptr, nullptr);
    Evas_Object* button = partOf(widgetOf(*m_popup), "button1");
    EXPECT_EQ("SID_OK", textOf(button));
    EXPECT_EQ("none", iconOf(button));
    EXPECT_EQ("c_button_icontext", styleOf(button));
    EXPECT_NE(500, maximumOf(button).width);
    EXPECT_EQ(1, m_popup->getButtonCount());
}

TEST_F(LoadingPopupTest, StoppingTheCircleSignalsItAndKeepsItInItsPart) {
    int heard = 0;
    elm_layout_signal_callback_add(
        m_popup->progress(), "stop_pulse", "elm",
        [](void* data, Evas_Object*, const char*, const char*) { ++*static_cast<int*>(data); },
        &heard);
    m_popup->RemoveProgressBar();
    EXPECT_TRUE(turnUntil([&heard] { return heard == 1; }));
    EXPECT_EQ(m_popup->progress(), cell(1));
    EXPECT_NE(nullptr, widgetOf(*m_popup));
}

}  // namespace
