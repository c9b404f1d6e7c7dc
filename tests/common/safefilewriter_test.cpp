#include "common/safefilewriter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/tempdir.h"
#include "tests/support/testfiles.h"

namespace {

class SafeFileWriterTest : public testing::Test {
  protected:
    std::vector<std::string> entries() const { return directoryEntries(dir.path()); }

    TempDir dir;
    const std::string target = dir.file("record.bin");
};

TEST_F(SafeFileWriterTest, ReplacesTheFileAndLeavesNoTemporaryFile) {
    writeFile(target, "old contents that are longer");
    SafeFileWriter writer(target);
    ASSERT_TRUE(writer.open());
    writer.write(std::string("new\0bytes", 9));
    ASSERT_TRUE(writer.commit());
    EXPECT_EQ(readFile(target), std::string("new\0bytes", 9));
    EXPECT_EQ(entries(), std::vector<std::string>{"record.bin"});
    struct stat info;
    ASSERT_EQ(stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0644u);
}

TEST_F(SafeFileWriterTest, FailedRenameKeepsTheOldTargetAndCleansUp) {
    // A non-empty directory cannot be replaced by a file.
    ASSERT_EQ(mkdir(target.c_str(), 0755), 0);
    writeFile(target + "/kept", "kept");
    SafeFileWriter writer(target);
    ASSERT_TRUE(writer.open());
    writer.write("new");
    EXPECT_FALSE(writer.commit());
    EXPECT_EQ(readFile(target + "/kept"), "kept");
    EXPECT_EQ(entries(), std::vector<std::string>{"record.bin"});
}

TEST_F(SafeFileWriterTest, AbandonedWriteLeavesTheOldFileAlone) {
    writeFile(target, "old");
    {
        SafeFileWriter writer(target);
        ASSERT_TRUE(writer.open());
        writer.write("half of a new");
    }
    EXPECT_EQ(readFile(target), "old");
    EXPECT_EQ(entries(), std::vector<std::string>{"record.bin"});
}

TEST_F(SafeFileWriterTest, MissingDirectoryCannotBeOpened) {
    SafeFileWriter writer(dir.file("missing/record.bin"));
    EXPECT_FALSE(writer.open());
    writer.write("x");
    EXPECT_FALSE(writer.commit());
}

}  // namespace
