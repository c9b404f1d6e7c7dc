#include "common/fileattribute.h"

#include <gtest/gtest.h>

namespace {

TEST(FileAttribute, MissingFileGivesBothMessagesOnTheirOwnStreams) {
    const std::string file = testing::TempDir() + "optoquill-no-such-file";
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(applyFileAttribute(file.c_str()));
    changeFileAttribute(file.c_str());
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string err = testing::internal::GetCapturedStderr();
    const std::string chmodLine =
        "Error: fail to change permissions of " + file + " to 0644: No such file or directory";
    const std::string chownLine =
        "Error changing group ownership of " + file + " to 1000: No such file or directory";
    EXPECT_EQ(out, chmodLine + chmodLine);  // no newlines
    EXPECT_EQ(err, chownLine + chownLine);
}

}  // namespace
