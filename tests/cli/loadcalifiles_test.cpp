#include "cli/loadcalifiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/socketlistener.h"

namespace {

TEST(LoadCaliFiles, SendsTheBarePayload) {
    const std::string name = "optoquill-loadcalifiles-" + std::to_string(getpid());
    SocketListener listener(name);
    testing::internal::CaptureStdout();
    loadCaliFiles(name.c_str(), "awblsc");
    loadCaliFiles(name.c_str(), "pdoffset");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(listener.received(), (std::vector<std::string>{"awblsc", "pdoffset"}));
}

TEST(LoadCaliFiles, NoListenerIsReportedOnly) {
    testing::internal::CaptureStdout();
    loadCaliFiles("optoquill-nobody-listens-here", "afcal");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "socket init failed\n");
}

}  // namespace
