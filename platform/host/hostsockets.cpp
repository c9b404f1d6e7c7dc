#include "platform/host/hostsockets.h"

#include <cutils/sockets.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include "base/uniquefd.h"
#include "platform/host/hostenvironment.h"

bool makeAbstractAddress(const std::string& name, sockaddr_un* address, socklen_t* length) {
    memset(address, 0, sizeof *address);
    if (name.size() + 1 > sizeof address->sun_path) return false;
    address->sun_family = AF_LOCAL;
    address->sun_path[0] = '\0';
    memcpy(address->sun_path + 1, name.data(), name.size());
    *length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return true;
}

int socket_local_client(const char* name, int namespaceId, int type) {
    if (namespaceId != ANDROID_SOCKET_NAMESPACE_ABSTRACT) {
        errno = ENOSYS;
        return -1;
    }
    sockaddr_un address;
    socklen_t length;
    if (!makeAbstractAddress(HostEnvironment::process().socketPrefix + name, &address, &length)) {
        errno = ENAMETOOLONG;
        return -1;
    }
    UniqueFd fd(socket(AF_LOCAL, type | SOCK_CLOEXEC, 0));
    if (!fd.valid()) return -1;
    if (connect(fd.get(), reinterpret_cast<sockaddr*>(&address), length) < 0) return -1;
    return fd.release();
}
