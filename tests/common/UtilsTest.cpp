// SPDX-License-Identifier: Apache-2.0
// Text conversion, base64 and storage paths.
#include <climits>
#include <cwchar>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/FailingCall.h"
#include "common/Thrown.h"
#include "common/Utils.h"
#include "common/ZoltConfig.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using ZOLT::Utils;

namespace {

TEST(HtmlEncode, FiveCharactersAreEncodedAndNoOther) {
    const struct {
        const char* text;
        const char* expected;
    } cases[] = {
        {"a&b", "a&amp;b"},
        {"<&>", "&lt;&amp;&gt;"},
        {"\"it's\"", "&quot;it&apos;s&quot;"},
        {"&amp;", "&amp;amp;"},
        {"&lt;", "&amp;lt;"},
        {"", ""},
        {"none of them \n\t%$\\", "none of them \n\t%$\\"},
        {"\xec\x84\x9c\xec\x9a\xb8 & \xd8\xa8", "\xec\x84\x9c\xec\x9a\xb8 &amp; \xd8\xa8"},
        {"&&''\"\"<<>>", "&amp;&amp;&apos;&apos;&quot;&quot;&lt;&lt;&gt;&gt;"},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(Utils::htmlEncode(entry.text), entry.expected);
    }
    EXPECT_EQ(Utils::htmlEncode(std::string(1 << 18, '<')).size(), 4U << 18U);
}

TEST(FormatString, TextOverTwoHundredFiftyFiveCharactersIsCut) {
    const std::string text(300, 't');
    EXPECT_EQ(Utils::formatString("%s", text.c_str()), text.substr(0, 255));
    EXPECT_EQ(Utils::formatString("%s", text.substr(0, 255).c_str()), text.substr(0, 255));
    EXPECT_EQ(Utils::formatString("%d%s", 1, text.c_str()), "1" + text.substr(0, 254));
}

TEST(FormatString, ShortTextComesWhole) {
    EXPECT_EQ(Utils::formatString("%s=%d", "n", -5), "n=-5");
    EXPECT_EQ(Utils::formatString("%s", ""), "");
    EXPECT_EQ(Utils::formatString("%s", "%d"), "%d");
    EXPECT_EQ(Utils::formatString("%d %d", INT_MIN, INT_MAX), "-2147483648 2147483647");
}

TEST(FormatString, NullFormatOrTextThatCannotBeMadeIsEmpty) {
    // Through a pointer, so that the compiler does not check the format.
    std::string (*const format)(const char*, ...) = Utils::formatString;
    EXPECT_EQ(format(nullptr), "");
    const wchar_t bad[] = {static_cast<wchar_t>(0xD800), 0};
    EXPECT_EQ(Utils::formatString("[%ls]", bad), "");
}

TEST(WideText, EachCodePointIsOneCharacter) {
    EXPECT_EQ(Utils::StrToWStr("a\xec\x84\x9c\xf0\x9f\x98\x80"), L"a\uC11C\U0001F600");
    EXPECT_EQ(Utils::WStrToStr(L"a\uC11C\U0001F600"), "a\xec\x84\x9c\xf0\x9f\x98\x80");
    EXPECT_EQ(Utils::StrToWStr(""), L"");
    EXPECT_EQ(Utils::WStrToStr(L""), "");
}

TEST(WideText, WhatIsNoTextIsSkipped) {
    EXPECT_EQ(Utils::StrToWStr("a\xff\x62"), L"ab");
    EXPECT_EQ(Utils::WStrToStr(std::wstring{L'a', static_cast<wchar_t>(0xD800),
                                            static_cast<wchar_t>(0xDFFF),
                                            static_cast<wchar_t>(0x110000), L'b'}),
              "ab");
    EXPECT_EQ(Utils::WStrToStr(std::wstring{WCHAR_MIN, L'c', WCHAR_MAX}), "c");
    EXPECT_EQ(Utils::WStrToStr(std::wstring{static_cast<wchar_t>(0x10FFFF)}), "\xf4\x8f\xbf\xbf");
    EXPECT_EQ(Utils::WStrToStr(std::wstring{static_cast<wchar_t>(0xD7FF)}), "\xed\x9f\xbf");
    EXPECT_EQ(Utils::WStrToStr(std::wstring{static_cast<wchar_t>(0xE000)}), "\xee\x80\x80");
    EXPECT_EQ(Utils::StrToWStr("a\xed\xa0\x80"
                               "b\xf4\x90\x80\x80"
                               "c\xec"),
              L"abc");
}

TEST(WideText, ZeroIsACharacterAndAnyLengthIsKept) {
    EXPECT_EQ(Utils::StrToWStr(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(Utils::WStrToStr(std::wstring(L"a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(Utils::StrToWStr(std::string(1 << 20, 't')), std::wstring(1 << 20, L't'));
    EXPECT_EQ(Utils::WStrToStr(std::wstring(1 << 20, L't')), std::string(1 << 20, 't'));
}

TEST(Base64, IsOneLineWithPadding) {
    EXPECT_EQ(Utils::encodeBase64("a", 1), "YQ==");
    EXPECT_EQ(Utils::encodeBase64("ab", 2), "YWI=");
    EXPECT_EQ(Utils::encodeBase64("abc", 3), "YWJj");
    EXPECT_EQ(Utils::encodeBase64("\0\xff", 2), "AP8=");
    const std::string encoded = Utils::encodeBase64(std::string(300, 'x').data(), 300);
    EXPECT_EQ(encoded.size(), 400U);
    EXPECT_EQ(encoded.find('\n'), std::string::npos);
}

TEST(Base64, NothingGivesAnEmptyText) {
    EXPECT_EQ(Utils::encodeBase64("", 0), "");
    EXPECT_EQ(Utils::encodeBase64(nullptr, 0), "");
    EXPECT_EQ(Utils::encodeBase64(nullptr, 5), "");
}

TEST(Base64, DataOfManyPiecesStaysOneLine) {
    const std::string encoded = Utils::encodeBase64(std::string(3 << 20, '\0').data(), 3 << 20);
    EXPECT_EQ(encoded, std::string(4 << 20, 'A'));
}

TEST(Base64, WithoutMemorySaysWhatCouldNotBeAllocated) {
    const auto encode = [] { Utils::encodeBase64("abc", 3); };
    {
        const support::FailingCall failing(support::LibraryCall::NewBio);
        EXPECT_EQ(ZOLT::thrownBy(encode), "Could not allocate OpenSSL BIO");
    }
    const support::FailingCall failing(support::LibraryCall::NewBio, 1);
    EXPECT_EQ(ZOLT::thrownBy(encode), "Could not allocate memory for BIO");
}

TEST(FileSize, IsThatOfTheFile) {
    const support::TemporaryFolder folder;
    unsigned int size = 7;
    EXPECT_TRUE(Utils::getFileSize(folder.write("file", "12345"), size));
    EXPECT_EQ(size, 5U);
    EXPECT_TRUE(Utils::getFileSize(folder.write("empty", ""), size));
    EXPECT_EQ(size, 0U);
}

TEST(FileSize, IsCutToThirtyTwoBits) {
    const support::TemporaryFolder folder;
    const std::string path = folder.write("sparse", "");
    ASSERT_EQ(truncate(path.c_str(), (1LL << 32) + 5), 0);
    unsigned int size = 7;
    EXPECT_TRUE(Utils::getFileSize(path, size));
    EXPECT_EQ(size, 5U);
}

TEST(FileSize, NoFileIsAnAnswerThatLeavesTheSizeAlone) {
    const support::TemporaryFolder folder;
    unsigned int size = 7;
    EXPECT_FALSE(Utils::getFileSize("", size));
    EXPECT_FALSE(Utils::getFileSize(folder.file("absent"), size));
    EXPECT_FALSE(Utils::getFileSize(std::string(100000, 'p'), size));
    EXPECT_EQ(size, 7U);
}

class DownloadPathsTest : public testing::Test {
  protected:
    void SetUp() override {
        ZoltConfig::deinitialize();
        ScriptedPlatform::get().reset();
        ZoltConfig::initialize(
            folder.write("config.xml",
                         "<c><i name=\"USBContentDownloadPath\">/usb</i>"
                         "<i name=\"TVFlashContentDownloadPath\">/flash</i></c>"));
        ZoltConfig::load();
        ScriptedPlatform::get().clearLog();
    }
    void TearDown() override { ZoltConfig::deinitialize(); }

    support::TemporaryFolder folder;
};

TEST_F(DownloadPathsTest, WithoutUsbStorageThereIsJustTheFlash) {
    EXPECT_EQ(Utils::getAvailableDownloadPaths(), std::set<std::string>{"/flash"});
    EXPECT_EQ(Utils::getDownloadPath(), "/flash");
    EXPECT_TRUE(
        ScriptedPlatform::get().hasLine(LOG_ID_MAIN, DLOG_DEBUG, "Added download path: /flash"));
}

TEST_F(DownloadPathsTest, EachUsbDeviceAddsAPathAndTheFirstInOrderWins) {
    ScriptedPlatform::get().setUsbMountPaths({"/mnt/z", "/mnt/a"});
    const std::set<std::string> expected{"/flash", "/mnt/a/usb", "/mnt/z/usb"};
    EXPECT_EQ(Utils::getAvailableDownloadPaths(), expected);
    EXPECT_EQ(Utils::getDownloadPath(), "/flash");
    ScriptedPlatform::get().setUsbMountPaths({"/a"});
    EXPECT_EQ(Utils::getDownloadPath(), "/a/usb");
    EXPECT_EQ(ScriptedPlatform::get().outstanding(support::Handout::UsbDeviceList), 0);
}

TEST_F(DownloadPathsTest, PathsAreLoggedInTheOrderOfTheDevicesWithTheFlashLast) {
    ScriptedPlatform::get().setUsbMountPaths({"/mnt/z", "/mnt/a"});
    Utils::getAvailableDownloadPaths();
    const std::vector<std::string> expected{"Added download path: /mnt/z/usb",
                                            "Added download path: /mnt/a/usb",
                                            "Added download path: /flash"};
    EXPECT_EQ(ScriptedPlatform::get().messages(LOG_ID_MAIN, DLOG_DEBUG), expected);
}

TEST_F(DownloadPathsTest, DeviceThatIsNotMountedAddsNothing) {
    ScriptedPlatform::get().setUsbMountPaths({std::nullopt, "/mnt/a"});
    const std::set<std::string> expected{"/flash", "/mnt/a/usb"};
    EXPECT_EQ(Utils::getAvailableDownloadPaths(), expected);
}

TEST_F(DownloadPathsTest, FailingUsbInterfaceLeavesTheFlash) {
    ScriptedPlatform::get().setUsbMountPaths({"/mnt/a"});
    for (const int code : {-1, INT_MIN, INT_MAX}) {
        ScriptedPlatform::get().answer("usb_device_get_device_list", code);
        EXPECT_EQ(Utils::getAvailableDownloadPaths(), std::set<std::string>{"/flash"});
    }
    EXPECT_EQ(ScriptedPlatform::get().countCalls("usb_device_list_get_first"), 0);
}

TEST_F(DownloadPathsTest, ListIsAskedForOnlyWhereStorageIsConnected) {
    ScriptedPlatform::get().setUsbMountPaths({"/mnt/a"});
    for (const int number : {0, -1, INT_MIN}) {
        ScriptedPlatform::get().answer("usb_get_connected_device_number", number);
        EXPECT_EQ(Utils::getAvailableDownloadPaths(), std::set<std::string>{"/flash"});
    }
    EXPECT_EQ(ScriptedPlatform::get().countCalls("usb_device_get_device_list"), 0);
    for (const int number : {1, INT_MAX}) {
        ScriptedPlatform::get().answer("usb_get_connected_device_number", number);
        EXPECT_EQ(Utils::getAvailableDownloadPaths().size(), 2U);
    }
    EXPECT_EQ(ScriptedPlatform::get().calls("usb_get_connected_device_number").back(),
              "usb_get_connected_device_number(8)");
    EXPECT_EQ(ScriptedPlatform::get().calls("usb_device_get_device_list").back(),
              "usb_device_get_device_list(8)");
}

TEST_F(DownloadPathsTest, ManyDevicesAndAnEmptyMountPathAllCount) {
    std::vector<std::optional<std::string>> mounted{std::string(), std::string(100000, 'p')};
    for (int number = 0; number < 1000; ++number) {
        mounted.emplace_back("/mnt/" + std::to_string(number));
    }
    ScriptedPlatform::get().setUsbMountPaths(mounted);
    const auto paths = Utils::getAvailableDownloadPaths();
    EXPECT_EQ(paths.size(), 1003U);
    EXPECT_EQ(paths.count("/usb"), 1U);
}

TEST_F(DownloadPathsTest, MissingKeyThrowsAndGivesTheListBack) {
    ScriptedPlatform::get().setUsbMountPaths({"/mnt/a"});
    ZoltConfig::deinitialize();
    EXPECT_THROW(Utils::getAvailableDownloadPaths(), std::out_of_range);
    EXPECT_EQ(ScriptedPlatform::get().outstanding(support::Handout::UsbDeviceList), 0);
}

TEST(ThreadId, IsTheCallersInDecimal) {
    const auto expectOwnId = [] {
        std::ostringstream expected;
        expected << pthread_self();
        EXPECT_EQ(Utils::getCurrentThreadId(), expected.str());
    };
    expectOwnId();
    std::thread(expectOwnId).join();
    EXPECT_TRUE(ZOLT::m_Utilslock.try_lock());
    ZOLT::m_Utilslock.unlock();
}

TEST(ThreadId, IsMadeUnderItsLock) {
    ScriptedPlatform::get().reset();
    std::optional<bool> free;
    ScriptedPlatform::get().whenLogged([&free](const support::LogLine&) {
        std::thread([&free] {
            free = ZOLT::m_Utilslock.try_lock();
            if (*free) {
                ZOLT::m_Utilslock.unlock();
            }
        }).join();
    });
    Utils::getCurrentThreadId();
    ScriptedPlatform::get().reset();
    EXPECT_EQ(free, std::optional<bool>(false));
}

}  // namespace
