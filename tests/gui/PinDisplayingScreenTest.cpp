// SPDX-License-Identifier: Apache-2.0
// The screen with the PIN: what it shows, what is spoken, and both reading directions.
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "common/ZoltConfig.h"
#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/ShownScreen.h"

namespace {

using namespace ZOLT::GUI;
using Strings = std::vector<std::string>;

class PinDisplayingScreenTest : public support::GuiFixture {
  protected:
    static Strings boxOf(const Screen& screen, std::string (*look)(Evas_Object*)) {
        Strings seen;
        for (Evas_Object* label : childrenOf(layoutOf(screen), "pinCodeVal")) {
            seen.push_back(look(label));
            EXPECT_TRUE(evas_object_visible_get(label));
        }
        return seen;
    }
    static Strings textsOf(const Screen& screen) {
        return boxOf(screen, [](Evas_Object* label) { return textOf(label); });
    }
    static Strings stylesOf(const Screen& screen) { return boxOf(screen, styleOf); }
};

TEST_F(PinDisplayingScreenTest, HasItsTitleItsGroupAndItsButtonWithTheFocus) {
    for (int enlarge : {0, 1}) {
        Controller::Enlarge = enlarge;
        const PinDisplayingScreen screen("12345678", "", 1920, 1080);
        EXPECT_STREQ("PinDisplaying", elm_win_title_get(windowOf(screen)));
        EXPECT_EQ("PinDisplayingWindow", groupOf(layoutOf(screen)));
        EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(layoutOf(screen), "title"));
        Evas_Object* button = partOf(layoutOf(screen), "cancelBtnEnlarge");
        ASSERT_NE(nullptr, button);
        EXPECT_EQ("SID_CANCEL", textOf(button));
        EXPECT_EQ("i_close_cancel", iconOf(button));
        EXPECT_EQ("c_button_icontext", styleOf(button));
        EXPECT_EQ(button, focusedIn(button));
    }
}

TEST_F(PinDisplayingScreenTest, ItsButtonQuits) {
    const PinDisplayingScreen screen("12345678", "", 1920, 1080);
    Evas_Object* button = partOf(layoutOf(screen), "cancelBtnEnlarge");
    EXPECT_TRUE(
        endsMainLoop([button] { evas_object_smart_callback_call(button, "clicked", nullptr); }));
}

TEST_F(PinDisplayingScreenTest, TheVersionFollowsABlankAColonAndABlank) {
    translate({{"SID_SOFTWARE_VERSION", "Software"}});
    const PinDisplayingScreen screen("12345678", "", 1920, 1080);
    EXPECT_EQ("Software : 1.2.3", textOf(layoutOf(screen), "SoftwareVersion"));
}

TEST_F(PinDisplayingScreenTest, TheVersionLineIsRenewedByTheLanguageCallbackOnly) {
    const PinDisplayingScreen screen("12345678", "", 1920, 1080);
    translate({{"SID_SOFTWARE_VERSION", "Software"}, {"COM_SID_ZOLT_CONTENT", "The program"}});
    evas_object_smart_callback_del(layoutOf(screen), "language,changed",
                                   EventHandler::languageChanged);
    elm_language_set("C.UTF-8");
    settle();
    EXPECT_EQ("The program", textOf(layoutOf(screen), "title"));
    EXPECT_EQ("SID_SOFTWARE_VERSION : 1.2.3", textOf(layoutOf(screen), "SoftwareVersion"));
}

TEST_F(PinDisplayingScreenTest, AChangeOfLanguageCallsBackWithTheIdOfTheVersion) {
    auto* screen = new PinDisplayingScreen("12345678", "", 1920, 1080);
    const support::ShownScreen flow(screen);
    translate({{"SID_SOFTWARE_VERSION", "Software"}});
    elm_language_set("C.UTF-8");
    settle();
    EXPECT_EQ(1, entered("languageChanged"));
    EXPECT_EQ("Software : 1.2.3", textOf(layoutOf(*screen), "SoftwareVersion"));
}

TEST_F(PinDisplayingScreenTest, WithoutARegistrationItSaysSoInTheLanguageOfTheTV) {
    const PinDisplayingScreen screen("12345678", "", 1920, 1080);
    EXPECT_EQ("TV_SID_UNREGISTERED", textOf(layoutOf(screen), "RegistrationInfo"));
    translate({{"TV_SID_UNREGISTERED", "Not registered"}});
    const PinDisplayingScreen translatedScreen("12345678", "", 1920, 1080);
    EXPECT_EQ("Not registered", textOf(layoutOf(translatedScreen), "RegistrationInfo"));
}

TEST_F(PinDisplayingScreenTest, ARegistrationIsShownUnchanged) {
    translate({{"TV_SID_UNREGISTERED", "Not registered"}});
    const PinDisplayingScreen screen("12345678", "TV_SID_UNREGISTERED", 1920, 1080);
    EXPECT_EQ("TV_SID_UNREGISTERED", textOf(layoutOf(screen), "RegistrationInfo"));
}

TEST_F(PinDisplayingScreenTest, LeftToRightTheNameOfThePinComesFirst) {
    translate({{"TV_SID_PIN_CODE", "PIN"}});
    for (int orientation : {0, 2}) {
        platform().setOrientation(orientation);
        const PinDisplayingScreen screen("12345678", "", 1920, 1080);
        EXPECT_EQ((Strings{"PIN", " :  ", "12345678"}), textsOf(screen));
        EXPECT_EQ((Strings{"pinCodeKeyStyle", "pinCodeKeyStyle", "pinCodeValStyle"}),
                  stylesOf(screen));
    }
}

TEST_F(PinDisplayingScreenTest, APinWithMarkupIsShownAndSpokenAsItWasSent) {
    translate({{"TV_SID_PIN_CODE", "PIN"}});
    for (const auto& [orientation, place] : {std::pair(0, 2), std::pair(1, 0)}) {
        platform().setOrientation(orientation);
        const PinDisplayingScreen screen("12<b>&4;8", "", 1920, 1080);
        char* const shown =
            elm_entry_markup_to_utf8(textsOf(screen)[static_cast<std::size_t>(place)].c_str());
        EXPECT_STREQ("12<b>&4;8", shown);
        std::free(shown);
        EXPECT_EQ("PIN, 1, 2, <, b, >, &, 4, ;", Controller::m_currentLabelText);
    }
}

TEST_F(PinDisplayingScreenTest, RightToLeftThePinComesFirstAndTheNameHasADirectionMark) {
    translate({{"TV_SID_PIN_CODE", "PIN"}});
    platform().setOrientation(1);
    const PinDisplayingScreen screen("12345678", "", 1920, 1080);
    const Strings texts = textsOf(screen);
    ASSERT_EQ(3U, texts.size());
    EXPECT_EQ("12345678", texts[0]);
    EXPECT_EQ(" :  ", texts[1]);
    EXPECT_EQ("&#x200e;PIN", texts[2]);
    EXPECT_EQ((Strings{"pinCodeValStyle", "pinCodeKeyStyle", "pinCodeKeyStyle"}), stylesOf(screen));
}

TEST_F(PinDisplayingScreenTest, ThePinIsSpokenCharacterByCharacter) {
    translate({{"TV_SID_PIN_CODE", "PIN"}});
    Controller::m_wasLabelRead = true;
    const PinDisplayingScreen screen("12A45678", "", 1920, 1080);
    EXPECT_EQ("PIN, 1, 2, A, 4, 5, 6, 7, 8", Controller::m_currentLabelText);
    EXPECT_FALSE(Controller::m_wasLabelRead);
}

TEST_F(PinDisplayingScreenTest, AllOfNineCharactersAreShownAndEightAreSpoken) {
    const PinDisplayingScreen screen("123456789", "", 1920, 1080);
    EXPECT_EQ("123456789", textsOf(screen).at(2));
    EXPECT_EQ("TV_SID_PIN_CODE, 1, 2, 3, 4, 5, 6, 7, 8", Controller::m_currentLabelText);
}

TEST_F(PinDisplayingScreenTest, SevenCharactersThrowAndLeaveNothingBehind) {
    Controller::m_currentLabelText = "before";
    EXPECT_THROW(PinDisplayingScreen("1234567", "", 1920, 1080), std::out_of_range);
    EXPECT_THROW(PinDisplayingScreen("", "", 1920, 1080), std::out_of_range);
    EXPECT_EQ("before", Controller::m_currentLabelText);
    EXPECT_EQ(2, entered("~Screen"));
}

TEST_F(PinDisplayingScreenTest, WithoutAVersionItThrows) {
    const support::TemporaryFolder folder;
    ZoltConfig::deinitialize();
    ZoltConfig::initialize(
        folder.write("config.xml", "<c><i name=\"LayoutPath\">" + themeFolder() + "</i></c>"));
    ZoltConfig::load();
    EXPECT_THROW(PinDisplayingScreen("12345678", "", 1920, 1080), std::out_of_range);
}

}  // namespace
