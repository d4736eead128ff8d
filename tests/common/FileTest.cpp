// SPDX-License-Identifier: Apache-2.0
// Saving, testing and removing one file.
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/File.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using ZOLT::File;

namespace {

class FileTest : public testing::Test {
  protected:
    void SetUp() override { ScriptedPlatform::get().reset(); }

    // That the log holds one entry trace and nothing else.
    static void expectOnlyTrace(const std::string& function) {
        const auto lines = ScriptedPlatform::get().log();
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].buffer, LOG_ID_MAIN);
        EXPECT_EQ(lines[0].priority, DLOG_INFO);
        EXPECT_EQ(lines[0].function, function);
    }

    support::TemporaryFolder folder;
};

TEST_F(FileTest, SaveReplacesTheContentOfAFile) {
    const std::string path = folder.write("file", "a long former content");
    EXPECT_TRUE(File(path).save("new"));
    EXPECT_EQ(support::readFile(path), "new");
    expectOnlyTrace("save");
}

TEST_F(FileTest, SaveOfNothingMakesAnEmptyFile) {
    EXPECT_TRUE(File(folder.file("flag")).save(""));
    EXPECT_TRUE(support::fileExists(folder.file("flag")));
    EXPECT_EQ(support::readFile(folder.file("flag")), "");
}

TEST_F(FileTest, SaveKeepsBytesAsTheyAre) {
    const std::string data("a\0b\r\n\xff", 6);
    EXPECT_TRUE(File(folder.file("file")).save(data));
    EXPECT_EQ(support::readFile(folder.file("file")), data);
}

TEST_F(FileTest, SaveIntoAFolderThatIsNotThereSaysSoAndFails) {
    const std::string path = folder.file("absent/file");
    EXPECT_FALSE(File(path).save("x"));
    EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_WARN,
                                                "Cannot open file, path is: " + path));
}

TEST_F(FileTest, SaveToAFullDeviceLogsTheDataAndFails) {
    const std::string data(1 << 20, 'd');
    EXPECT_FALSE(File("/dev/full").save(data));
    EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_WARN,
                                                "Cannot save data to file, data is: " + data));
}

TEST_F(FileTest, EmptyPathCannotBeUsed) {
    EXPECT_FALSE(File("").save("x"));
    EXPECT_FALSE(File("").exists());
    EXPECT_FALSE(File("").remove());
    EXPECT_FALSE(File(std::string(100000, 'p')).save("x"));
}

TEST_F(FileTest, RemoveTakesTheFileAway) {
    const std::string path = folder.write("file", "x");
    EXPECT_TRUE(File(path).remove());
    EXPECT_FALSE(support::fileExists(path));
}

TEST_F(FileTest, RemoveOfAMissingFileFailsWithNothingButTheTrace) {
    EXPECT_FALSE(File(folder.file("absent")).remove());
    expectOnlyTrace("remove");
}

TEST_F(FileTest, ExistenceIsWhetherThePathCanBeOpened) {
    const std::string path = folder.write("file", "");
    EXPECT_TRUE(File(path).exists());
    EXPECT_TRUE(File::exists(path));
    EXPECT_FALSE(File(folder.file("absent")).exists());
    EXPECT_FALSE(File::exists(folder.file("absent")));
    EXPECT_TRUE(File::exists(folder.path())) << "a folder counts";
}

TEST_F(FileTest, EachExistenceTestIsTracedOnce) {
    File::exists(folder.path());
    expectOnlyTrace("exists");
    ScriptedPlatform::get().clearLog();
    File(folder.path()).exists();
    expectOnlyTrace("exists");
}

TEST_F(FileTest, FileThatCannotBeReadDoesNotExist) {
    const std::string path = folder.write("file", "x");
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    const uid_t user = geteuid();
    if (user == 0) {
        ASSERT_EQ(seteuid(65534), 0) << "root may read everything";
    }
    const bool exists = File(path).exists();
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_FALSE(exists);
}

TEST_F(FileTest, PathComesBackAsGiven) {
    EXPECT_EQ(File("a/b").getPath(), "a/b");
}

}  // namespace
