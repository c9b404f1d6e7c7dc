#pragma once

#include <string>

// The variables that stand in for the device on the host. They are read once, at start-up.
struct HostEnvironment {
    // Each empty when its variable is unset or empty.
    std::string root;            // OPTOQUILL_ROOT: the device's root folder, no trailing '/'
    std::string propertiesFile;  // OPTOQUILL_PROPERTIES: the system properties
    std::string logFile;         // OPTOQUILL_LOG: where the Android log lines go
    std::string socketPrefix;    // OPTOQUILL_SOCKET_PREFIX: put in front of every socket name

    static const HostEnvironment& process();
};
