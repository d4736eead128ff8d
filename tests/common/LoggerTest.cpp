// SPDX-License-Identifier: Apache-2.0
// The shape of log lines and the text of the entry trace.
#include <climits>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "common/FailingCall.h"
#include "common/Logger.h"
#include "support/ScriptedPlatform.h"

using support::ScriptedPlatform;
using ZOLT::Logger;

namespace {

class LoggerTest : public testing::Test {
  protected:
    void SetUp() override { ScriptedPlatform::get().reset(); }

    static support::LogLine onlyLine() {
        const auto lines = ScriptedPlatform::get().log();
        EXPECT_EQ(lines.size(), 1U);
        return lines.empty() ? support::LogLine() : lines.front();
    }
};

TEST_F(LoggerTest, LineNamesFileFunctionAndLineBeforeItsMessage) {
    ZOLT_WARN("%s is %d", "answer", 42);
    const auto line = onlyLine();
    EXPECT_EQ(line.buffer, LOG_ID_SYSTEM);
    EXPECT_EQ(line.priority, DLOG_WARN);
    EXPECT_EQ(line.tag, "ZOLT");
    EXPECT_EQ(line.file, "LoggerTest.cpp");
    EXPECT_EQ(line.function, "TestBody");
    EXPECT_GT(line.line, 0);
    EXPECT_EQ(line.message, "answer is 42");
    EXPECT_EQ(line.text,
              "LoggerTest.cpp: TestBody(" + std::to_string(line.line) + ") > answer is 42");
}

TEST_F(LoggerTest, FileWithoutDirectoryIsNamedWhole) {
    Logger::write(LOG_ID_MAIN, DLOG_INFO, "Plain.cpp", "f", 1, "x");
    EXPECT_EQ(onlyLine().text, "Plain.cpp: f(1) > x");
}

TEST_F(LoggerTest, ProgressGoesToTheSystemBufferAtDebug) {
    ZOLT_DEBUG("progress");
    EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_DEBUG, "progress"));
}

TEST_F(LoggerTest, LongMessageIsNotCut) {
    for (const size_t size : {1023U, 1024U, 1025U, 1U << 20U}) {
        ScriptedPlatform::get().clearLog();
        const std::string message(size, 'm');
        ZOLT_WARN("%s", message.c_str());
        EXPECT_EQ(onlyLine().message, message);
    }
}

TEST_F(LoggerTest, LongMessageIsCutWhereMemoryIsShort) {
    const std::string message(2000, 'm');
    const support::FailingCall failing(support::LibraryCall::NewArray);
    ZOLT_WARN("%s", message.c_str());
    EXPECT_TRUE(failing.happened());
    EXPECT_EQ(onlyLine().message, message.substr(0, 1023));
}

TEST_F(LoggerTest, DirectivesInTheMessageAreText) {
    ZOLT_WARN("%s", "%s%n%d");
    EXPECT_EQ(onlyLine().message, "%s%n%d");
}

TEST_F(LoggerTest, TextThatCannotBeFormattedGoesOutAsItsFormat) {
    const wchar_t bad[] = {static_cast<wchar_t>(0xD800), 0};
    ZOLT_WARN("[%ls]", bad);
    EXPECT_EQ(onlyLine().message, "[%ls]");
}

class Traced {
  public:
    ~Traced() { ZOLT_TRACE(); }
    void withValues(const char* format, int number) { ZOLT_TRACE_VALUES(2, 1, format, 2, number); }
};

TEST_F(LoggerTest, EntryTraceGoesToTheMainBufferAtInfoWithTheBareFunctionName) {
    { const Traced traced; }
    const auto line = onlyLine();
    EXPECT_EQ(line.buffer, LOG_ID_MAIN);
    EXPECT_EQ(line.priority, DLOG_INFO);
    EXPECT_EQ(line.function, "~Traced");
    EXPECT_EQ(line.message.rfind("Called ", 0), 0U);
    EXPECT_NE(line.message.find("Traced::~Traced()"), std::string::npos) << line.message;
}

TEST_F(LoggerTest, VersionIsThreeLinesWithBlanksAtInfo) {
    Logger::printVersion("ZOLT GUI", "1.2");
    const auto messages = ScriptedPlatform::get().messages(LOG_ID_MAIN, DLOG_INFO);
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_TRUE(boost::regex_match(messages[0],
                                   boost::regex("Compilation timestamp:    [A-Z][a-z]{2} [ 1-3]\\d "
                                                "\\d{4} \\d\\d:\\d\\d:\\d\\d")))
        << messages[0];
    EXPECT_EQ(messages[1], "Version:          ZOLT-1.2");
    EXPECT_EQ(messages[2], "AppName:          ZOLT GUI");
    EXPECT_EQ(ScriptedPlatform::get().log()[0].function, "printVersion");
}

TEST_F(LoggerTest, VersionOfEmptyOrLongTextsIsStillThreeLines) {
    const std::string longest(1 << 20, 'v');
    Logger::printVersion("", "");
    Logger::printVersion(longest, longest);
    const auto messages = ScriptedPlatform::get().messages(LOG_ID_MAIN, DLOG_INFO);
    ASSERT_EQ(messages.size(), 6U);
    EXPECT_EQ(messages[1], "Version:          ZOLT-");
    EXPECT_EQ(messages[2], "AppName:          ");
    EXPECT_EQ(messages[4], "Version:          ZOLT-" + longest);
    EXPECT_EQ(messages[5], "AppName:          " + longest);
}

TEST(Trace, WithoutValuesIsTheSignatureUnchanged) {
    for (const char* signature : {"void f()", "int f(int, char*) const", "", "no brackets", "f([)",
                                  "bool ZOLT::File::save(std::string)"}) {
        EXPECT_EQ(Logger::logger(signature, 0), std::string("Called ") + signature);
    }
    const std::string longest = "void f(" + std::string(1 << 20, 'p') + ")";
    EXPECT_EQ(Logger::logger(longest.c_str(), 0), "Called " + longest);
}

TEST(Trace, CountBelowZeroReadsNoValue) {
    EXPECT_EQ(Logger::logger("void f(int)", -1, 1, 5), "Called void f(int)");
    EXPECT_EQ(Logger::logger("void f(int)", INT_MIN, 1, 5), "Called void f(int)");
}

TEST(Trace, EmptyParameterListLeavesTheValuesUnread) {
    EXPECT_EQ(Logger::logger("void f()", 1), "Called void f()");
    EXPECT_EQ(Logger::logger("", 1), "Called ");
}

TEST(Trace, SignatureThatDoesNotEndInABracketStaysUnchanged) {
    EXPECT_EQ(Logger::logger("int Class::f(int) const", 1, 1, 5), "Called int Class::f(int) const");
}

TEST(Trace, ValuesTakeThePlaceOfTheirTypes) {
    EXPECT_EQ(Logger::logger("static void ZOLT::GuiProxy::sendEvent(ZOLTGUI*, gint, gint)", 2, 2, 0,
                             3, 1),
              "Called static void ZOLT::GuiProxy::sendEvent(ZOLTGUI*, 0, 1)");
    EXPECT_EQ(Logger::logger("static int ZOLT::ThreadPool::add(std::function<void()>, std::string)",
                             1, 2, "queue"),
              "Called static int ZOLT::ThreadPool::add(std::function<void()>, \"queue\")");
    EXPECT_EQ(Logger::logger("void ZOLT::ThreadPool::join(const string&)", 1, 1, "queue"),
              "Called void ZOLT::ThreadPool::join(\"queue\")");
}

TEST(Trace, EachIntegerTypeIsReadAsASignedNumber) {
    for (const char* type : {"int", "const int", "unsigned int", "gint", "guint", "const gint",
                             "gpointer", "int64_t", "PrinterType"}) {
        const std::string signature = std::string("void f(") + type + ")";
        EXPECT_EQ(Logger::logger(signature.c_str(), 1, 1, INT_MIN), "Called void f(-2147483648)")
            << type;
    }
    EXPECT_EQ(Logger::logger("void f(unsigned int)", 1, 1, 4294967295U), "Called void f(-1)");
}

TEST(Trace, SizesPrintAsUnsigned) {
    EXPECT_EQ(Logger::logger("void f(size_t)", 1, 1, 4294967295U), "Called void f(4294967295)");
    EXPECT_EQ(Logger::logger("void f(const size_t)", 1, 1, 0U), "Called void f(0)");
}

TEST(Trace, TextsStandBetweenQuotes) {
    for (const char* type : {"std::string", "const std::string&", "string", "const string&",
                             "char*", "const char*", "gchar*", "const gchar*"}) {
        const std::string signature = std::string("void f(") + type + ")";
        EXPECT_EQ(Logger::logger(signature.c_str(), 1, 1, "v"), "Called void f(\"v\")") << type;
    }
    EXPECT_EQ(Logger::logger("void f(std::string)", 1, 1, ""), "Called void f(\"\")");
}

TEST(Trace, TypeOfAnotherKindEndsTheReading) {
    EXPECT_EQ(Logger::logger("void f(Evas_Object*, int)", 2, 1, nullptr, 2, 5),
              "Called void f(Evas_Object*, int)");
    EXPECT_EQ(Logger::logger("void f(int, Evas_Object*, int)", 3, 1, 7, 2, nullptr, 3, 5),
              "Called void f(7, Evas_Object*, int)");
    EXPECT_EQ(Logger::logger("void f(double)", INT_MAX, 1, 5.0), "Called void f(double)");
}

TEST(Trace, PositionsMayComeInAnyOrder) {
    EXPECT_EQ(Logger::logger("void f(int, double, size_t)", 2, 3, 8U, 1, 7),
              "Called void f(7, double, 8)");
}

TEST(Trace, PositionOutsideTheListEndsTheReading) {
    EXPECT_EQ(Logger::logger("void f(int)", 1, 2, 7), "Called void f(int)");
    EXPECT_EQ(Logger::logger("void f(int)", 1, 0, 7), "Called void f(int)");
    EXPECT_EQ(Logger::logger("void f(int)", 1, -1, 7), "Called void f(int)");
    EXPECT_EQ(Logger::logger("void f(int)", 1, INT_MIN, 7), "Called void f(int)");
    EXPECT_EQ(Logger::logger("void f(int)", 1, INT_MAX, 7), "Called void f(int)");
}

TEST(Trace, CommaInsideATemplateArgumentSplits) {
    EXPECT_EQ(Logger::logger("void f(std::map<int, char>, int)", 1, 3, 5),
              "Called void f(std::map<int, char>, 5)");
}

TEST(Trace, ListThatStandsTwiceIsReplacedTwice) {
    EXPECT_EQ(Logger::logger("int f_int(int)", 1, 1, 5), "Called 5 f_5(5)");
}

TEST(Trace, ValueIsExpandedAsAReplacementFormat) {
    EXPECT_EQ(Logger::logger("void f(std::string)", 1, 1, "<$&>"),
              "Called void f(\"<std::string>\")");
    EXPECT_EQ(Logger::logger("void f(std::string)", 1, 1, "a\\$b"), "Called void f(\"a$b\")");
}

TEST(Trace, ListThatIsNoExpressionThrows) {
    EXPECT_THROW(Logger::logger("void f(int [)", 1, 1, 5), boost::regex_error);
}

TEST(Trace, NullTextThrows) {
    const char* none = nullptr;
    EXPECT_THROW(Logger::logger("void f(const char*)", 1, 1, none), std::logic_error);
    EXPECT_THROW(Logger::logger(none, 0), std::logic_error);
    EXPECT_THROW(Logger::logger(none, 1, 1, 5), std::logic_error);
}

TEST(Trace, ValueOfAnyLengthStaysWhole) {
    const std::string longest(1 << 20, 'v');
    EXPECT_EQ(Logger::logger("void f(std::string)", 1, 1, longest.c_str()),
              "Called void f(\"" + longest + "\")");
    EXPECT_EQ(Logger::logger("void f(int, int)", 2, 1, INT_MIN, 2, INT_MAX),
              "Called void f(-2147483648, 2147483647)");
}

TEST(Trace, IsMadeOnAnyThreadAtOnce) {
    std::vector<std::thread> threads;
    std::vector<std::string> texts(4);
    for (size_t i = 0; i < texts.size(); ++i) {
        threads.emplace_back([&text = texts[i]] {
            for (int pass = 0; pass < 50; ++pass) {
                text = Logger::logger("void f(int, std::string)", 2, 1, pass, 2, "t");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& text : texts) {
        EXPECT_EQ(text, "Called void f(49, \"t\")");
    }
}

// In a process of its own, in which nothing has used an expression before.
TEST(LoggerDeathTest, AJobThatOutlivesMainGetsTheSignatureAsItStands) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            // Runs after the destructors of all static objects that are made from here on.
            std::atexit([] {
                std::string late;
                std::thread job([&late] { late = Logger::logger("void f(int)", 1, 1, 5); });
                job.join();
                std::_Exit(late == "Called void f(int)" ? 0 : 1);
            });
            std::exit(Logger::logger("void f(int)", 1, 1, 5) == "Called void f(5)" ? 0 : 2);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
