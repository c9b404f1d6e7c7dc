#include "common/persistlock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

namespace {

std::string makeDirectory() {
    std::string pattern = testing::TempDir() + "persistlock-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    return mkdtemp(name.data()) != nullptr ? name.data() : "";
}

TEST(PersistLock, SecondHolderWaitsThenGivesUpWithAMessage) {
    std::string directory = makeDirectory();
    testing::internal::CaptureStdout();
    {
        PersistLock first(directory);
        ASSERT_TRUE(first.acquire());
        PersistLock second(directory, 100);
        EXPECT_FALSE(second.acquire());
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Error:persist directory " + directory +
                  " is in use by another optoquill, gave up after 100 ms\n");
    PersistLock afterRelease(directory, 100);
    EXPECT_TRUE(afterRelease.acquire());
    rmdir(directory.c_str());
}

TEST(PersistLock, MissingDirectoryDoesNotRefuse) {
    PersistLock lock(testing::TempDir() + "no-such-persist-directory", 100);
    EXPECT_TRUE(lock.acquire());
}

}  // namespace
