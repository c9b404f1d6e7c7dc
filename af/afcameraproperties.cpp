// The property tables of AfCalibrationData and the lookup of a camera's property through them.
#include "af/afcameraproperties.h"

#include "af/afcalibrationdata.h"
#include "common/devicepaths.h"
#include "common/fuseidproperty.h"

const std::map<int, std::string> AfCalibrationData::cameraFuseIdPropertyMap = {
    {0, "vendor.camera.sensor.w.fuseID"},   {1, "vendor.camera.sensor.f.fuseID"},
    {20, "vendor.camera.sensor.t.fuseID"},  {21, "vendor.camera.sensor.u.fuseID"},
    {22, "vendor.camera.sensor.m.fuseID"},  {23, "vendor.camera.sensor.t4.fuseID"},
    {24, "vendor.camera.sensor.m2.fuseID"}, {25, "vendor.camera.sensor.d.fuseID"},
    {26, "vendor.camera.sensor.t2.fuseID"}, {27, "vendor.camera.sensor.t3.fuseID"},
    {28, "vendor.camera.sensor.t5.fuseID"}, {29, "vendor.camera.sensor.ta.fuseID"},
    {40, "vendor.camera.sensor.fd.fuseID"},
};

const std::map<int, std::string> AfCalibrationData::cameraAfInfoPropertyMap = {
    {0, "persist.vendor.camera.sensor.w.afInfo"},
    {1, "persist.vendor.camera.sensor.f.afInfo"},
    {20, "persist.vendor.camera.sensor.t.afInfo"},
    {21, "persist.vendor.camera.sensor.u.afInfo"},
    {22, "persist.vendor.camera.sensor.m.afInfo"},
    {23, "persist.vendor.camera.sensor.t4x.afInfo"},
    {24, "persist.vendor.camera.sensor.m2x.afInfo"},
    {25, "persist.vendor.camera.sensor.d.afInfo"},
    {40, "persist.vendor.camera.sensor.faux.afInfo"},
};

// Tele positions that can be fitted with one of several modules.
const std::map<unsigned, std::vector<unsigned>> AfCalibrationData::cameraBackupIdMap = {
    {20, {26, 27}},
    {23, {28, 29}},
};

const std::map<int, std::string> AfCalibrationData::cameraRoleFuseIdPropertyMap = {
    {0, "vendor.camera.sensor.rearMain.fuseID"},     {1, "vendor.camera.sensor.frontMain.fuseID"},
    {20, "vendor.camera.sensor.rearTele.fuseID"},    {21, "vendor.camera.sensor.rearUltra.fuseID"},
    {22, "vendor.camera.sensor.rearMacro.fuseID"},   {23, "vendor.camera.sensor.rearTele4x.fuseID"},
    {24, "vendor.camera.sensor.rearMacro2x.fuseID"}, {25, "vendor.camera.sensor.rearDepth.fuseID"},
    {40, "vendor.camera.sensor.frontAux.fuseID"},
};

const std::string AfCalibrationData::afCalFilePath = persistFile("com.nurvak.afc.bin");
const std::string AfCalibrationData::pdOffsetCalFilePath = persistFile("com.nurvak.pdoffset.bin");

std::string readCameraProperty(const std::map<int, std::string>& properties, int cameraId,
                               std::string* property) {
    auto own = properties.find(cameraId);
    if (own == properties.end()) return "";
    *property = own->second;
    std::string value = readProperty(own->second);
    if (!value.empty()) return value;
    auto backups = AfCalibrationData::cameraBackupIdMap.find(static_cast<unsigned>(cameraId));
    if (backups == AfCalibrationData::cameraBackupIdMap.end()) return "";
    for (unsigned backup : backups->second) {
        auto entry = properties.find(static_cast<int>(backup));
        if (entry == properties.end()) continue;
        value = readProperty(entry->second);
        if (!value.empty()) {
            *property = entry->second;
            return value;
        }
    }
    return "";
}
