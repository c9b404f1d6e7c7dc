#include "platform/deviceroot.h"

const char* optoquillDeviceRoot() {
    return "";
}

void optoquillFileOwner(unsigned systemId, unsigned* uid, unsigned* gid) {
    *uid = systemId;
    *gid = systemId;
}

void optoquillOpenDevice() {}
