#include "platform/deviceroot.h"

const char* optoquillDeviceRoot() {
    return "";
}

void optoquillOpenDevice() {}
