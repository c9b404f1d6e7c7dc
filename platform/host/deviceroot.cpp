#include "platform/deviceroot.h"

#include "platform/host/hostenvironment.h"

const char* optoquillDeviceRoot() {
    return HostEnvironment::process().root.c_str();
}
