#include "platform/host/hostsockets.h"

#include <cutils/sockets.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstddef>
#include <string>

#include "tests/support/socketlistener.h"

namespace {

TEST(AbstractAddress, IsOneNulFollowedByTheNameBytes) {
    sockaddr_un address;
    socklen_t length = 0;
    ASSERT_TRUE(makeAbstractAddress("com.nurvak.loadCalibrationFiles", &address, &length));
    EXPECT_EQ(length, offsetof(sockaddr_un, sun_path) + 1 + 31);
    EXPECT_EQ(address.sun_path[0], '\0');
    EXPECT_EQ(std::string(address.sun_path + 1, 31), "com.nurvak.loadCalibrationFiles");
    EXPECT_FALSE(makeAbstractAddress(std::string(sizeof address.sun_path, 'x'), &address, &length));
}

TEST(SocketLocalClient, ReachesAListenerBoundTheAndroidWay) {
    const std::string name = "optoquill-hostsockets-" + std::to_string(getpid());
    SocketListener listener(name);
    int fd = socket_local_client(name.c_str(), ANDROID_SOCKET_NAMESPACE_ABSTRACT, SOCK_STREAM);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(write(fd, "afcal", 5), 5);
    close(fd);
    EXPECT_EQ(listener.received(), std::vector<std::string>{"afcal"});

    EXPECT_EQ(socket_local_client((name + ".other").c_str(), ANDROID_SOCKET_NAMESPACE_ABSTRACT,
                                  SOCK_STREAM),
              -1);
}

}  // namespace
