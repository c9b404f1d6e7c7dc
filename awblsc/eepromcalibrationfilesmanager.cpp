#include "awblsc/eepromcalibrationfilesmanager.h"

#include "common/devicepaths.h"

// The front cameras only.
const std::map<std::string, std::string> awbLscFilePathTable = {
    {"f", persistFile("com.nurvak.awblsccal.f.bin")},
    {"faux", persistFile("com.nurvak.awblsccal.faux.bin")},
};

const std::map<std::string, int> awbLscCameraRoleIdTable = {{"f", 1}, {"faux", 40}};

const std::map<int, std::string> awbLscFuseIdPropertyTable = {
    {1, "vendor.camera.sensor.f.fuseID"},
    {40, "vendor.camera.sensor.faux.fuseID"},
};

const std::map<int, std::string> awbLscRoleFuseIdPropertyTable = {
    {1, "vendor.camera.sensor.frontMain.fuseID"},
    {40, "vendor.camera.sensor.frontAux.fuseID"},
};

namespace {

const char kTag[] = "EepromCalibrationFilesManager";
const CalibrationFileTables kTables = {awbLscFilePathTable, awbLscCameraRoleIdTable,
                                       awbLscFuseIdPropertyTable, awbLscRoleFuseIdPropertyTable};
using Files = CalibrationFilesManager<EepromCalibrationData>;

}  // namespace

EepromCalibrationFilesManager::EepromCalibrationFilesManager(std::string camera,
                                                             std::string sourceFile)
    : files(std::move(camera), std::move(sourceFile), kTables, kTag, "awb", true) {}

bool EepromCalibrationFilesManager::parse() {
    return files.matchFuseId();
}

std::string EepromCalibrationFilesManager::propertyFuseid(int roleId) {
    return Files::readFuseId(kTables, roleId, kTag);
}

void EepromCalibrationFilesManager::write() {
    files.write();
}

void EepromCalibrationFilesManager::writeLog(bool ok) {
    files.writeLog(ok);
}

void EepromCalibrationFilesManager::dump(std::string file) {
    Files::dump(file);
}
