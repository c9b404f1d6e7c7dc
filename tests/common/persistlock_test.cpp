#include "common/persistlock.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "tests/support/testfiles.h"

namespace {

// Stores exclude each other and audits; audits share. Nothing is made in the directory.
TEST(PersistLock, ExclusiveForStoresSharedForAuditsAndNoLockFile) {
    const std::string dir = makeScratchDirectory() + "/";
    using Outcome = PersistLock::Outcome;
    const LockMode exclusive = LockMode::exclusive, shared = LockMode::shared;
    // the lock held, the one asked for next, and what asking gives within no wait
    const std::tuple<LockMode, LockMode, Outcome> cases[] = {{exclusive, exclusive, Outcome::busy},
                                                             {exclusive, shared, Outcome::busy},
                                                             {shared, exclusive, Outcome::busy},
                                                             {shared, shared, Outcome::held}};
    for (const auto& [first, second, outcome] : cases) {
        PersistLock held(dir, first, 0);
        ASSERT_EQ(held.acquire(), Outcome::held);
        PersistLock asked(dir, second, 0);
        EXPECT_EQ(asked.acquire(), outcome);
    }
    EXPECT_EQ(PersistLock(dir, exclusive, 0).acquire(), Outcome::held);  // all released
    EXPECT_EQ(PersistLock(dir + "missing/", exclusive, 0).acquire(), Outcome::unavailable);
    EXPECT_EQ(directoryEntries(dir), std::vector<std::string>{});
    removeTree(dir);
}

// While a lock is held, a persist file is reached through the locked directory, and nothing
// else is.
TEST(PersistLock, FilesOfTheLockedDirectoryAreOpenedThroughIt) {
    const std::string dir = makeScratchDirectory() + "/";
    EXPECT_EQ(FileAt::of(dir + "a.bin").directory, AT_FDCWD);
    {
        PersistLock lock(dir, LockMode::exclusive, 0);
        ASSERT_EQ(lock.acquire(), PersistLock::Outcome::held);
        const FileAt inside = FileAt::of(dir + "a.bin");
        EXPECT_EQ(std::make_tuple(inside.directory, inside.name, inside.lock),
                  std::make_tuple(lock.directoryFd(), std::string("a.bin"), &lock));
        const FileAt outside = FileAt::of(dir + "sub/a.bin");
        EXPECT_EQ(std::make_tuple(outside.directory, outside.name),
                  std::make_tuple(AT_FDCWD, dir + "sub/a.bin"));
        ASSERT_EQ(mkfifo((dir + "fifo").c_str(), 0600), 0);
        writeFile(dir + "a.bin", "");
        EXPECT_TRUE(FileAt::of(dir + "fifo").holdsSpecialFile());
        EXPECT_FALSE(FileAt::of(dir + "a.bin").holdsSpecialFile());
    }
    EXPECT_EQ(PersistLock::held(), nullptr);
    removeTree(dir);
}

}  // namespace
