// Stands in for the camera service on an emulated device: listens on abstract local sockets and
// appends "<socket name>: <payload>" to a file for every message received. Runs until killed.
//
//   camera-service-stub <output file> <prefix> <socket name>...

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/uniquefd.h"

namespace {

UniqueFd listenOn(const std::string& name) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (name.size() + 1 > sizeof address.sun_path) return UniqueFd();
    memcpy(address.sun_path + 1, name.data(), name.size());
    socklen_t length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!fd.valid() || bind(fd.get(), reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        listen(fd.get(), 16) != 0) {
        return UniqueFd();
    }
    return fd;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 4) {
        fprintf(stderr, "usage: %s <output file> <prefix> <socket name>...\n", argv[0]);
        return 2;
    }
    std::vector<std::string> names(argv + 3, argv + argc);
    std::vector<UniqueFd> listeners;
    std::vector<pollfd> polled;
    for (const std::string& name : names) {
        listeners.push_back(listenOn(argv[2] + name));
        if (!listeners.back().valid()) {
            fprintf(stderr, "cannot listen on %s%s\n", argv[2], name.c_str());
            return 1;
        }
        polled.push_back({listeners.back().get(), POLLIN, 0});
    }
    for (;;) {
        if (poll(polled.data(), polled.size(), -1) < 0) continue;
        for (size_t i = 0; i < polled.size(); ++i) {
            if ((polled[i].revents & POLLIN) == 0) continue;
            UniqueFd client(accept4(polled[i].fd, nullptr, nullptr, SOCK_CLOEXEC));
            if (!client.valid()) continue;
            std::string payload;
            char buffer[256];
            ssize_t count;
            while ((count = read(client.get(), buffer, sizeof buffer)) > 0) {
                payload.append(buffer, static_cast<size_t>(count));
            }
            if (FILE* out = fopen(argv[1], "a")) {
                fprintf(out, "%s: %s\n", names[i].c_str(), payload.c_str());
                fclose(out);
            }
        }
    }
}
