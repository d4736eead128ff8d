// SPDX-License-Identifier: Apache-2.0
// Saving, testing and removing one file.
#include <memory>
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

    // Expects that the log holds one entry trace and nothing else.
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

TEST_F(FileTest, DataThatAFullDeviceRefusesOnlyAtTheCloseIsNotNoticed) {
    EXPECT_TRUE(File("/dev/full").save("little"));
    expectOnlyTrace("save");
}

TEST_F(FileTest, EmptyOrEndlessPathCannotBeUsed) {
    for (const std::string& path : {std::string(), std::string(100000, 'p')}) {
        ScriptedPlatform::get().clearLog();
        EXPECT_FALSE(File(path).save("x"));
        EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_WARN,
                                                    "Cannot open file, path is: " + path));
        EXPECT_FALSE(File(path).exists());
        EXPECT_FALSE(File::exists(path));
        EXPECT_FALSE(File(path).remove());
        EXPECT_EQ(File(path).getPath(), path);
    }
}

TEST_F(FileTest, SaveOverAFolderFailsAndLeavesIt) {
    EXPECT_FALSE(File(folder.path()).save("x"));
    EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_WARN,
                                                "Cannot open file, path is: " + folder.path()));
    EXPECT_TRUE(File::exists(folder.path()));
}

TEST_F(FileTest, RemoveTakesAnEmptyFolderAndNoOther) {
    folder.write("full/file", "");
    EXPECT_FALSE(File(folder.file("full")).remove());
    EXPECT_TRUE(File(folder.file("full/file")).remove());
    EXPECT_TRUE(File(folder.file("full")).remove());
    EXPECT_FALSE(File::exists(folder.file("full")));
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

// Overrides every operation.
class OtherFile : public File {
  public:
    explicit OtherFile(bool& gone) : File("path"), m_gone(gone) {}
    ~OtherFile() override { m_gone = true; }
    bool remove() override { return true; }
    bool save(std::string data) override { return data == "other"; }
    bool exists() override { return true; }
    std::string getPath() override { return "other"; }

  private:
    bool& m_gone;
};

TEST_F(FileTest, EachOperationCanBeTakenOverByADerivedFile) {
    bool gone = false;
    std::unique_ptr<File> file = std::make_unique<OtherFile>(gone);
    EXPECT_TRUE(file->remove());
    EXPECT_TRUE(file->save("other"));
    EXPECT_TRUE(file->exists());
    EXPECT_EQ(file->getPath(), "other");
    file.reset();
    EXPECT_TRUE(gone);
    EXPECT_TRUE(ScriptedPlatform::get().log().empty());
}

TEST_F(FileTest, PathComesBackAsGiven) {
    EXPECT_EQ(File("a/b").getPath(), "a/b");
}

}  // namespace
