#include "eeprom/eeprombindata.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <cstdio>
#include <set>

#include "common/cameras.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/inputfile.h"
#include "common/recordfile.h"
#include "eeprom/eeprombinrecord.h"

const char eepromBinChecksumProperty[] = "vendor.camera.sensor.qz.dualcal.checksum";

namespace {

const char kTag[] = "EepromBinData";

}  // namespace

bool EepromBinData::read(std::string const& path) {
    inputPath = path;
    FileRead read = readInputFile(path);
    if (!read.ok()) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "failed to open file %s", path.c_str());
        return false;
    }
    data = std::move(read.bytes);
    return true;
}

void EepromBinData::getAllFuseId(std::vector<std::string>& out) {
    // Short-named properties, then role-named ones; whole values are compared.
    for (CameraColumn column : {&CameraRole::fuseIdProperty, &CameraRole::roleFuseIdProperty}) {
        for (const CameraRole& role : kCameraRoles) {
            if ((role.*column).empty()) continue;
            char value[PROPERTY_VALUE_MAX];
            if (property_get(std::string(role.*column).c_str(), value, nullptr) >= 1) {
                out.push_back(value);
                __android_log_print(ANDROID_LOG_INFO, kTag, "fuseId:%s", value);
            }
        }
    }
    std::set<std::string> sorted(out.begin(), out.end());
    out.assign(sorted.begin(), sorted.end());
}

std::string EepromBinData::parsePath() {
    const std::string fuseId = EepromBinRecord::fuseIdOfPath(inputPath);
    __android_log_print(ANDROID_LOG_INFO, kTag, "path--fuseId:%s", fuseId.c_str());
    return fuseId;
}

bool EepromBinData::checkFuseIdPass() {
    std::vector<std::string> fuseIds;
    getAllFuseId(fuseIds);
    const std::string pathFuseId = EepromBinRecord::upperCase(parsePath());
    for (const std::string& fuseId : fuseIds) {
        if (EepromBinRecord::belongsTo(pathFuseId, fuseId)) return true;
    }
    __android_log_print(ANDROID_LOG_INFO, kTag, "path--fuseId:%s not match sensor fuseID",
                        pathFuseId.c_str());
    return false;
}

bool EepromBinData::check() {
    const EepromBinRecord record = EepromBinRecord::decode(data);
    if (!record.hasChecksum) {
        __android_log_print(
            ANDROID_LOG_ERROR, kTag, "data size %d is too short for the checksum at offset %d",
            static_cast<int>(data.size()), static_cast<int>(EepromBinRecord::checksumOffset));
        return false;
    }
    __android_log_print(ANDROID_LOG_INFO, kTag, "Total Checksum Offset = 0x%x", record.checksum);
    char value[PROPERTY_VALUE_MAX];
    if (property_get(eepromBinChecksumProperty, value, nullptr) < 1) {
        return false;
    }
    __android_log_print(ANDROID_LOG_INFO, kTag, "prop_value = %s", value);
    return record.checksumAgrees(value);
}

WriteResult EepromBinData::write(std::string const& path) {
    return storeRecordFile(path, data, kTag, "", ANDROID_LOG_DEBUG);
}

bool EepromBinData::process() {
    if (!checkFuseIdPass()) return false;
    const std::string name = parsePath();
    outputPath = persistDirectory() + name + ".bin";
    if (!check()) return false;
    const WriteResult result = write(outputPath);
    if (!result.stored()) return false;
    // A copy whose owner could not be set stays, but the export counts as failed.
    return reportFileAttribute(outputPath.c_str(), 0, result.ownerError);
}
