// SPDX-License-Identifier: Apache-2.0
// The log of the virtual set.
#include <cstdlib>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ProbeSet.h"
#include "dlog.h"

namespace platform_test {

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

// A log service of the test's own.
class Journal : public Dlog {
  protected:
    Journal() {
        setenv("VIRTUAL_SET_LOG", "journal", 1);
        setenv("VIRTUAL_SET_JOURNAL", file("journal.sock").c_str(), 1);
    }
    ~Journal() override {
        unsetenv("VIRTUAL_SET_LOG");
        unsetenv("VIRTUAL_SET_JOURNAL");
        if (m_socket >= 0) {
            close(m_socket);
        }
    }

    void listen() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        file("journal.sock").copy(address.sun_path, sizeof address.sun_path - 1);
        m_socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        ASSERT_EQ(bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }

    // The oldest datagram, or an empty text. A datagram has arrived when the call that sent it
    // returns.
    std::string received() const {
        std::string room(65536, '\0');
        const ssize_t length = recv(m_socket, room.data(), room.size(), 0);
        return room.substr(0, length > 0 ? static_cast<std::size_t>(length) : 0);
    }

  private:
    int m_socket = -1;
};

TEST_F(Journal, TakesALineWithLevelTimeProgramAndProcess) {
    listen();
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_ERROR, "A", "to the\n%s", "journal"), 0);
    const std::regex form(
        "<(\\d+)>[A-Z][a-z]{2} [ \\d]\\d \\d\\d:\\d\\d:\\d\\d platform_tests\\[(\\d+)\\]: main E "
        "A: "
        "to the\\\\njournal");
    std::smatch parts;
    const std::string line = received();
    ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
    EXPECT_EQ(parts[1], std::to_string(LOG_USER | LOG_ERR));
    EXPECT_EQ(parts[2], std::to_string(getpid()));
    EXPECT_EQ(received(), "");
    EXPECT_EQ(log(), "");
}

TEST_F(Journal, EachPriorityHasItsLevel) {
    listen();
    const std::vector<std::pair<log_priority, int>> levels = {{DLOG_DEBUG, LOG_DEBUG},
                                                              {DLOG_INFO, LOG_INFO},
                                                              {DLOG_WARN, LOG_WARNING},
                                                              {DLOG_FATAL, LOG_CRIT}};
    for (const auto& [priority, level] : levels) {
        __dlog_print(LOG_ID_MAIN, priority, "A", "x");
        const std::string head = "<" + std::to_string(LOG_USER | level) + ">";
        EXPECT_EQ(received().substr(0, head.size()), head);
    }
}

TEST_F(Journal, AServiceThatIsNotThereIsAnErrorAndOneThatComesIsUsed) {
    EXPECT_LT(__dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "lost"), 0);
    listen();
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "kept"), 0);
    EXPECT_NE(received().find("A: kept"), std::string::npos);
}

TEST_F(Dlog, AFolderThatIsNotThereIsAnErrorAndNoCrash) {
    setenv("VIRTUAL_SET_LOG", "missing/zolt.log", 1);
    EXPECT_LT(__dlog_print(LOG_ID_MAIN, DLOG_INFO, "A", "x"), 0);
    unsetenv("VIRTUAL_SET_LOG");
}

using DlogProcess = ProbeSet;

TEST_F(DlogProcess, ClosedStandardDescriptorsAreOccupiedFromTheFirstLineOn) {
    start({"leave"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_TRUE(logHas("descriptor 1: /dev/null"));
    EXPECT_TRUE(logHas("descriptor 2: " + file("stderr.log")));
}

TEST_F(DlogProcess, AStandardErrorThatTheProgramPutOnDevNullIsKeptAsAFileToo) {
    start({"leave", "null-streams"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_TRUE(logHas("descriptor 1: /dev/null"));
    EXPECT_TRUE(logHas("descriptor 2: " + file("stderr.log")));
}

TEST_F(DlogProcess, AStaticDestructorThatRunsLastMayStillLog) {
    start({"leave", "farewell"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_EQ(said().back(), "farewell");
}

}  // namespace platform_test
