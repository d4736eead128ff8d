// SPDX-License-Identifier: Apache-2.0
// Settings by key, kept across processes, and notices of their changes.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "PrivateSet.h"
#include "runtime_info.h"
#include "vconf.h"

namespace platform_test {

namespace {

constexpr const char* COUNTER = "memory/zolt/zolt_screensaver_blocking";
constexpr const char* ZOOM = "db/menu/system/accessibility/focuszoom";
constexpr const char* CONTRAST = "db/menu/system/accessibility/highcontrast";

int s_notices = 0;
void* s_data = nullptr;

void count(keynode_t*, void* data) {
    ++s_notices;
    s_data = data;
}

void countRuntime(runtime_info_key_e, void* data) {
    ++s_notices;
    s_data = data;
}

}  // namespace

class Vconf : public PrivateSet {
  protected:
    Vconf() {
        s_notices = 0;
        s_data = nullptr;
    }
    ~Vconf() override {
        for (const char* key : {COUNTER, ZOOM, CONTRAST, "db/x", "db/comss/duid"}) {
            vconf_ignore_key_changed(key, count);
        }
    }

    // Another process of the same set.
    static int otherProcess(const std::string& folder, const std::string& key, int value) {
        const support::ProgramOptions options{"", {{"VIRTUAL_SET_DIR", folder}}, ""};
        return support::runProgram({PLATFORM_PROBE, "vconf", key, std::to_string(value)}, options)
            .status;
    }
};

TEST_F(Vconf, AccessibilityComesFromTheDescription) {
    int value = -1;
    EXPECT_EQ(vconf_get_int(ZOOM, &value), 0);
    EXPECT_EQ(value, 0);
    describe("[Accessibility]\nFocusZoom=1\nHighContrast=2\n");
    EXPECT_EQ(vconf_get_int(ZOOM, &value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(vconf_get_int(CONTRAST, &value), 0);
    EXPECT_EQ(value, 2);
}

TEST_F(Vconf, TheDeviceIdComesFromTheDescription) {
    describe("[Set]\nDeviceId=ABC\n");
    const std::unique_ptr<char, decltype(&std::free)> text(vconf_get_str("db/comss/duid"),
                                                           &std::free);
    EXPECT_STREQ(text.get(), "ABC");
}

TEST_F(Vconf, TheScreensaverCounterStartsAtZero) {
    int value = -1;
    EXPECT_EQ(vconf_get_int(COUNTER, &value), 0);
    EXPECT_EQ(value, 0);
}

TEST_F(Vconf, AnAbsentKeyFailsAndLeavesTheValueAlone) {
    int value = -1;
    EXPECT_NE(vconf_get_int("db/nothing", &value), 0);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(vconf_get_str("db/nothing"), nullptr);
    EXPECT_NE(vconf_get_int(nullptr, &value), 0);
    EXPECT_NE(vconf_set_int(nullptr, 1), 0);
}

TEST_F(Vconf, ATextIsNoNumber) {
    describe("[Set]\nDeviceId=12x\n");
    int value = -1;
    EXPECT_NE(vconf_get_int("db/comss/duid", &value), 0);
    EXPECT_EQ(value, -1);
}

TEST_F(Vconf, AWrittenValueIsKeptForOtherProcesses) {
    ASSERT_EQ(vconf_set_int("db/x", 7), 0);
    EXPECT_EQ(otherProcess(folder(), "db/x", 8), 7);  // returns the previous value
    int value = -1;
    EXPECT_EQ(vconf_get_int("db/x", &value), 0);
    EXPECT_EQ(value, 8);
}

TEST_F(Vconf, WritersOfDifferentKeysDoNotLoseEachOthersValues) {
    std::vector<std::thread> writers;
    writers.reserve(4);
    for (int writer = 0; writer < 4; ++writer) {
        writers.emplace_back([writer] {
            for (int number = 0; number < 50; ++number) {
                const std::string key =
                    "db/w" + std::to_string(writer) + "/" + std::to_string(number);
                vconf_set_int(key.c_str(), number);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    for (int writer = 0; writer < 4; ++writer) {
        for (int number = 0; number < 50; ++number) {
            const std::string key = "db/w" + std::to_string(writer) + "/" + std::to_string(number);
            int value = -1;
            EXPECT_EQ(vconf_get_int(key.c_str(), &value), 0) << key;
            EXPECT_EQ(value, number) << key;
        }
    }
}

TEST_F(Vconf, AWrittenDescribedValueChangesTheDescription) {
    ASSERT_EQ(vconf_set_int(ZOOM, 1), 0);
    EXPECT_NE(contentsOf(file("set.ini")).find("FocusZoom=1"), std::string::npos);
    EXPECT_NE(vconf_set_int(ZOOM, -5), 0);
}

TEST_F(Vconf, ABrokenFileOfKeptValuesIsReplaced) {
    support::writeFile(file("vconf.ini"), "broken");
    int value = -1;
    EXPECT_NE(vconf_get_int("db/x", &value), 0);
    ASSERT_EQ(vconf_set_int("db/x", 1), 0);
    EXPECT_EQ(vconf_get_int("db/x", &value), 0);
    EXPECT_EQ(value, 1);
}

TEST_F(Vconf, AFolderThatCannotBeWrittenIsAnError) {
    setenv("VIRTUAL_SET_DIR", (folder() + "/missing").c_str(), 1);
    EXPECT_NE(vconf_set_int("db/x", 1), 0);
    setenv("VIRTUAL_SET_DIR", folder().c_str(), 1);
}

TEST_F(Vconf, AChangeOfTheDescriptionIsNoticed) {
    int mark = 0;
    ASSERT_EQ(vconf_notify_key_changed(ZOOM, count, &mark), 0);
    describe("[Accessibility]\nFocusZoom=1\n");
    EXPECT_TRUE(waitFor([] { return s_notices == 1; }));
    EXPECT_EQ(s_data, &mark);
}

TEST_F(Vconf, AChangeByAnotherProcessIsNoticed) {
    ASSERT_EQ(vconf_notify_key_changed("db/x", count, nullptr), 0);
    otherProcess(folder(), "db/x", 3);
    EXPECT_TRUE(waitFor([] { return s_notices == 1; }));
}

TEST_F(Vconf, AChangeOfAnotherValueIsNotNoticed) {
    ASSERT_EQ(vconf_notify_key_changed(ZOOM, count, nullptr), 0);
    ASSERT_EQ(vconf_notify_key_changed(CONTRAST, count, nullptr), 0);
    describe("[Accessibility]\nHighContrast=1\n");
    EXPECT_TRUE(waitFor([] { return s_notices > 0; }));
    EXPECT_EQ(s_notices, 1);
}

TEST_F(Vconf, AnIgnoredKeyIsNotNoticed) {
    ASSERT_EQ(vconf_notify_key_changed("db/x", count, nullptr), 0);
    EXPECT_EQ(vconf_ignore_key_changed("db/x", count), 0);
    EXPECT_NE(vconf_ignore_key_changed("db/x", count), 0);
    ASSERT_EQ(vconf_notify_key_changed(ZOOM, count, nullptr), 0);
    vconf_set_int("db/x", 1);
    vconf_set_int(ZOOM, 1);
    EXPECT_TRUE(waitFor([] { return s_notices > 0; }));
    EXPECT_EQ(s_notices, 1);
}

TEST_F(Vconf, AFileThatIsReplacedInOneStepIsNoticed) {
    ASSERT_EQ(vconf_notify_key_changed(ZOOM, count, nullptr), 0);
    support::writeFile(file("draft"), "[Accessibility]\nFocusZoom=1\n");
    ASSERT_EQ(std::rename(file("draft").c_str(), file("set.ini").c_str()), 0);
    EXPECT_TRUE(waitFor([] { return s_notices == 1; }));
}

TEST_F(Vconf, AChangeBehindALinkToALinkIsNoticed) {
    namespace fs = std::filesystem;
    fs::create_directories(file("middle"));
    fs::create_directories(file("far/away"));
    support::writeFile(file("far/away/own.ini"), "");
    fs::create_symlink(file("middle/next.ini"), file("set.ini"));
    fs::create_symlink("../far/away/own.ini", file("middle/next.ini"));
    ASSERT_EQ(vconf_notify_key_changed(ZOOM, count, nullptr), 0);
    support::writeFile(file("far/away/own.ini"), "[Accessibility]\nFocusZoom=1\n");
    ASSERT_TRUE(waitFor([] { return s_notices == 1; }));

    // The link in the middle is removed and created again with another target.
    fs::create_directories(file("near"));
    support::writeFile(file("near/own.ini"), "[Accessibility]\nFocusZoom=2\n");
    fs::remove(file("middle/next.ini"));
    ASSERT_TRUE(waitFor([] { return s_notices == 2; }));
    fs::create_symlink(file("near/own.ini"), file("middle/next.ini"));
    ASSERT_TRUE(waitFor([] { return s_notices == 3; }));
    support::writeFile(file("near/own.ini"), "[Accessibility]\nFocusZoom=11\n");
    ASSERT_TRUE(waitFor([] { return s_notices == 4; }));
}

class RuntimeInfo : public Vconf {};

TEST_F(RuntimeInfo, AChangeIsNoticedByTheLastCallbackOfAKey) {
    int first = 0;
    int second = 0;
    ASSERT_EQ(runtime_info_set_changed_cb(RUNTIME_INFO_KEY_LANGUAGE, countRuntime, &first), 0);
    ASSERT_EQ(runtime_info_set_changed_cb(RUNTIME_INFO_KEY_LANGUAGE, countRuntime, &second), 0);
    describe("[Language]\nLanguage=ko_KR.utf8\n");
    EXPECT_TRUE(waitFor([] { return s_notices > 0; }));
    EXPECT_EQ(s_notices, 1);
    EXPECT_EQ(s_data, &second);
    EXPECT_EQ(runtime_info_unset_changed_cb(RUNTIME_INFO_KEY_LANGUAGE), 0);
}

TEST_F(RuntimeInfo, UnsettingWhatIsNotSetIsNoError) {
    EXPECT_EQ(runtime_info_unset_changed_cb(RUNTIME_INFO_KEY_WIRED_IP), 0);
}

TEST_F(RuntimeInfo, ADescribedNetworkIsNoticed) {
    ASSERT_EQ(runtime_info_set_changed_cb(RUNTIME_INFO_KEY_WIRELESS_IP, countRuntime, nullptr), 0);
    describe("[Network]\nType=wireless\nAddress=198.51.100.7\n");
    EXPECT_TRUE(waitFor([] { return s_notices == 1; }));
    EXPECT_EQ(runtime_info_unset_changed_cb(RUNTIME_INFO_KEY_WIRELESS_IP), 0);
}

}  // namespace platform_test
