#include "common/devicepaths.h"

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
    // "nurak", not "nurvak": the camera service reads the log under this name.
    static const std::string path = persistFile("com.nurak.camera.checksum.bin");
    return path;
}

const std::string& tempAeFilePath() {
    static const std::string path = std::string(optoquillDeviceRoot()) + "/sdcard/tmp";
    return path;
}
