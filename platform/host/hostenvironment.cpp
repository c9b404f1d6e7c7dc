#include "platform/host/hostenvironment.h"

#include <cstdlib>

namespace {

std::string variable(const char* name, bool* isSet = nullptr) {
    const char* value = std::getenv(name);
    if (isSet != nullptr) *isSet = value != nullptr;
    return value != nullptr ? value : "";
}

HostEnvironment readEnvironment() {
    HostEnvironment environment;
    environment.root = variable("OPTOQUILL_ROOT");
    environment.propertiesFile = variable("OPTOQUILL_PROPERTIES", &environment.hasPropertiesFile);
    environment.logFile = variable("OPTOQUILL_LOG");
    environment.socketPrefix = variable("OPTOQUILL_SOCKET_PREFIX");
    return environment;
}

}  // namespace

const HostEnvironment& HostEnvironment::process() {
    static const HostEnvironment environment = readEnvironment();
    return environment;
}
