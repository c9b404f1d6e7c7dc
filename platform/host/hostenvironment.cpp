#include "platform/host/hostenvironment.h"

#include <cstdlib>

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

HostEnvironment readEnvironment() {
    HostEnvironment environment;
    // The device paths add their own '/': "root/" must not make "root//mnt/...".
    environment.root = variable("OPTOQUILL_ROOT");
    while (!environment.root.empty() && environment.root.back() == '/') environment.root.pop_back();
    environment.propertiesFile = variable("OPTOQUILL_PROPERTIES");
    environment.logFile = variable("OPTOQUILL_LOG");
    environment.socketPrefix = variable("OPTOQUILL_SOCKET_PREFIX");
    return environment;
}

}  // namespace

const HostEnvironment& HostEnvironment::process() {
    static const HostEnvironment environment = readEnvironment();
    return environment;
}
