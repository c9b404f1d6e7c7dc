#include "eeprom/eeprombindata.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <cstdio>
#include <set>

#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/filebytes.h"
#include "common/recordfile.h"
#include "eeprom/eeprombinrecord.h"

const std::map<int, std::string> eepromBinRoleFuseIdPropertyTable = {
    {0, "vendor.camera.sensor.rearMain.fuseID"},     {1, "vendor.camera.sensor.frontMain.fuseID"},
    {20, "vendor.camera.sensor.rearTele.fuseID"},    {21, "vendor.camera.sensor.rearUltra.fuseID"},
    {22, "vendor.camera.sensor.rearMacro.fuseID"},   {23, "vendor.camera.sensor.rearTele4x.fuseID"},
    {24, "vendor.camera.sensor.rearMacro2x.fuseID"}, {25, "vendor.camera.sensor.rearDepth.fuseID"},
    {40, "vendor.camera.sensor.frontAux.fuseID"},
};

const std::map<int, std::string> eepromBinFuseIdPropertyTable = {
    {0, "vendor.camera.sensor.w.fuseID"},     {1, "vendor.camera.sensor.f.fuseID"},
    {20, "vendor.camera.sensor.t.fuseID"},    {21, "vendor.camera.sensor.u.fuseID"},
    {22, "vendor.camera.sensor.m.fuseID"},    {23, "vendor.camera.sensor.t4x.fuseID"},
    {24, "vendor.camera.sensor.m2x.fuseID"},  {25, "vendor.camera.sensor.d.fuseID"},
    {40, "vendor.camera.sensor.faux.fuseID"},
};

const char eepromBinChecksumProperty[] = "vendor.camera.sensor.qz.dualcal.checksum";

namespace {

const char kTag[] = "EepromBinData";

}  // namespace

bool EepromBinData::read(std::string const& path) {
    inputPath = path;
    std::vector<unsigned char> content;
    if (!readWholeFile(path.c_str(), &content)) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "failed to open file %s", path.c_str());
        return false;
    }
    data.assign(content.begin(), content.end());
    return true;
}

void EepromBinData::getAllFuseId(std::vector<std::string>& out) {
    for (const auto* table : {&eepromBinFuseIdPropertyTable, &eepromBinRoleFuseIdPropertyTable}) {
        for (const auto& [roleId, property] : *table) {
            char value[PROPERTY_VALUE_MAX];
            if (property_get(property.c_str(), value, nullptr) >= 1) {
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
    const EepromBinRecord record =
        EepromBinRecord::decode(std::vector<unsigned char>(data.begin(), data.end()));
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

bool EepromBinData::write(std::string const& path) {
    return storeRecordFile(path.c_str(), data.data(), data.size(), kTag, ANDROID_LOG_DEBUG);
}

bool EepromBinData::changeFileAttribute(char const* file) {
    return applyFileAttribute(file);
}

bool EepromBinData::process() {
    if (!checkFuseIdPass()) return false;
    const std::string name = parsePath();
    outputPath = persistDirectory() + name + ".bin";
    if (!check()) return false;
    if (!write(outputPath)) return false;
    // A copy whose mode or owner could not be set stays, but the export counts as failed.
    return changeFileAttribute(outputPath.c_str());
}
