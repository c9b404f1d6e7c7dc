#include "platform/deviceroot.h"

#include "platform/host/hostenvironment.h"
#include "platform/host/hostlog.h"
#include "platform/host/propertystore.h"

const char* optoquillDeviceRoot() {
    return HostEnvironment::process().root.c_str();
}

void optoquillOpenDevice() {
    PropertyStore::process();
    openHostLog();
}
