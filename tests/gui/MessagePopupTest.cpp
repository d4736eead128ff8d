// SPDX-License-Identifier: Apache-2.0
// The popup with a text: its translation, its limit, and the size of its buttons.
#include <memory>

#include "gui/Controller.h"
#include "gui/GuiFixture.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MessagePopup.h"

namespace {

using namespace ZOLT::GUI;

class MessagePopupTest : public support::GuiFixture {
  protected:
    void SetUp() override {
        GuiFixture::SetUp();
        m_screen = std::make_unique<MainMenuRegisteredScreen>(1920, 1080);
        m_popup = std::make_unique<MessagePopup>(layoutOf(*m_screen), "c_popup_bottom", 1920, 1080);
    }
    void TearDown() override {
        m_popup.reset();
        m_screen.reset();
        GuiFixture::TearDown();
    }
    std::string shown(const std::string& text) {
        m_popup->setText(text.c_str(), "popup/c_popup_bottom");
        return textOf(label());
    }
    Evas_Object* label() const { return partOf(widgetOf(*m_popup)); }

    std::unique_ptr<Screen> m_screen;
    std::unique_ptr<MessagePopup> m_popup;
};

TEST_F(MessagePopupTest, ItsTextIsCentredAndShown) {
    EXPECT_EQ("<align=center>SID_ANY</align>", shown("SID_ANY"));
    double x = 0;
    double y = 0;
    evas_object_size_hint_align_get(label(), &x, &y);
    EXPECT_EQ(std::make_pair(0.5, 0.5), std::make_pair(x, y));
    evas_object_size_hint_weight_get(label(), &x, &y);
    EXPECT_EQ(std::make_pair(1.0, 1.0), std::make_pair(x, y));
    EXPECT_EQ("popup/c_popup_bottom", styleOf(label()));
    m_screen->show();
    m_popup->show();
    settle();
    EXPECT_TRUE(evas_object_visible_get(label()));
}

TEST_F(MessagePopupTest, ItsTextIsTranslatedOnTheScreenAndForSpeech) {
    translate({{"SID_ANY", "Some words"}});
    Controller::m_wasLabelRead = true;
    EXPECT_EQ("<align=center>Some words</align>", shown("SID_ANY"));
    EXPECT_EQ("Some words", Controller::m_currentLabelText);
    EXPECT_FALSE(Controller::m_wasLabelRead);
}

TEST_F(MessagePopupTest, ItsTextDoesNotFollowALaterChangeOfLanguage) {
    EXPECT_EQ("<align=center>SID_ANY</align>", shown("SID_ANY"));
    translate({{"SID_ANY", "Some words"}, {"COM_SID_ZOLT_CONTENT", "The program"}});
    elm_language_set("C.UTF-8");
    settle();
    EXPECT_EQ("The program", textOf(widgetOf(*m_popup), "title,text"));
    EXPECT_EQ("<align=center>SID_ANY</align>", textOf(label()));
}

TEST_F(MessagePopupTest, ATextOf488BytesKeepsItsClosingTag) {
    const std::string text(488, 'a');
    EXPECT_EQ("<align=center>" + text + "</align>", shown(text));
}

TEST_F(MessagePopupTest, ALongerTextIsCutAndLosesItsClosingTag) {
    const std::string text(489, 'a');
    EXPECT_EQ("<align=center>" + text + "</align", shown(text));
    EXPECT_EQ("<align=center>" + std::string(496, 'b'), shown(std::string(600, 'b')));
    EXPECT_EQ(600U, Controller::m_currentLabelText.size());
}

TEST_F(MessagePopupTest, ACutInTheMiddleOfACharacterDoesNoHarm) {
    std::string text = "x";  // so that the text is cut inside a character
    for (int count = 0; count < 300; ++count) {
        text += "\xED\x95\x9C";
    }
    EXPECT_LE(shown(text).size(), 512U);
    m_screen->show();
    m_popup->show();
    settle();
    EXPECT_TRUE(evas_object_visible_get(label()));
}

TEST_F(MessagePopupTest, ItsButtonsAreNarrowerThanAScreens) {
    m_popup->addButton(
        "SID_OK", [](void*, Evas_Object*, void*) {}, nullptr, iconName("i_ok_done_allow"));
    Evas_Object* button = partOf(widgetOf(*m_popup), "button1");
    EXPECT_EQ(500, maximumOf(button).width);
    EXPECT_EQ(100, maximumOf(button).height);
    EXPECT_EQ(250, minimumOf(button).width);
    EXPECT_EQ(56, minimumOf(button).height);
    EXPECT_EQ("i_ok_done_allow", iconOf(button));
    EXPECT_EQ("c_button_icontext", styleOf(button));
    EXPECT_NE(button, focusedIn(button));
}

}  // namespace
