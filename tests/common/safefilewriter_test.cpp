#include "common/safefilewriter.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

class SafeFileWriterTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "safewriter-XXXXXX";
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        directory = name.data();
        target = directory + "/record.bin";
    }
    void TearDown() override {
        for (const std::string& entry : entries()) {
            std::string path = directory + "/" + entry;
            if (rmdir(path.c_str()) != 0) unlink(path.c_str());
        }
        rmdir(directory.c_str());
    }

    std::vector<std::string> entries() const {
        std::vector<std::string> names;
        DIR* dir = opendir(directory.c_str());
        while (dirent* entry = readdir(dir)) {
            std::string name = entry->d_name;
            if (name != "." && name != "..") names.push_back(name);
        }
        closedir(dir);
        return names;
    }

    static std::string contents(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    static void put(const std::string& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }

    std::string directory;
    std::string target;
};

TEST_F(SafeFileWriterTest, ReplacesTheFileAndLeavesNoTemporaryFile) {
    put(target, "old contents that are longer");
    SafeFileWriter writer(target);
    ASSERT_TRUE(writer.open());
    writer.write(std::string("new\0bytes", 9));
    ASSERT_TRUE(writer.commit());
    EXPECT_EQ(contents(target), std::string("new\0bytes", 9));
    EXPECT_EQ(entries(), std::vector<std::string>{"record.bin"});
    struct stat info;
    ASSERT_EQ(stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0644u);
}

TEST_F(SafeFileWriterTest, FailedRenameKeepsTheOldTargetAndCleansUp) {
    // A non-empty directory cannot be replaced by a file.
    ASSERT_EQ(mkdir(target.c_str(), 0755), 0);
    put(target + "/kept", "kept");
    SafeFileWriter writer(target);
    ASSERT_TRUE(writer.open());
    writer.write("new");
    EXPECT_FALSE(writer.commit());
    EXPECT_EQ(contents(target + "/kept"), "kept");
    EXPECT_EQ(entries(), std::vector<std::string>{"record.bin"});
    unlink((target + "/kept").c_str());
}

TEST_F(SafeFileWriterTest, AbandonedWriteLeavesTheOldFileAlone) {
    put(target, "old");
    {
        SafeFileWriter writer(target);
        ASSERT_TRUE(writer.open());
        writer.write("half of a new");
    }
    EXPECT_EQ(contents(target), "old");
    EXPECT_EQ(entries(), std::vector<std::string>{"record.bin"});
}

TEST_F(SafeFileWriterTest, MissingDirectoryCannotBeOpened) {
    SafeFileWriter writer(directory + "/missing/record.bin");
    EXPECT_FALSE(writer.open());
    writer.write("x");
    EXPECT_FALSE(writer.commit());
}

}  // namespace
