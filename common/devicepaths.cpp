#include "common/devicepaths.h"

#include "common/cameras.h"
#include "platform/deviceroot.h"

const std::string& persistDirectory() {
    static const std::string directory =
        std::string(optoquillDeviceRoot()) + "/mnt/vendor/persist/camera/";
    return directory;
}

std::string persistFile(std::string_view name) {
    return std::string(persistDirectory()).append(name);
}

const std::string& calibrationLogPath() {
    static const std::string path = persistFile(kCalibrationLogName);
    return path;
}

const std::string& tempAeFilePath() {
    static const std::string path = std::string(optoquillDeviceRoot()) + "/sdcard/tmp";
    return path;
}
