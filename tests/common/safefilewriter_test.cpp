#include "common/safefilewriter.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/testfiles.h"

namespace {

// The sweep that taking the lock runs deletes exactly what this names: one name too many there
// and a station deletes another's calibration.
TEST(SafeFileWriter, SweepsOnlyRegularFilesNamedAsItsTemporaries) {
    const std::string dir = makeScratchDirectory();
    // name, whether it is a temporary's name
    const std::pair<const char*, bool> names[] = {{".com.nurvak.afc.bin.Ab3xYz", true},
                                                  {".x.bin.012345", true},
                                                  {".com.nurvak.afc.bin.Ab3xY", false},
                                                  {".com.nurvak.afc.bin.Ab3xYz7", false},
                                                  {".com.nurvak.afc.bin.Ab-xYz", false},
                                                  {".com.nurvak.afc.txt.Ab3xYz", false},
                                                  {"x.com.nurvak.afc.bin.Ab3xYz", false},
                                                  {".bin.Ab3xYz", false},
                                                  {".Ab3xYz", false},
                                                  {"com.nurvak.afc.bin", false}};
    for (const auto& [name, temporary] : names) {
        EXPECT_EQ(SafeFileWriter::isTemporaryName(name), temporary) << name;
        writeFile(dir + "/" + name, "x");
    }
    ASSERT_EQ(mkdir((dir + "/.d.bin.Ab3xYz").c_str(), 0700), 0);
    ASSERT_EQ(symlink("com.nurvak.afc.bin", (dir + "/.l.bin.Ab3xYz").c_str()), 0);
    SafeFileWriter::removeStaleTemporaries(UniqueFd(open(dir.c_str(), O_RDONLY | O_DIRECTORY)));
    std::vector<std::string> kept = {".d.bin.Ab3xYz", ".l.bin.Ab3xYz"};
    for (const auto& [name, temporary] : names) {
        if (!temporary) kept.push_back(name);
    }
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(directoryEntries(dir), kept);
    removeTree(dir);
}

// A replacement takes the link's place instead of writing through it, gets the calibration
// mode, and leaves no temporary whether it is kept or refused at the last step.
TEST(SafeFileWriter, ReplacesTheNameNeverWhatALinkThereNames) {
    const std::string dir = makeScratchDirectory();
    writeFile(dir + "/elsewhere", "old");
    ASSERT_EQ(symlink("elsewhere", (dir + "/f.bin").c_str()), 0);
    const UniqueFd folder(open(dir.c_str(), O_RDONLY | O_DIRECTORY));
    WriteResult result = SafeFileWriter::replace(folder.get(), "f.bin", "new");
    ASSERT_TRUE(result.stored());
    struct stat entry;
    ASSERT_EQ(lstat((dir + "/f.bin").c_str(), &entry), 0);
    EXPECT_EQ(entry.st_mode, S_IFREG | 0644);
    EXPECT_EQ(readFile(dir + "/f.bin") + readFile(dir + "/elsewhere"), "newold");

    result = SafeFileWriter::replace(folder.get(), "f.bin", "newer", [] { return false; });
    EXPECT_EQ(result.failed, WriteResult::Step::moved);
    EXPECT_EQ(readFile(dir + "/f.bin"), "new");
    EXPECT_EQ(directoryEntries(dir), (std::vector<std::string>{"elsewhere", "f.bin"}));
    removeTree(dir);
}

}  // namespace
