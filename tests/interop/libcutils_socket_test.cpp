// Runs against the platform's own libcutils: the camera service listens the way it does there.
#include <cutils/sockets.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "cli/loadcalifiles.h"
#include "tests/support/testfiles.h"

namespace {

TEST(RealLibcutils, ListenerMadeByLibcutilsReceivesTheExactPayload) {
    const std::string name = "optoquill-libcutils-" + std::to_string(getpid());
    int server = socket_local_server(name.c_str(), ANDROID_SOCKET_NAMESPACE_ABSTRACT, SOCK_STREAM);
    ASSERT_GE(server, 0);

    testing::internal::CaptureStdout();
    loadCaliFiles(name.c_str(), "pdoffset");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

    int client = accept(server, nullptr, nullptr);
    ASSERT_GE(client, 0);
    EXPECT_EQ(readToEnd(client), "pdoffset");
    close(server);
}

}  // namespace
