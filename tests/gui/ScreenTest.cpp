// SPDX-License-Identifier: Apache-2.0
// What all screens share: window and layout, accessibility modes, key grabs, widgets and popups.
#include <filesystem>

#include <Ecore_Evas.h>
#include <gmock/gmock.h>

#include "common/Exception.h"
#include "common/ZoltConfig.h"
#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/LoadingPopup.h"
#include "gui/MessagePopup.h"
#include "gui/Screen.h"
#include "gui/ShownScreen.h"
#include "gui/Speech.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT;
using namespace ZOLT::GUI;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char highContrast[] = "db/menu/system/accessibility/highcontrast";

// A screen of a given group that makes its factories and the base's popup factory public.
class PlainScreen : public Screen {
  public:
    explicit PlainScreen(const char* group = "ShopListWindow", int width = 1920, int height = 1080,
                         const std::string& file = m_layoutName)
        : Screen("PlainScreen", file, group, width, height) {}
    ~PlainScreen() override = default;
    using Screen::createBasicMessagePopup;
    using Screen::m_layoutName;
};

class ScreenTest : public support::GuiFixture {
  protected:
    static std::string windowTitle(const Screen& screen) {
        return elm_win_title_get(windowOf(screen));
    }
    // The number of windows of the toolkit.
    static unsigned windows() {
        settle();
        Eina_List* all = ecore_evas_ecore_evas_list_get();
        const unsigned count = eina_list_count(all);
        eina_list_free(all);
        return count;
    }
};

void noteCall(void* data, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ++*static_cast<int*>(data);
}

void noteGone(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    ++*static_cast<int*>(data);
}

// Counts how often OBJECT is deleted.
void watch(Evas_Object* object, int* count) {
    evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, noteGone, count);
}

// The text of the exception that ACTION must throw.
template <typename Action>
std::string failureOf(Action action) {
    try {
        action();
    } catch (const Exception& error) {
        EXPECT_EQ(GENERIC_ERROR, error.code());
        return error.what();
    }
    return "nothing was thrown";
}

// --- window and layout

TEST_F(ScreenTest, HasAHiddenWindowOfTheScreensSizeFilledByItsLayout) {
    const PlainScreen screen("ShopListWindow", 1280, 720);
    EXPECT_EQ("PlainScreen", windowTitle(screen));
    EXPECT_FALSE(evas_object_visible_get(windowOf(screen)));
    EXPECT_EQ(1280, geometryOf(windowOf(screen)).width);
    EXPECT_EQ(720, geometryOf(windowOf(screen)).height);
    EXPECT_TRUE(elm_win_autodel_get(windowOf(screen)));
    EXPECT_TRUE(elm_win_focus_highlight_enabled_get(windowOf(screen)));
    EXPECT_TRUE(evas_object_visible_get(layoutOf(screen)));
    EXPECT_EQ("ShopListWindow", groupOf(layoutOf(screen)));
    EXPECT_EQ(1.0, elm_object_scale_get(layoutOf(screen)));
}

TEST_F(ScreenTest, ItsWindowIsKnownByTheProgramsName) {
    const PlainScreen screen;
    const char* name = nullptr;
    ecore_evas_name_class_get(ecore_evas_ecore_evas_get(evas_object_evas_get(windowOf(screen))),
                              &name, nullptr);
    EXPECT_STREQ("zoltgui", name);
}

TEST_F(ScreenTest, WithoutAWindowOrALayoutItThrowsTheSameAndLeavesNoWindow) {
    const unsigned before = windows();
    for (const char* refused : {"elm_win_util_standard_add", "elm_layout_add"}) {
        SCOPED_TRACE(refused);
        support::ToolkitWatch toolkit;
        toolkit.refuse(refused);
        EXPECT_EQ("Cannot allocate memory for window instance", failureOf([] { PlainScreen(); }));
        EXPECT_EQ(1U, toolkit.callsOf(refused).size());
        EXPECT_EQ(before, windows());
    }
    const PlainScreen screen;
    EXPECT_EQ(before + 1, windows());
}

TEST_F(ScreenTest, ShowMakesTheWindowVisible) {
    PlainScreen screen;
    screen.show();
    EXPECT_TRUE(evas_object_visible_get(windowOf(screen)));
}

TEST_F(ScreenTest, TheLayoutFileIsLookedForUnderTheConfiguredFolder) {
    EXPECT_EQ("gui.edj", PlainScreen::m_layoutName);
    const PlainScreen screen;
    const char* file = nullptr;
    elm_layout_file_get(layoutOf(screen), &file, nullptr);
    EXPECT_EQ(themeFolder() + "/gui.edj", file);
}

TEST_F(ScreenTest, AMissingLayoutFileGivesAWindowWithAnEmptyLayout) {
    configure("LayoutPath", "/nonexistent");
    const PlainScreen screen;
    EXPECT_NE(nullptr, windowOf(screen));
    EXPECT_NE(nullptr, layoutOf(screen));
    EXPECT_EQ(nullptr, partOf(layoutOf(screen), "selectBtn"));
}

TEST_F(ScreenTest, AMissingGroupGivesAWindowWithAnEmptyLayout) {
    const PlainScreen screen("NoSuchWindow");
    EXPECT_NE(nullptr, windowOf(screen));
    EXPECT_EQ("", textOf(layoutOf(screen), "title"));
}

TEST_F(ScreenTest, AMissingLayoutPathThrows) {
    ZoltConfig::deinitialize();
    EXPECT_THROW(PlainScreen(), std::out_of_range);
}

TEST_F(ScreenTest, TheDestructorDeletesLayoutAndWindow) {
    int gone = 0;
    {
        const PlainScreen screen;
        watch(windowOf(screen), &gone);
        watch(layoutOf(screen), &gone);
    }
    EXPECT_EQ(2, gone);
}

TEST_F(ScreenTest, TheDestructorDeletesThePopupThenTheLayoutThenTheWindow) {
    std::vector<std::string> order;
    {
        PlainScreen screen;
        const Popup* popup = screen.addMessagePopup("SID_OK");
        noteEvent(widgetOf(*popup), EVAS_CALLBACK_DEL, "popup", order);
        noteEvent(backgroundOf(*popup), EVAS_CALLBACK_DEL, "background", order);
        noteEvent(layoutOf(screen), EVAS_CALLBACK_DEL, "layout", order);
        noteEvent(windowOf(screen), EVAS_CALLBACK_DEL, "window", order);
    }
    EXPECT_THAT(order, ElementsAre("popup", "background", "layout", "window"));
    EXPECT_EQ(1, entered("~MessagePopup"));
}

TEST_F(ScreenTest, AWindowThatIsClosedFromOutsideClearsItsHandles) {
    PlainScreen screen;
    Popup* popup = screen.addMessagePopup("SID_OK");
    screen.show();
    settle();
    evas_object_del(windowOf(screen));
    settle();
    EXPECT_EQ(nullptr, windowOf(screen));
    EXPECT_EQ(nullptr, layoutOf(screen));
    EXPECT_EQ(nullptr, widgetOf(*popup));
    screen.show();
    screen.destroyPopup();
}

// --- accessibility modes

TEST_F(ScreenTest, EnlargedModeScalesTheLayoutAndReplacesTheWaitingGroup) {
    Controller::Enlarge = 1;
    const PlainScreen screen("WaitingWindow");
    EXPECT_EQ("WaitingWindow_Enlarge", groupOf(layoutOf(screen)));
    EXPECT_DOUBLE_EQ(1.2, elm_object_scale_get(layoutOf(screen)));
    EXPECT_TRUE(logged("Enlarge Mode ON"));
}

TEST_F(ScreenTest, EnlargedModeKeepsTheNamesOfAllOtherGroups) {
    Controller::Enlarge = 2;
    for (const char* group :
         {"MainMenuRegisteredWindow", "ShopListWindow", "PinDisplayingWindow"}) {
        const PlainScreen screen(group);
        EXPECT_EQ(group, groupOf(layoutOf(screen)));
        EXPECT_DOUBLE_EQ(1.2, elm_object_scale_get(layoutOf(screen)));
    }
}

TEST_F(ScreenTest, WithoutEnlargedModeTheWaitingGroupIsTheOrdinaryOne) {
    const PlainScreen screen("WaitingWindow");
    EXPECT_EQ("WaitingWindow", groupOf(layoutOf(screen)));
    EXPECT_FALSE(logged("Enlarge Mode ON"));
}

TEST_F(ScreenTest, HighContrastIsTheSettingsValueAndZeroWhenItCannotBeRead) {
    platform().setVconf(highContrast, 1);
    EXPECT_EQ(1, IsHighContrastMode());
    platform().setVconf(highContrast, 0);
    EXPECT_EQ(0, IsHighContrastMode());
    platform().setVconf(highContrast, 1);
    platform().answer("vconf_get_int", -1);
    EXPECT_EQ(0, IsHighContrastMode());
}

std::vector<std::string> contrastSignals(Evas_Object* layout) {
    std::vector<std::string> heard;
    elm_layout_signal_callback_add(
        layout, "WIN_CONTRAST_*", "",
        [](void* data, Evas_Object* /*object*/, const char* emission, const char* /*source*/) {
            static_cast<std::vector<std::string>*>(data)->push_back(emission);
        },
        &heard);
    edje_object_message_signal_process(elm_layout_edje_get(layout));
    return heard;
}

TEST_F(ScreenTest, HighContrastIsSignalledToTheLayoutInTwoSteps) {
    platform().setVconf(highContrast, 1);
    const PlainScreen screen;
    EXPECT_THAT(contrastSignals(layoutOf(screen)), ElementsAre("WIN_CONTRAST_1", "WIN_CONTRAST_2"));
    EXPECT_TRUE(logged("High Contrast Mode ON"));
}

TEST_F(ScreenTest, WithoutHighContrastTheLayoutGetsNoSignal) {
    platform().setVconf(highContrast, 0);
    const PlainScreen screen;
    EXPECT_THAT(contrastSignals(layoutOf(screen)), IsEmpty());
    EXPECT_FALSE(logged("High Contrast Mode ON"));
}

TEST_F(ScreenTest, APopupHasTheContrastOfItsOwnScreenAndNotThatOfTheNewest) {
    platform().setVconf(highContrast, 0);
    PlainScreen plain;
    platform().setVconf(highContrast, 1);
    PlainScreen contrasting;
    platform().setVconf(highContrast, 0);
    const PlainScreen newest;
    const support::ToolkitWatch watch;
    plain.addMessagePopup("text");
    EXPECT_THAT(watch.callsOf(R"(elm_layout_signal_emit("WIN_CONTRAST_1", ""))"), IsEmpty());
    const Evas_Object* const popup = widgetOf(*contrasting.addMessagePopup("text"));
    EXPECT_THAT(watch.callsOf(R"(elm_layout_signal_emit("WIN_CONTRAST_2", ""))"), Contains(popup));
}

TEST_F(ScreenTest, OnlyAnOrientationOfOneRunsRightToLeft) {
    platform().setOrientation(1);
    EXPECT_TRUE(PlainScreen().getIfMirrored());
    EXPECT_TRUE(elm_config_mirrored_get());
    for (int orientation : {0, 2, -1}) {
        platform().setOrientation(orientation);
        EXPECT_FALSE(PlainScreen().getIfMirrored()) << orientation;
        EXPECT_FALSE(elm_config_mirrored_get()) << orientation;
    }
}

// --- keys

TEST_F(ScreenTest, FiftyTwoKeysAreGrabbedInOrderAndNoBackKey) {
    const PlainScreen screen;
    const std::vector<std::string> expected = {"XF86Display",
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
    std::vector<std::string> grabbed;
    for (const support::KeyGrab& grab : platform().grabs()) {
        grabbed.push_back(grab.key);
        EXPECT_EQ(0x20000, grab.mode);
    }
    EXPECT_EQ(expected, grabbed);
    EXPECT_EQ(52U, grabbed.size());
}

TEST_F(ScreenTest, AKeyThatCannotBeGrabbedIsLoggedAndTheNextOnesAreTried) {
    announceWarning("Error caught during grabbing XF86Hdmi key");
    announceWarning("Error caught during grabbing XF86AudioDescription key");
    platform().setGrabResult("XF86Hdmi", -1);
    platform().setGrabResult("XF86AudioDescription", 1);
    const PlainScreen screen;
    EXPECT_EQ(52U, platform().grabs().size());
}

TEST_F(ScreenTest, TheReturnKeyOnTheWindowQuits) {
    PlainScreen screen;
    screen.show();
    activate(screen);
    EXPECT_TRUE(endsMainLoop([&screen] { feedKeyDown(windowOf(screen), "XF86Back"); }));
    EXPECT_EQ(1, entered("quitRequested"));
}

TEST_F(ScreenTest, OtherKeysOnTheWindowDoNothing) {
    PlainScreen screen;
    screen.show();
    activate(screen);
    for (const char* key : {"XF86Close", "Down", "Return", "XF86Red"}) {
        press(windowOf(screen), key);
    }
    EXPECT_EQ(4, entered("onKeyPress"));
    EXPECT_EQ(0, entered("quitRequested"));
}

TEST_F(ScreenTest, AKeyWithoutItsEventIsLoggedAndIgnored) {
    announceWarning("Incorrect callback call - no event info");
    PlainScreen screen;
    Screen::onKeyPress(&screen, nullptr, windowOf(screen), nullptr);
    EXPECT_EQ(0, entered("quitRequested"));
}

// --- the size report

TEST_F(ScreenTest, AChangeOfSizeLogsTheMinimumSizeOfTheLayout) {
    const PlainScreen screen;
    platform().clearLog();
    Screen::onSizeChanged(layoutOf(screen), layoutOf(screen), "size,changed", "");
    int width = 0;
    int height = 0;
    edje_object_size_min_calc(elm_layout_edje_get(layoutOf(screen)), &width, &height);
    EXPECT_TRUE(logged("Minimum size for current theme is " + std::to_string(width) + "x" +
                       std::to_string(height)));
}

TEST_F(ScreenTest, TheLayoutCallsBackForAChangeOfItsSize) {
    const PlainScreen screen;
    elm_layout_signal_emit(layoutOf(screen), "size,changed", "");
    edje_object_message_signal_process(elm_layout_edje_get(layoutOf(screen)));
    EXPECT_EQ(1, entered("onSizeChanged"));
}

TEST_F(ScreenTest, AChangeOfSizeWithoutALayoutIsLogged) {
    announceWarning("Could not retrieve layout");
    Screen::onSizeChanged(nullptr, nullptr, "size,changed", "");
}

// --- widgets

TEST_F(ScreenTest, ALabelHasItsStyleAndItsTextAndIsNotShown) {
    const PlainScreen screen;
    Evas_Object* label = Screen::createLabel(layoutOf(screen), "SID_SOME_TEXT", "subHeadingStyle");
    EXPECT_EQ("subHeadingStyle", styleOf(label));
    EXPECT_EQ("SID_SOME_TEXT", textOf(label));
    EXPECT_FALSE(evas_object_visible_get(label));
}

TEST_F(ScreenTest, ALabelIsTranslatedInTheProgramsOwnDomain) {
    translate({{"SID_SOME_TEXT", "some text"}});
    const PlainScreen screen;
    EXPECT_EQ("some text",
              textOf(Screen::createLabel(layoutOf(screen), "SID_SOME_TEXT", "subHeadingStyle")));
}

TEST_F(ScreenTest, AnIconHasItsName) {
    const PlainScreen screen;
    Evas_Object* button = elm_button_add(layoutOf(screen));
    elm_object_part_content_set(button, "icon", Screen::createIcon(button, "i_next"));
    EXPECT_EQ("i_next", iconOf(button));
}

TEST_F(ScreenTest, AnIconWithoutAParentIsNull) {
    EXPECT_EQ(nullptr, Screen::createIcon(nullptr, "i_next"));
}

TEST_F(ScreenTest, EveryOtherWidgetWithoutAParentThrows) {
    EXPECT_EQ("Cannot allocate memory for label instance",
              failureOf([] { Screen::createLabel(nullptr, "SID_OK", "default"); }));
    EXPECT_EQ("Cannot allocate memory for button instance", failureOf([] {
                  Screen::createButton(nullptr, "SID_OK", noteCall, nullptr, nullptr,
                                       "c_button_icontext");
              }));
    EXPECT_EQ("Cannot allocate memory for image instance",
              failureOf([] { Screen::createImage(nullptr, "file.png", 1, 1); }));
    EXPECT_EQ("Cannot allocate memory for progress bar instance",
              failureOf([] { Screen::createProgressAnimation(nullptr); }));
}

TEST_F(ScreenTest, AButtonFillsBothDirectionsAndIsNotShown) {
    const PlainScreen screen;
    Evas_Object* button = Screen::createButton(layoutOf(screen), "SID_OK", noteCall, nullptr,
                                               nullptr, "c_button_icontext");
    double x = 0;
    double y = 0;
    evas_object_size_hint_weight_get(button, &x, &y);
    EXPECT_EQ(std::make_pair(1.0, 1.0), std::make_pair(x, y));
    evas_object_size_hint_align_get(button, &x, &y);
    EXPECT_EQ(std::make_pair(-1.0, -1.0), std::make_pair(x, y));
    EXPECT_EQ(1080, minimumOf(button).width);
    EXPECT_EQ(720, minimumOf(button).height);
    EXPECT_EQ("c_button_icontext", styleOf(button));
    EXPECT_EQ("SID_OK", textOf(button));
    EXPECT_EQ("none", iconOf(button));
    EXPECT_FALSE(evas_object_visible_get(button));
}

TEST_F(ScreenTest, AButtonHasTheStyleThatItIsMadeWith) {
    const PlainScreen screen;
    EXPECT_EQ("default", styleOf(Screen::createButton(layoutOf(screen), "SID_OK", noteCall, nullptr,
                                                      nullptr, "default")));
}

TEST_F(ScreenTest, AButtonCallsBackWithItsData) {
    const PlainScreen screen;
    int calls = 0;
    Evas_Object* button = Screen::createButton(layoutOf(screen), "SID_OK", noteCall, &calls,
                                               iconName("i_next"), "c_button_icontext");
    evas_object_smart_callback_call(button, "clicked", nullptr);
    EXPECT_EQ(1, calls);
    EXPECT_EQ("i_next", iconOf(button));
}

TEST_F(ScreenTest, AButtonCallsBackForItsFocusAndForReleasedKeys) {
    PlainScreen screen;
    screen.addButton("singleBtn", "SID_OK", noteCall, nullptr, true, false);
    screen.addButton("prevBtn", "SID_OK", noteCall, nullptr, true, false);
    screen.show();
    settle();
    Evas_Object* button = partOf(layoutOf(screen), "singleBtn");
    platform().clearLog();
    elm_object_focus_set(button, EINA_TRUE);
    settle();
    EXPECT_EQ(1, entered("focusedItemCb"));
    elm_object_focus_set(partOf(layoutOf(screen), "prevBtn"), EINA_TRUE);
    settle();
    EXPECT_EQ(1, entered("unfocusedItemCb"));
    elm_object_focus_set(button, EINA_TRUE);
    settle();
    platform().clearLog();
    keyDown(button, "XF86Red");
    EXPECT_EQ(0, entered("onKeyPress", "Controller.cpp"));
    keyUp(button, "XF86Red");
    EXPECT_EQ(1, entered("onKeyPress", "Controller.cpp"));
}

TEST_F(ScreenTest, TheScreenReaderGetsTheTranslatedTextOfAButton) {
    translate({{"SID_OK", "Fine"}});
    const PlainScreen screen;
    Evas_Object* button = Screen::createButton(layoutOf(screen), "SID_OK", noteCall, nullptr,
                                               nullptr, "c_button_icontext");
    const support::SpeechBinding bound = support::speechOf(button);
    EXPECT_EQ(0, bound.type);
    EXPECT_EQ(&EventHandler::accessCallback, bound.callback);
    EXPECT_EQ("Fine", bound.data);
}

TEST_F(ScreenTest, AnImageHasItsSizeAndKeepsIt) {
    const PlainScreen screen;
    Evas_Object* image = Screen::createImage(layoutOf(screen), "/nonexistent.png", 40, 30);
    Eina_Bool up = EINA_TRUE;
    Eina_Bool down = EINA_TRUE;
    elm_image_resizable_get(image, &up, &down);
    EXPECT_FALSE(up || down);
    EXPECT_TRUE(elm_image_no_scale_get(image));
    EXPECT_TRUE(elm_image_aspect_fixed_get(image));
    EXPECT_EQ(40, geometryOf(image).width);
    EXPECT_EQ(30, geometryOf(image).height);
    EXPECT_FALSE(evas_object_visible_get(image));
}

TEST_F(ScreenTest, AnImageHasItsFile) {
    const support::TemporaryFolder folder;
    const std::string file = folder.write("dots.ppm", "P6 2 1 255\nabcdef");
    const PlainScreen screen;
    Evas_Object* image = Screen::createImage(layoutOf(screen), file.c_str(), 40, 30);
    const char* shown = nullptr;
    const char* group = "some group";
    elm_image_file_get(image, &shown, &group);
    EXPECT_STREQ(file.c_str(), shown);
    EXPECT_EQ(nullptr, group);
    int width = 0;
    int height = 0;
    elm_image_object_size_get(image, &width, &height);
    EXPECT_EQ(std::make_pair(2, 1), std::make_pair(width, height));
}

TEST_F(ScreenTest, AProgressAnimationIsStartedHasItsStyleAndIsNotShown) {
    const support::ToolkitWatch toolkit;
    const PlainScreen screen;
    Evas_Object* progress = Screen::createProgressAnimation(layoutOf(screen));
    EXPECT_THAT(toolkit.callsOf("elm_progressbar_pulse"), ElementsAre(progress));
    double x = 0;
    double y = 0;
    evas_object_size_hint_weight_get(progress, &x, &y);
    EXPECT_EQ(std::make_pair(1.0, 1.0), std::make_pair(x, y));
    evas_object_size_hint_align_get(progress, &x, &y);
    EXPECT_EQ(std::make_pair(-1.0, 0.5), std::make_pair(x, y));
    EXPECT_EQ("c_progress_circle_normal", styleOf(progress));
    EXPECT_FALSE(evas_object_visible_get(progress));
}

// --- buttons of the layout

TEST_F(ScreenTest, TheIconOfAButtonFollowsItsTextAndTheReadingDirection) {
    struct Row {
        const char* text;
        const char* leftToRight;
        const char* rightToLeft;
    };
    const Row rows[] = {{"SID_OK", "i_ok_done_allow", "i_ok_done_allow"},
                        {"SID_PREVIOUS", "i_previous", "i_next"},
                        {"SID_NEXT", "i_next", "i_previous"},
                        {"SID_REGISTER", "i_allow", "i_allow"},
                        {"SID_CANCEL", "i_close_cancel", "i_close_cancel"}};
    for (int orientation : {0, 1}) {
        platform().setOrientation(orientation);
        PlainScreen screen;
        for (const Row& row : rows) {
            screen.addButton("singleBtn", row.text, noteCall, nullptr, true, false);
            Evas_Object* button = partOf(layoutOf(screen), "singleBtn");
            EXPECT_EQ(row.text, textOf(button));
            EXPECT_EQ("c_button_icontext", styleOf(button));
            EXPECT_EQ(orientation == 1 ? row.rightToLeft : row.leftToRight, iconOf(button));
            EXPECT_TRUE(evas_object_visible_get(button));
        }
    }
}

TEST_F(ScreenTest, AButtonInAPartCallsBackWithItsData) {
    PlainScreen screen;
    int calls = 0;
    screen.addButton("singleBtn", "SID_OK", noteCall, &calls, true, false);
    evas_object_smart_callback_call(partOf(layoutOf(screen), "singleBtn"), "clicked", nullptr);
    EXPECT_EQ(1, calls);
}

TEST_F(ScreenTest, AButtonOfAnotherTextGetsAnIconWithAnEmptyName) {
    PlainScreen screen;
    screen.addButton("singleBtn", "SID_SOMETHING_ELSE", noteCall, nullptr, true, false);
    EXPECT_EQ("", iconOf(partOf(layoutOf(screen), "singleBtn")));
}

TEST_F(ScreenTest, AButtonTakesTheFocusOnlyIfItMayAndShould) {
    struct Row {
        bool focusable;
        bool focused;
    };
    for (const Row& row :
         {Row{true, true}, Row{true, false}, Row{false, true}, Row{false, false}}) {
        PlainScreen screen;
        screen.addButton("prevBtn", "SID_PREVIOUS", noteCall, nullptr, true, true);
        screen.addButton("nextBtn", "SID_NEXT", noteCall, nullptr, row.focusable, row.focused);
        screen.show();
        settle();
        Evas_Object* button = partOf(layoutOf(screen), "nextBtn");
        EXPECT_EQ(row.focusable && row.focused, focusedIn(button) == button)
            << row.focusable << row.focused;
        EXPECT_EQ(row.focusable, takesFocus(button)) << row.focused;
    }
}

TEST_F(ScreenTest, AButtonThatCannotTakeTheFocusLooksSo) {
    PlainScreen screen;
    screen.addButton("prevBtn", "SID_PREVIOUS", noteCall, nullptr, true, false);
    screen.addButton("nextBtn", "SID_NEXT", noteCall, nullptr, false, false);
    const auto look = [&](const char* part) {
        return std::string(edje_object_part_state_get(
            elm_layout_edje_get(partOf(layoutOf(screen), part)), "elm.text", nullptr));
    };
    EXPECT_TRUE(turnUntil([&] { return look("nextBtn") == "blocked"; }));
    EXPECT_EQ("default", look("prevBtn"));
}

TEST_F(ScreenTest, ANewButtonInAPartReplacesTheOldOne) {
    PlainScreen screen;
    screen.addButton("singleBtn", "SID_NEXT", noteCall, nullptr, true, true);
    int gone = 0;
    watch(partOf(layoutOf(screen), "singleBtn"), &gone);
    screen.addButton("singleBtn", "SID_REGISTER", noteCall, nullptr, true, true);
    EXPECT_EQ(1, gone);
    EXPECT_EQ("SID_REGISTER", textOf(partOf(layoutOf(screen), "singleBtn")));
}

TEST_F(ScreenTest, TheTextOfAButtonCanBeReplacedInItsPlace) {
    translate({{"SID_NEXT", "Next"}});
    PlainScreen screen;
    screen.addButton("singleBtn", "SID_OK", noteCall, nullptr, true, true);
    Evas_Object* button = partOf(layoutOf(screen), "singleBtn");
    screen.modifyButtonText("singleBtn", "SID_NEXT");
    EXPECT_EQ(button, partOf(layoutOf(screen), "singleBtn"));
    EXPECT_EQ("Next", textOf(button));
    screen.modifyButtonText("singleBtn", "A shop's own name");
    EXPECT_EQ("A shop's own name", textOf(button));
}

// --- popups

TEST_F(ScreenTest, WithoutAPopupDestroyingItDoesNothing) {
    PlainScreen screen;
    screen.destroyPopup();
    screen.destroyPopup();
    EXPECT_EQ(nullptr, screen.getPopup());
}

TEST_F(ScreenTest, DestroyingThePopupRemovesItsWidgetsAndKeepsTheObject) {
    PlainScreen screen;
    Popup* popup = screen.addMessagePopup("SID_OK");
    int gone = 0;
    watch(widgetOf(*popup), &gone);
    screen.destroyPopup();
    EXPECT_EQ(nullptr, screen.getPopup());
    EXPECT_EQ(1, gone);
    EXPECT_EQ(1, popup->getButtonCount());
    EXPECT_EQ(0, entered("~MessagePopup"));
    screen.destroyPopup();
}

TEST_F(ScreenTest, ABasicPopupIsReturnedAndNotKept) {
    PlainScreen screen;
    const std::unique_ptr<MessagePopup> popup(screen.createBasicMessagePopup(
        "SID_SOME_TEXT", 0.0, EventHandler::quitRequested, EventHandler::quitRequested));
    EXPECT_EQ(nullptr, screen.getPopup());
    EXPECT_EQ(0.0, elm_popup_timeout_get(widgetOf(*popup)));
    EXPECT_EQ(0, entered("setTimeout"));
}

struct PopupRow {
    const char* name;
    Popup* (*make)(Screen& screen);
    const char* text;
    double timeout;
    std::vector<std::string> buttons;
    std::vector<std::string> icons;
};

std::ostream& operator<<(std::ostream& stream, const PopupRow& row) {
    return stream << row.name;
}

class ScreenPopupTest : public ScreenTest, public ::testing::WithParamInterface<PopupRow> {};

TEST_P(ScreenPopupTest, IsMadeHiddenWithItsTextButtonsAndTimeout) {
    for (int width : {1920, 1280, 3840}) {
        PlainScreen screen("ShopListWindow", width, width * 9 / 16);
        platform().clearLog();
        Popup* popup = GetParam().make(screen);
        EXPECT_EQ(GetParam().timeout > 0 ? 1 : 0, entered("setTimeout"));
        EXPECT_EQ(popup, screen.getPopup());
        EXPECT_FALSE(popup->getVisible());
        EXPECT_FALSE(evas_object_visible_get(widgetOf(*popup)));
        EXPECT_EQ("c_popup_bottom", styleOf(widgetOf(*popup)));
        EXPECT_EQ("COM_SID_ZOLT_CONTENT", textOf(widgetOf(*popup), "title,text"));
        EXPECT_EQ(GetParam().text, Controller::m_currentLabelText);
        Evas_Object* content = partOf(widgetOf(*popup));
        if (dynamic_cast<LoadingPopup*>(popup) != nullptr) {
            EXPECT_EQ("popup/LoadingPopup", styleOf(elm_table_child_get(content, 2, 0)));
        } else {
            EXPECT_EQ("popup/c_popup_bottom", styleOf(content));
        }
        EXPECT_EQ(GetParam().timeout, elm_popup_timeout_get(widgetOf(*popup)));
        ASSERT_EQ(static_cast<int>(GetParam().buttons.size()), popup->getButtonCount());
        for (std::size_t index = 0; index < GetParam().buttons.size(); ++index) {
            Evas_Object* button =
                partOf(widgetOf(*popup), ("button" + std::to_string(index + 1)).c_str());
            EXPECT_EQ(GetParam().buttons[index], textOf(button));
            EXPECT_EQ(GetParam().icons[index], iconOf(button));
            EXPECT_EQ("c_button_icontext", styleOf(button));
        }
    }
}

const std::vector<std::string> ok = {"SID_OK"};
const std::vector<std::string> okIcon = {"i_ok_done_allow"};
const std::vector<std::string> okCancel = {"SID_OK", "SID_CANCEL"};
const std::vector<std::string> okCancelIcons = {"i_ok_done_allow", "i_close_cancel"};

Popup* failure(Screen& screen, int reason) {
    return screen.addNetworkFailurePopup(EVENT_CLOSE_GUI,
                                         static_cast<ZOLTEventsReasonType>(reason));
}

INSTANTIATE_TEST_SUITE_P(
    Popups, ScreenPopupTest,
    ::testing::Values(
        PopupRow{"Message", [](Screen& s) { return s.addMessagePopup("SID_ANY"); }, "SID_ANY", 0.0,
                 ok, okIcon},
        PopupRow{"Unstable", [](Screen& s) { return failure(s, 5); },
                 "SID_INTERNET_CONNECTION_NOT_STABLE_MSG", 60.0, ok, okIcon},
        PopupRow{"NoNetwork", [](Screen& s) { return failure(s, 6); },
                 "COM_CANNOT_CONNECT_TO_THE_NETWORK", 60.0, ok, okIcon},
        PopupRow{"NoServer", [](Screen& s) { return failure(s, 7); },
                 "COM_CANNOT_CONNECT_TO_SERVER", 60.0, ok, okIcon},
        PopupRow{"PinExpired", [](Screen& s) { return failure(s, 8); },
                 "COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED", 60.0, ok, okIcon},
        PopupRow{"NotFound", [](Screen& s) { return failure(s, 9); },
                 "TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK", 60.0, ok,
                 okIcon},
        PopupRow{"Loading",
                 [](Screen& s) { return s.addLoadingPopup("SID_ANY"); },
                 "SID_ANY",
                 0.0,
                 {},
                 {}},
        PopupRow{"Deregistration", [](Screen& s) { return s.addDeregistrationPopup(); },
                 "TV_SID_ARE_YOU_SURE_YOU_WANT_TO_DEREGISTER", 0.0, okCancel, okCancelIcons},
        PopupRow{"Deletion", [](Screen& s) { return s.RegistrationInfoDeletionPopup(); },
                 "TV_SID_SURE_CHANGE_REGISTRATION_INFO_DELETED", 0.0, okCancel, okCancelIcons},
        PopupRow{"Completion", [](Screen& s) { return s.addCompletionPopup(); },
                 "COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS", 0.0, ok, okIcon}),
    [](const ::testing::TestParamInfo<PopupRow>& row) { return std::string(row.param.name); });

TEST_F(ScreenTest, AFailureOfAnUnknownReasonIsLoggedAndShownAsAnUnstableConnection) {
    announceWarning("Cannot recognize the reason type", 2);
    for (int reason : {0, 12}) {
        PlainScreen screen;
        const Popup* popup = failure(screen, reason);
        EXPECT_EQ("SID_INTERNET_CONNECTION_NOT_STABLE_MSG", Controller::m_currentLabelText);
        EXPECT_EQ(60.0, elm_popup_timeout_get(widgetOf(*popup)));
    }
}

TEST_F(ScreenTest, PopupsHaveTheirOwnClasses) {
    PlainScreen screen;
    EXPECT_NE(nullptr, dynamic_cast<LoadingPopup*>(screen.addLoadingPopup("SID_ANY")));
    screen.destroyPopup();
    EXPECT_NE(nullptr, dynamic_cast<MessagePopup*>(screen.addMessagePopup("SID_ANY")));
}

TEST_F(ScreenTest, TheButtonsOfPopupsAreBoundToTheirCallbacks) {
    auto* screen = new PlainScreen;
    const support::ShownScreen flow(screen);
    struct Row {
        Popup* (*make)(Screen& screen);
        const char* part;
        const char* callback;
    };
    const Row rows[] = {
        {[](Screen& s) { return s.addMessagePopup("SID_ANY"); }, "button1", "quitRequested"},
        {[](Screen& s) { return failure(s, 6); }, "button1", "quitRequested"},
        {[](Screen& s) { return s.addCompletionPopup(); }, "button1", "quitRequested"},
        {[](Screen& s) { return s.addDeregistrationPopup(); }, "button2", "popupHideRequested"},
        {[](Screen& s) { return s.RegistrationInfoDeletionPopup(); }, "button2",
         "popupHideRequested"}};
    for (const Row& row : rows) {
        const Popup* popup = row.make(*screen);
        platform().clearLog();
        evas_object_smart_callback_call(partOf(widgetOf(*popup), row.part), "clicked", nullptr);
        EXPECT_EQ(1, entered(row.callback)) << row.callback;
        screen->destroyPopup();
    }
}

TEST_F(ScreenTest, AFailurePopupQuitsAtItsTimeout) {
    PlainScreen screen;
    const Popup* popup = failure(screen, 7);
    EXPECT_TRUE(endsMainLoop(
        [popup] { evas_object_smart_callback_call(widgetOf(*popup), "timeout", nullptr); }));
    EXPECT_EQ(1, entered("quitRequested"));
}

TEST_F(ScreenTest, AnEarlierPopupIsReplacedAndNotDestroyed) {
    PlainScreen screen;
    Popup* first = screen.addMessagePopup("SID_ANY");
    Popup* second = screen.addMessagePopup("SID_ANY");
    EXPECT_EQ(second, screen.getPopup());
    EXPECT_NE(nullptr, widgetOf(*first));
}

TEST_F(ScreenTest, APopupWhoseButtonCannotBeMadeIsDeleted) {
    PlainScreen screen;
    support::ToolkitWatch toolkit;
    toolkit.refuse("elm_button_add");
    EXPECT_THROW(screen.addCompletionPopup(), Exception);
    EXPECT_EQ(1, entered("~MessagePopup"));
    EXPECT_THROW(screen.addDeregistrationPopup(), Exception);
    EXPECT_EQ(2, entered("~MessagePopup"));
    EXPECT_EQ(nullptr, screen.getPopup());
}

// --- the theme

TEST_F(ScreenTest, TheThemesStylesAreAddedForTheWholeProcess) {
    const support::TemporaryFolder folder;
    const std::string file = folder.file("gui.edj");
    std::filesystem::create_symlink(themeFolder() + "/gui.edj", file);
    configure("LayoutPath", folder.path());
    Screen::loadLayouts();
    std::vector<std::string> overlays;
    for (const Eina_List* place = elm_theme_overlay_list_get(nullptr); place != nullptr;
         place = eina_list_next(place)) {
        overlays.emplace_back(static_cast<const char*>(eina_list_data_get(place)));
    }
    EXPECT_THAT(overlays, ::testing::Contains(file));
    elm_theme_overlay_del(nullptr, file.c_str());
}

}  // namespace
