#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

// The address Android's libcutils builds for a name in the abstract namespace: one NUL byte and
// the name's bytes, the length covering exactly those. False when the name does not fit.
bool makeAbstractAddress(const std::string& name, sockaddr_un* address, socklen_t* length);
