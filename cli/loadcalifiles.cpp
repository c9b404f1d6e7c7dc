#include "cli/loadcalifiles.h"

#include <cutils/sockets.h>
#include <sys/socket.h>

#include <cstdio>
#include <cstring>

#include "base/uniquefd.h"

void loadCaliFiles(char const* socketName, char const* payload) {
    UniqueFd fd(socket_local_client(socketName, ANDROID_SOCKET_NAMESPACE_ABSTRACT, SOCK_STREAM));
    if (!fd.valid()) {
        fprintf(stdout, "socket init failed\n");
        return;
    }
    // A camera service that hung up must cost a message, not the run: no SIGPIPE for this send.
    const ssize_t sent = send(fd.get(), payload, strlen(payload), MSG_NOSIGNAL);
    // A short send counts as sent: the payload is a few bytes, and the service reads no more.
    if (sent < 0) fprintf(stdout, "socket send failed\n");
}
