// Host stand-in for the platform's <cutils/sockets.h>: only what optoquill uses.
#pragma once

#include <sys/socket.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ANDROID_SOCKET_NAMESPACE_ABSTRACT 0

// Connects a local socket of `type` to `name`; returns the descriptor, or -1.
int socket_local_client(const char* name, int namespaceId, int type);

#ifdef __cplusplus
}
#endif
