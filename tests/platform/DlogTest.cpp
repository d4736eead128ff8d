// SPDX-License-Identifier: Apache-2.0
// The log of the virtual set.
#include <cstdlib>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ProbeSet.h"
#include "dlog.h"

namespace PlatformTest {

class Dlog : public PrivateSet {};

TEST_F(Dlog, WritesTimeProcessThreadBufferPriorityTagAndMessage) {
    const int bytes =
        __dlog_print(LOG_ID_MAIN, DLOG_INFO, "ZOLT", "%s: %s(%d) > text", "main.cpp", "main", 12);
    EXPECT_EQ(bytes, static_cast<int>(log().size()));
    const std::regex form(
        "\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} +(\\d+) +(\\d+) main I ZOLT: main\\.cpp: "
        "main\\(12\\) > text\n");
    std::smatch parts;
    const std::string line = log();
    ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
    EXPECT_EQ(parts[1], std::to_string(getpid()));
}

TEST_F(Dlog, NamesBufferAndPriorityOfEachLine) {
    __dlog_print(LOG_ID_SYSTEM, DLOG_DEBUG, "A", "x");
    __dlog_print(LOG_ID_SYSTEM, DLOG_WARN, "A", "x");
    __dlog_print(LOG_ID_APPS, DLOG_ERROR, "A", "x");
    EXPECT_NE(log().find(" system D A: x\n"), std::string::npos);
    EXPECT_NE(log().find(" system W A: x\n"), std::string::npos);
    EXPECT_NE(log().find(" apps E A: x\n"), std::string::npos);
}

TEST_F(Dlog, KeepsAMessageWithNewlinesOnOneLine) {
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "one\ntwo\r\nthree\x1b[31m\n");
    EXPECT_NE(log().find("A: one\\ntwo\\r\\nthree\\x1b[31m\\n\n"), std::string::npos) << log();
}

TEST_F(Dlog, WritesALongMessageWhole) {
    const std::string text(100000, 'x');
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "%s", text.c_str());
    EXPECT_NE(log().find("A: " + text + "\n"), std::string::npos);
}

TEST_F(Dlog, KeepsTextsOfOtherScripts) {
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "%s", "서울 القاهرة");
    EXPECT_NE(log().find("A: 서울 القاهرة\n"), std::string::npos);
}

TEST_F(Dlog, LinesOfSeveralThreadsDoNotMix) {
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([number] {
            const std::string text(200, static_cast<char>('a' + number));
            for (int line = 0; line < 200; ++line) {
                __dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "%s", text.c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream stream(log());
    std::string line;
    int count = 0;
    while (std::getline(stream, line)) {
        const std::string text = line.substr(line.rfind(' ') + 1);
        EXPECT_EQ(text, std::string(200, text.front()));
        ++count;
    }
    EXPECT_EQ(count, 8 * 200);
}

TEST_F(Dlog, TheEnvironmentNamesAnotherFile) {
    setenv("VIRTUAL_SET_LOG", "other.log", 1);
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "x");
    unsetenv("VIRTUAL_SET_LOG");
    EXPECT_NE(contentsOf(file("other.log")).find("A: x\n"), std::string::npos);
    EXPECT_EQ(log(), "");
}

TEST_F(Dlog, ADashMeansStandardError) {
    setenv("VIRTUAL_SET_LOG", "-", 1);
    testing::internal::CaptureStderr();
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "to the terminal");
    unsetenv("VIRTUAL_SET_LOG");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("A: to the terminal\n"),
              std::string::npos);
}

TEST_F(Dlog, TheJournalTakesLinesToo) {
    setenv("VIRTUAL_SET_LOG", "journal", 1);
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_DEBUG, "A", "to the journal"), 0);
    unsetenv("VIRTUAL_SET_LOG");
    EXPECT_EQ(log(), "");
}

TEST_F(Dlog, AFolderThatIsNotThereIsAnErrorAndNoCrash) {
    setenv("VIRTUAL_SET_LOG", "missing/zolt.log", 1);
    EXPECT_LT(__dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "x"), 0);
    unsetenv("VIRTUAL_SET_LOG");
}

using DlogProcess = ProbeSet;

TEST_F(DlogProcess, ClosedStandardDescriptorsAreOccupiedFromTheFirstLineOn) {
    start({"leave"});
    EXPECT_EQ(probe().wait(), 0);
    EXPECT_TRUE(logHas("descriptor 1: /dev/null"));
    EXPECT_TRUE(logHas("descriptor 2: " + file("stderr.log")));
}

}  // namespace PlatformTest
