#include "platform/deviceroot.h"

#include <unistd.h>

#include "platform/host/hostenvironment.h"
#include "platform/host/hostlog.h"
#include "platform/host/propertystore.h"

const char* optoquillDeviceRoot() {
    return HostEnvironment::process().root.c_str();
}

void optoquillFileOwner(unsigned systemId, unsigned* uid, unsigned* gid) {
    const bool root = geteuid() == 0;
    *uid = root ? systemId : geteuid();
    *gid = root ? systemId : getegid();
}

void optoquillOpenDevice() {
    PropertyStore::process();
    openHostLog();
}
