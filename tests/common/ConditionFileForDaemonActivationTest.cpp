// SPDX-License-Identifier: Apache-2.0
// The daemon's flag file.
#include <climits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "common/ConditionFileForDaemonActivation.h"
#include "common/DeviceInfo.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using ZOLT::ConditionFileForDaemonActivation;
using ZOLT::DeviceInfo;

namespace {

class ConditionFileTest : public testing::Test {
  protected:
    void SetUp() override {
        ScriptedPlatform::get().reset();
        DeviceInfo::m_imageType = DeviceInfo::IMAGE_RELEASE;
    }
    void TearDown() override { DeviceInfo::m_imageType = DeviceInfo::IMAGE_RELEASE; }

    support::TemporaryFolder folder;
};

TEST_F(ConditionFileTest, FlagIsAnEmptyFileThatStaysWhenItsObjectGoes) {
    const std::string path = folder.write("flag", "former");
    auto flag = std::make_unique<ConditionFileForDaemonActivation>(path);
    EXPECT_TRUE(flag->create());
    flag.reset();
    EXPECT_TRUE(support::fileExists(path));
    EXPECT_EQ(support::readFile(path), "");
}

TEST_F(ConditionFileTest, NothingIsMadeBeforeCreate) {
    const ConditionFileForDaemonActivation flag(folder.file("flag"));
    EXPECT_FALSE(support::fileExists(folder.file("flag")));
}

TEST_F(ConditionFileTest, FlagThatCannotBeWrittenIsAnAnswerAndNoException) {
    ConditionFileForDaemonActivation flag(folder.file("absent/flag"));
    EXPECT_FALSE(flag.create());
    EXPECT_EQ(ScriptedPlatform::get().countLines("Cannot open file, path is: " +
                                                 folder.file("absent/flag")),
              1);
}

TEST_F(ConditionFileTest, EmptyOrEndlessPathIsAnAnswerAndNoException) {
    for (const std::string& path : {std::string(), std::string(100000, 'p')}) {
        ConditionFileForDaemonActivation flag(path);
        EXPECT_FALSE(flag.create());
        EXPECT_FALSE(flag.remove());
    }
}

TEST_F(ConditionFileTest, RemoveTakesTheFlagAwayOnce) {
    ConditionFileForDaemonActivation flag(folder.write("flag", ""));
    EXPECT_TRUE(flag.remove());
    EXPECT_FALSE(support::fileExists(folder.file("flag")));
    EXPECT_FALSE(flag.remove());
}

TEST_F(ConditionFileTest, ReleaseImageDoesNotTellThePath) {
    const ConditionFileForDaemonActivation flag("the/flag");
    EXPECT_EQ(ScriptedPlatform::get().countLines("Path to flag file is : the/flag"), 0);
}

TEST_F(ConditionFileTest, AnyOtherImageTellsThePath) {
    for (const int type : {+DeviceInfo::IMAGE_DEBUG, +DeviceInfo::IMAGE_PERF, INT_MIN, INT_MAX}) {
        ScriptedPlatform::get().clearLog();
        DeviceInfo::m_imageType = type;
        const ConditionFileForDaemonActivation flag("the/flag");
        EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_DEBUG,
                                                    "Path to flag file is : the/flag"));
        EXPECT_EQ(ScriptedPlatform::get()
                      .findLine("Path to flag file is : the/flag")
                      .value_or(support::LogLine())
                      .function,
                  "ConditionFileForDaemonActivation");
    }
}

}  // namespace
