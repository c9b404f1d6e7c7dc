#include "inspect/persistdirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/testfiles.h"

namespace {

// The audit's view: every entry as it is, sorted, a link never followed.
TEST(PersistDirectory, ListsEachEntryAsItIsAndReadsNoLink) {
    const std::string dir = makeScratchDirectory();
    writeFile(dir + "/b.bin", "bytes");
    ASSERT_EQ(chmod((dir + "/b.bin").c_str(), 0640), 0);
    ASSERT_EQ(mkdir((dir + "/a").c_str(), 0700), 0);
    ASSERT_EQ(symlink("b.bin", (dir + "/c").c_str()), 0);
    ASSERT_EQ(mkfifo((dir + "/d").c_str(), 0600), 0);
    PersistDirectory persist(dir);
    ASSERT_EQ(persist.open(), 0);
    std::string listed;
    for (const PersistDirectory::Entry& entry : persist.entries()) {
        char mode[8];
        snprintf(mode, sizeof mode, "%04o", entry.mode);
        listed += entry.name + " " + entry.type + " " + mode + " " +
                  (entry.uid == geteuid() && entry.gid == getegid() ? "mine" : "other") + "\n";
    }
    EXPECT_EQ(listed,
              "a directory 0700 mine\nb.bin regular 0640 mine\nc symlink 0777 mine\n"
              "d other 0600 mine\n");
    EXPECT_EQ(persist.read("b.bin").bytes, "bytes");
    EXPECT_EQ(persist.read("c").status, FileRead::Status::link);
    EXPECT_EQ(persist.find("c")->type, "symlink");
    EXPECT_EQ(persist.find("e"), nullptr);
    EXPECT_EQ(PersistDirectory(dir + "/e").open(), ENOENT);
    removeTree(dir);
}

}  // namespace
