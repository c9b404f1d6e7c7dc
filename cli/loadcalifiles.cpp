#include "cli/loadcalifiles.h"

#include <cutils/sockets.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "common/uniquefd.h"

void loadCaliFiles(char const* socketName, char const* payload) {
    UniqueFd fd(socket_local_client(socketName, ANDROID_SOCKET_NAMESPACE_ABSTRACT, SOCK_STREAM));
    if (!fd.valid()) {
        fprintf(stdout, "socket init failed\n");
        return;
    }
    // A camera service that hung up must cost a message, not the run: no SIGPIPE here.
    struct sigaction ignore = {};
    struct sigaction previous = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &previous);
    ssize_t sent = write(fd.get(), payload, strlen(payload));
    sigaction(SIGPIPE, &previous, nullptr);
    if (sent < 0) fprintf(stdout, "socket send failed\n");
}
