#include "common/persistlock.h"

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

}  // namespace
