// SPDX-License-Identifier: Apache-2.0
// The description of the set and the interfaces that answer from it.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PrivateSet.h"
#include "factory_data.h"
#include "host/description/Description.h"
#include "runtime_info.h"
#include "system_info.h"
#include "system_settings.h"
#include "time_util.h"
#include "ui_orientation.h"
#include "usb.h"

namespace platform_test {

using host::Field;

class Description : public PrivateSet {
  protected:
    static std::string released(char* text) {
        const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
        return text != nullptr ? text : "(null)";
    }

    static std::string runtime(runtime_info_key_e key) {
        char* text = nullptr;
        EXPECT_EQ(runtime_info_get_value_string(key, &text), RUNTIME_INFO_ERROR_NONE);
        return released(text);
    }

    // Why VALUE is not written; empty when it is.
    static std::string refusal(Field field, const std::string& value) {
        try {
            host::Description::write(field, value);
        } catch (const std::runtime_error& failure) {
            return failure.what();
        }
        return "";
    }

    static int screen(system_info_key_e key) {
        int value = -1;
        EXPECT_EQ(system_info_get_value_int(key, &value), SYSTEM_INFO_ERROR_NONE);
        return value;
    }
};

TEST_F(Description, AnAbsentFileIsAGoodSet) {
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1920);
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_HEIGHT), 1080);
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_SCREEN_WIDTH), 1920);
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_SCREEN_HEIGHT), 1080);
    EXPECT_EQ(runtime(RUNTIME_INFO_KEY_LANGUAGE), "en_US.utf8");
    EXPECT_EQ(runtime(RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE), "en_US.utf8");
    EXPECT_EQ(ua_UI_orientation_get(), 0);
    EXPECT_EQ(log(), "");
}

TEST_F(Description, GivesWhatTheFileSays) {
    describe(
        "[Screen]\nWidth=1280\nHeight=720\n[Language]\nLanguage=ko_KR.utf8\n"
        "MenuLanguage=ar_EG.utf8\n[Set]\nCountry=KR\nModel=M 1\nUseMode=2\n");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1280);
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_HEIGHT), 720);
    EXPECT_EQ(runtime(RUNTIME_INFO_KEY_LANGUAGE), "ko_KR.utf8");
    EXPECT_EQ(runtime(RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE), "ar_EG.utf8");
    int mode = -1;
    EXPECT_EQ(runtime_info_get_value_int(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, &mode), 0);
    EXPECT_EQ(mode, 2);
    char* text = nullptr;
    EXPECT_EQ(system_info_get_value_string(SYSTEM_INFO_KEY_MODEL, &text), 0);
    EXPECT_EQ(released(text), "M 1");
    EXPECT_EQ(
        system_settings_get_value_string(SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE, &text),
        0);
    EXPECT_EQ(released(text), "KR");
}

TEST_F(Description, TheEnvironmentNamesAnotherFile) {
    support::writeFile(file("small.ini"), "[Screen]\nWidth=640\n");
    setenv("VIRTUAL_SET_FILE", "small.ini", 1);
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 640);
    unsetenv("VIRTUAL_SET_FILE");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1920);
}

TEST_F(Description, ANewVersionOfTheFileCountsAtOnce) {
    describe("[Screen]\nWidth=1280\n");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1280);
    describe("[Screen]\nWidth=640\n");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 640);
}

TEST_F(Description, ABadValueIsLoggedAndCountsAsAbsent) {
    describe("[Screen]\nWidth=wide\n[Language]\nLanguage=\nOrientation=up\n");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1920);
    EXPECT_EQ(runtime(RUNTIME_INFO_KEY_LANGUAGE), "en_US.utf8");
    EXPECT_NE(log().find("[Screen] Width=wide is not a number from 1 to 16384; 1920 is used"),
              std::string::npos);
    EXPECT_NE(log().find("Orientation=up is not one of auto|ltr|rtl"), std::string::npos);
}

TEST_F(Description, AnUnknownKeyIsLogged) {
    describe("[Screen]\nDepth=3\n");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1920);
    EXPECT_NE(log().find("[Screen] Depth is an unknown key, ignored"), std::string::npos);
}

TEST_F(Description, ABrokenFileLeavesTheValuesAsTheyWere) {
    describe("[Screen]\nWidth=1280\n");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1280);
    describe("this is no key file");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1280);
    EXPECT_NE(log().find("cannot be read, its values stay as they were"), std::string::npos);
}

TEST_F(Description, WritingAValueKeepsTheRestOfTheFile) {
    describe("# mine\n[Screen]\nWidth=1280\n");
    host::Description::write(Field::COUNTRY, "EG");
    EXPECT_EQ(host::Description::text(Field::COUNTRY), "EG");
    EXPECT_EQ(screen(SYSTEM_INFO_KEY_PANEL_WIDTH), 1280);
    EXPECT_NE(contentsOf(file("set.ini")).find("# mine"), std::string::npos);
}

TEST_F(Description, WritingAValueLeavesWhatCannotBeReadAsItIs) {
    // A loop of links cannot be read by any user, not even by root.
    std::filesystem::create_symlink("set.ini", file("set.ini"));
    EXPECT_NE(refusal(Field::COUNTRY, "EG"), "");
    EXPECT_TRUE(std::filesystem::is_symlink(file("set.ini")));
}

TEST_F(Description, TheReadingDirectionFollowsTheLanguage) {
    for (const char* language : {"ar_EG.utf8", "fa_IR.utf8", "he_IL.utf8", "ur_PK.utf8", "ar"}) {
        describe(std::string("[Language]\nLanguage=") + language + "\n");
        EXPECT_EQ(ua_UI_orientation_get(), 1) << language;
    }
    for (const char* language : {"en_US.utf8", "ko_KR.utf8", "arn_CL.utf8"}) {
        describe(std::string("[Language]\nLanguage=") + language + "\n");
        EXPECT_EQ(ua_UI_orientation_get(), 0) << language;
    }
}

TEST_F(Description, AnExplicitReadingDirectionWins) {
    describe("[Language]\nLanguage=ar_EG.utf8\nOrientation=ltr\n");
    EXPECT_EQ(ua_UI_orientation_get(), 0);
    describe("[Language]\nLanguage=en_US.utf8\nOrientation=rtl\n");
    EXPECT_EQ(ua_UI_orientation_get(), 1);
}

TEST_F(Description, UnknownKeysAreRefused) {
    int number = 0;
    char* text = nullptr;
    const auto strange = static_cast<runtime_info_key_e>(190);
    EXPECT_EQ(runtime_info_get_value_int(strange, &number), RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(runtime_info_get_value_string(strange, &text), RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(runtime_info_get_value_string(RUNTIME_INFO_KEY_LANGUAGE, nullptr),
              RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(runtime_info_get_value_int(RUNTIME_INFO_KEY_LANGUAGE, &number),
              RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(runtime_info_set_changed_cb(
                  strange, [](runtime_info_key_e, void*) {}, nullptr),
              RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(runtime_info_unset_changed_cb(strange), RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(system_info_get_value_int(SYSTEM_INFO_KEY_MODEL, &number),
              SYSTEM_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(system_info_get_value_string(SYSTEM_INFO_KEY_PANEL_WIDTH, &text),
              SYSTEM_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(system_settings_get_value_string(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, &text),
              SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(
        system_settings_set_value_int(SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE, number),
        SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER);
}

TEST_F(Description, SettingTheUseModeChangesTheUseMode) {
    EXPECT_EQ(system_settings_set_value_int(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 0), 0);
    int mode = -1;
    EXPECT_EQ(runtime_info_get_value_int(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, &mode), 0);
    EXPECT_EQ(mode, 0);
}

TEST_F(Description, AUseModeThatDoesNotExistIsAnError) {
    EXPECT_EQ(system_settings_set_value_int(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, -1),
              SYSTEM_SETTINGS_ERROR_IO_ERROR);
}

TEST_F(Description, TheFactoryRecordTellsTheServer) {
    std::vector<unsigned char> record(FACTORY_DATA_RECORD_SIZE, 0xff);
    std::int32_t type = -1;
    EXPECT_EQ(GetData(FACTORY_DATA_SERVER_TYPE, record.data()), FACTORY_DATA_TYPE_SERVER_RECORD);
    std::memcpy(&type, record.data(), sizeof type);
    EXPECT_EQ(type, 0);
    describe("[Set]\nServerType=development\n");
    EXPECT_EQ(GetData(FACTORY_DATA_SERVER_TYPE, record.data()), FACTORY_DATA_TYPE_SERVER_RECORD);
    std::memcpy(&type, record.data(), sizeof type);
    EXPECT_NE(type, 0);
    EXPECT_LT(GetData(1, record.data()), 0);
    EXPECT_LT(GetData(FACTORY_DATA_SERVER_TYPE, nullptr), 0);
}

TEST_F(Description, UsbStorageIsTheListOfItsFolders) {
    describe("[Usb]\nStorage=/media/one;/media/two\n");
    EXPECT_EQ(usb_get_connected_device_number(USB_DEVICE_CLASS_MASS_STORAGE), 2);
    EXPECT_EQ(usb_get_connected_device_number(3), 0);
    usb_device_list_h list = nullptr;
    ASSERT_EQ(usb_device_get_device_list(USB_DEVICE_CLASS_MASS_STORAGE, &list), 0);
    std::vector<std::string> paths;
    for (usb_device_h device = usb_device_list_get_first(list); device != nullptr;
         device = usb_device_list_get_next(list)) {
        paths.emplace_back(usb_device_get_mountpath(device));
    }
    EXPECT_EQ(paths, (std::vector<std::string>{"/media/one", "/media/two"}));
    EXPECT_EQ(usb_device_free_device_list(list), 0);
}

TEST_F(Description, NoUsbStorageIsAnEmptyList) {
    EXPECT_EQ(usb_get_connected_device_number(USB_DEVICE_CLASS_MASS_STORAGE), 0);
    usb_device_list_h list = nullptr;
    ASSERT_EQ(usb_device_get_device_list(USB_DEVICE_CLASS_MASS_STORAGE, &list), 0);
    EXPECT_EQ(usb_device_list_get_first(list), nullptr);
    EXPECT_EQ(usb_device_list_get_next(list), nullptr);
    EXPECT_EQ(usb_device_free_device_list(list), 0);
    EXPECT_NE(usb_device_free_device_list(nullptr), 0);
}

class Clock : public Description {
  protected:
    Clock() { setZone("XST-5:30"); }
    ~Clock() override {
        unsetenv("TZ");
        tzset();
    }
    static void setZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
};

TEST_F(Clock, GivesLocalTimeShiftedByTheOffset) {
    constexpr time_t zone = 5 * 3600 + 1800;
    EXPECT_NEAR(static_cast<double>(CTimeUtil::GetCurrentTime()),
                static_cast<double>(time(nullptr) + zone), 30);
    describe("[Set]\nClockOffset=-86400\n");
    EXPECT_NEAR(static_cast<double>(CTimeUtil::GetCurrentTime()),
                static_cast<double>(time(nullptr) + zone - 86400), 30);
}

TEST_F(Clock, TurnsLocalTimeIntoUtcAcrossADay) {
    const time_t local = 1700010000 / 86400 * 86400 + 3600;  // one in the morning
    tm parts{};
    CTimeUtil::Unsigned_gmtime_r(&local, &parts);
    EXPECT_EQ(parts.tm_hour, 1);
    const int day = parts.tm_yday;
    CTimeUtil::ConvertToUTCTime(&parts);
    EXPECT_EQ(parts.tm_hour, 19);
    EXPECT_EQ(parts.tm_min, 30);
    EXPECT_EQ(parts.tm_yday, day - 1);
}

}  // namespace platform_test
