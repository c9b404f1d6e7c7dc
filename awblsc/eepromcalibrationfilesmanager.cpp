#include "awblsc/eepromcalibrationfilesmanager.h"

namespace {

const char kTag[] = "EepromCalibrationFilesManager";
// The front cameras only.
constexpr CameraColumn kAwbLscFile = &CameraRole::awbLscFile;
using Files = CalibrationFilesManager<EepromCalibrationData>;

}  // namespace

EepromCalibrationFilesManager::EepromCalibrationFilesManager(std::string camera,
                                                             std::string sourceFile)
    : files(std::move(camera), std::move(sourceFile), kAwbLscFile, kTag, "awb", Links::follow) {}

bool EepromCalibrationFilesManager::parse() {
    return files.matchFuseId();
}

void EepromCalibrationFilesManager::write() {
    files.write();
}

void EepromCalibrationFilesManager::dump(std::string file) {
    Files::dump(file);
}
