#include "tests/support/socketlistener.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "tests/support/testfiles.h"

SocketListener::SocketListener(const std::string& name) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path + 1, name.data(), name.size());  // sun_path[0] stays NUL: abstract
    socklen_t length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    fd = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0 || bind(fd, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        listen(fd, 16) != 0) {
        abort();
    }
}

SocketListener::~SocketListener() {
    close(fd);
}

std::vector<std::string> SocketListener::received() {
    std::vector<std::string> payloads;
    for (;;) {
        int client = accept4(fd, nullptr, nullptr, SOCK_CLOEXEC);  // blocking: read to the end
        if (client < 0) break;
        payloads.push_back(readToEnd(client));
    }
    return payloads;
}
