// SPDX-License-Identifier: Apache-2.0
// Texts of failures, and what happens when a text cannot be built.
#include <exception>
#include <memory>
#include <string>

#include <boost/format.hpp>
#include <gtest/gtest.h>

#include "common/Exception.h"
#include "common/Logger.h"
#include "support/ScriptedPlatform.h"

using support::ScriptedPlatform;
using ZOLT::Exception;
using ZOLT::GENERIC_ERROR;

namespace {

class ExceptionTest : public testing::Test {
  protected:
    void SetUp() override { ScriptedPlatform::get().reset(); }

    // That EXCEPTION has no text and the only line of the log gives CAUSE.
    static void expectLost(const Exception& exception, const std::exception& cause) {
        EXPECT_STREQ(exception.what(), "Out of memory");
        EXPECT_EQ(exception.code(), -1);
        const auto lines = ScriptedPlatform::get().log();
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].buffer, LOG_ID_SYSTEM);
        EXPECT_EQ(lines[0].priority, DLOG_WARN);
        EXPECT_EQ(lines[0].file, "Exception.cpp");
        EXPECT_EQ(lines[0].function, "Exception");
        EXPECT_EQ(lines[0].message, std::string("Caught exception: ") + cause.what());
    }

    // What the formatter says of each kind of failure.
    const boost::io::too_many_args tooManyValues{0, 0};
    const boost::io::too_few_args tooFewValues{0, 0};
    const boost::io::bad_format_string badFormat{0, 0};
};

TEST_F(ExceptionTest, TextAndCodeComeBackAsGiven) {
    const Exception exception("x", GENERIC_ERROR);
    EXPECT_STREQ(exception.what(), "x");
    EXPECT_EQ(exception.code(), -1);
    EXPECT_STREQ(Exception(std::string("text"), GENERIC_ERROR).what(), "text");
    EXPECT_STREQ(Exception("", GENERIC_ERROR).what(), "");
    EXPECT_TRUE(ScriptedPlatform::get().log().empty());
}

TEST_F(ExceptionTest, PlainTextIsNoFormat) {
    EXPECT_STREQ(Exception("100 % %d %s", GENERIC_ERROR).what(), "100 % %d %s");
}

TEST_F(ExceptionTest, ValueOfEachTypeIsPutIntoTheFormat) {
    EXPECT_STREQ(Exception("value, %d", -2147483647 - 1, GENERIC_ERROR).what(),
                 "value, -2147483648");
    EXPECT_STREQ(Exception("attribute: %s", "name", GENERIC_ERROR).what(), "attribute: name");
    EXPECT_STREQ(Exception("No Node under \"%s\" path", std::string("/a"), GENERIC_ERROR).what(),
                 "No Node under \"/a\" path");
}

TEST_F(ExceptionTest, DirectivesInTheValueAreText) {
    EXPECT_STREQ(Exception("[%s]", "%d%%%s", GENERIC_ERROR).what(), "[%d%%%s]");
}

TEST_F(ExceptionTest, FormatWithoutDirectiveLosesTheText) {
    expectLost(Exception("no directive", 5, GENERIC_ERROR), tooManyValues);
}

TEST_F(ExceptionTest, FormatWithTwoDirectivesLosesTheText) {
    expectLost(Exception("%d %d", 5, GENERIC_ERROR), tooFewValues);
}

TEST_F(ExceptionTest, BadFormatLosesTheText) {
    expectLost(Exception("%", 5, GENERIC_ERROR), badFormat);
}

TEST_F(ExceptionTest, EachFormattingConstructorSwallowsItsFailure) {
    expectLost(Exception("no directive", "text", GENERIC_ERROR), tooManyValues);
    ScriptedPlatform::get().clearLog();
    expectLost(Exception("%s %s", std::string("text"), GENERIC_ERROR), tooFewValues);
}

TEST_F(ExceptionTest, NullTextsAreBorne) {
    const char* none = nullptr;
    EXPECT_STREQ(Exception(none, GENERIC_ERROR).what(), "Out of memory");
    EXPECT_STREQ(Exception("[%s]", none, GENERIC_ERROR).what(), "[]");
    expectLost(Exception(none, 5, GENERIC_ERROR), tooManyValues);
}

TEST_F(ExceptionTest, CopyOutlivesItsSource) {
    auto source = std::make_unique<Exception>("text", GENERIC_ERROR);
    const Exception copy(*source);
    source.reset();
    EXPECT_STREQ(copy.what(), "text");
    EXPECT_EQ(copy.code(), -1);
}

TEST_F(ExceptionTest, CopyOfAnExceptionWithoutTextHasTheTextThatTheSourceAnswers) {
    auto source = std::make_unique<Exception>("%", 5, GENERIC_ERROR);
    const Exception copy(*source);
    source.reset();
    EXPECT_STREQ(copy.what(), "Out of memory");
}

TEST_F(ExceptionTest, LongTextStaysWhole) {
    const std::string value(1 << 20, 'v');
    EXPECT_EQ(Exception("[%s]", value, GENERIC_ERROR).what(), "[" + value + "]");
}

TEST_F(ExceptionTest, IsCaughtAsAStandardException) {
    try {
        throw Exception("Failed: %d", 7, GENERIC_ERROR);
    } catch (const std::exception& e) {
        EXPECT_STREQ(e.what(), "Failed: 7");
    }
}

}  // namespace
