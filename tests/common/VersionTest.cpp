// SPDX-License-Identifier: Apache-2.0
// The application's version and name in the log.
#include <stdexcept>
#include <string>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "common/Version.h"
#include "common/ZoltConfig.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;

namespace {

class VersionTest : public testing::Test {
  protected:
    void SetUp() override {
        ZoltConfig::deinitialize();
        ScriptedPlatform::get().reset();
    }
    void TearDown() override { ZoltConfig::deinitialize(); }
};

TEST_F(VersionTest, IsThreeLinesWithTabsAtDebug) {
    const support::TemporaryFolder folder;
    ZoltConfig::initialize(
        folder.write("config.xml", "<c><i name=\"SourceVersion\">1.0.7</i></c>"));
    ZoltConfig::load();
    Version::printVersion("ZOLT GUI");
    const auto messages = ScriptedPlatform::get().messages(LOG_ID_SYSTEM, DLOG_DEBUG);
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_TRUE(boost::regex_match(
        messages[0], boost::regex("Compilation timestamp:\t[A-Z][a-z]{2} [ 1-3]\\d \\d{4} "
                                  "\\d\\d:\\d\\d:\\d\\d")))
        << messages[0];
    EXPECT_EQ(messages[1], "Version:\t\t\tZOLT-1.0.7");
    EXPECT_EQ(messages[2], "AppName:\t\t\tZOLT GUI");
}

TEST_F(VersionTest, EmptyOrLongTextsAreStillThreeLines) {
    const support::TemporaryFolder folder;
    ZoltConfig::initialize(folder.write("config.xml", "<c><i name=\"SourceVersion\"/></c>"));
    ZoltConfig::load();
    const std::string longest(1 << 20, 'n');
    Version::printVersion("");
    Version::printVersion(longest);
    const auto messages = ScriptedPlatform::get().messages(LOG_ID_SYSTEM, DLOG_DEBUG);
    ASSERT_EQ(messages.size(), 6U);
    EXPECT_EQ(messages[1], "Version:\t\t\tZOLT-");
    EXPECT_EQ(messages[2], "AppName:\t\t\t");
    EXPECT_EQ(messages[5], "AppName:\t\t\t" + longest);
}

TEST_F(VersionTest, MissingVersionThrowsAsTheConfigurationDoes) {
    EXPECT_THROW(Version::printVersion("ZOLT GUI"), std::out_of_range);
}

}  // namespace
