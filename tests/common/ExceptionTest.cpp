// SPDX-License-Identifier: Apache-2.0
// Texts of failures, and what happens when a text cannot be built.
#include <exception>
#include <memory>
#include <string>

#include <boost/format.hpp>
#include <gtest/gtest.h>

#include "common/Exception.h"
#include "common/FailingCall.h"
#include "common/Logger.h"
#include "support/ScriptedPlatform.h"

using support::ScriptedPlatform;
using ZOLT::Exception;
using ZOLT::GENERIC_ERROR;

namespace {

class ExceptionTest : public testing::Test {
  protected:
    void SetUp() override { ScriptedPlatform::get().reset(); }

    // Expects that EXCEPTION has no text and that the only line of the log names CAUSE.
    static void expectLost(const Exception& exception, const std::exception& cause) {
        expectLostWith(exception, std::string("Caught exception: ") + cause.what());
    }

    static void expectLostWith(const Exception& exception, const std::string& message) {
        EXPECT_STREQ(exception.what(), "Out of memory");
        EXPECT_EQ(exception.code(), -1);
        const auto lines = ScriptedPlatform::get().log();
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].buffer, LOG_ID_SYSTEM);
        EXPECT_EQ(lines[0].priority, DLOG_WARN);
        EXPECT_EQ(lines[0].file, "Exception.cpp");
        EXPECT_EQ(lines[0].function, "Exception");
        EXPECT_EQ(lines[0].message, message);
    }

    // What the formatter throws for each kind of failure.
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
    EXPECT_STREQ(Exception("value, %d", 2147483647, GENERIC_ERROR).what(), "value, 2147483647");
    EXPECT_STREQ(Exception("value, %d", 0, GENERIC_ERROR).what(), "value, 0");
    EXPECT_STREQ(Exception("[%s]", "", GENERIC_ERROR).what(), "[]");
    EXPECT_STREQ(Exception("[%s]", std::string(), GENERIC_ERROR).what(), "[]");
    EXPECT_STREQ(Exception("attribute: %s", "name", GENERIC_ERROR).what(), "attribute: name");
    EXPECT_STREQ(Exception("No Node under \"%s\" path", std::string("/a"), GENERIC_ERROR).what(),
                 "No Node under \"/a\" path");
}

TEST_F(ExceptionTest, DirectivesInTheValueAreText) {
    EXPECT_STREQ(Exception("[%s]", "%d%%%s", GENERIC_ERROR).what(), "[%d%%%s]");
}

// Each of VALUES has its own constructor.
TEST_F(ExceptionTest, EachFormattingConstructorSwallowsEachFailure) {
    // One character more than a text can have.
    const std::string unlimited = "%-9223372036854775807";
    const auto expectAllLost = [this, &unlimited](const auto& value, const char* type) {
        const auto lost = [&value](const std::string& format) {
            ScriptedPlatform::get().clearLog();
            return Exception(format.c_str(), value, GENERIC_ERROR);
        };
        expectLost(lost("no directive"), tooManyValues);
        expectLost(lost(""), tooManyValues);
        expectLost(lost("%" + std::string(type) + " %" + type), tooFewValues);
        expectLost(lost("%"), badFormat);
        expectLostWith(lost(unlimited + type), "Caught unknown exception.");
    };
    expectAllLost(5, "d");
    expectAllLost(static_cast<const char*>("text"), "s");
    expectAllLost(std::string("text"), "s");
}

TEST_F(ExceptionTest, WithoutMemoryTheTextIsLostInSilence) {
    const auto expectSilent = [](support::LibraryCall call, const auto& make) {
        const support::FailingCall failing(call);
        const Exception exception = make();
        EXPECT_TRUE(failing.happened());
        EXPECT_STREQ(exception.what(), "Out of memory");
        EXPECT_EQ(exception.code(), -1);
    };
    const std::string text = "text";
    expectSilent(support::LibraryCall::Strdup, [] { return Exception("text", GENERIC_ERROR); });
    expectSilent(support::LibraryCall::Strdup, [&] { return Exception(text, GENERIC_ERROR); });
    expectSilent(support::LibraryCall::Malloc, [] { return Exception("%d", 5, GENERIC_ERROR); });
    expectSilent(support::LibraryCall::Malloc, [] { return Exception("%s", "v", GENERIC_ERROR); });
    expectSilent(support::LibraryCall::Malloc,
                 [&] { return Exception("%s", text, GENERIC_ERROR); });
    const Exception source("text", GENERIC_ERROR);
    expectSilent(support::LibraryCall::Strdup, [&] { return Exception(source); });
    EXPECT_TRUE(ScriptedPlatform::get().log().empty());
}

TEST_F(ExceptionTest, NullTextsAreAccepted) {
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

// Overrides what() with another text.
class Renamed : public Exception {
  public:
    Renamed() : Exception("text", GENERIC_ERROR) {}
    const char* what() const noexcept override { return "another text"; }
};

TEST_F(ExceptionTest, CopyHasTheTextThatADerivedSourceAnswers) {
    const Renamed source;
    EXPECT_STREQ(Exception(source).what(), "another text");
}

TEST_F(ExceptionTest, CodeIsKeptByEachConstructorAndByACopy) {
    const auto other = static_cast<ZOLT::GenericErrorCode>(-2147483647 - 1);
    const std::string text = "text";
    for (const Exception& exception :
         {Exception("text", other), Exception(text, other), Exception("%d", 5, other),
          Exception("%s", "text", other), Exception("%s", text, other), Exception("%", 5, other)}) {
        EXPECT_EQ(exception.code(), other);
        EXPECT_EQ(Exception(exception).code(), other);
    }
}

TEST_F(ExceptionTest, LongTextStaysWhole) {
    const std::string value(1 << 20, 'v');
    EXPECT_EQ(Exception(value.c_str(), GENERIC_ERROR).what(), value);
    EXPECT_EQ(Exception(value, GENERIC_ERROR).what(), value);
    EXPECT_EQ(Exception((value + "%s").c_str(), value.c_str(), GENERIC_ERROR).what(),
              value + value);
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
