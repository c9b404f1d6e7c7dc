#include "ae/aecalibrationfilesmanager.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "common/decimaltext.h"
#include "common/devicepaths.h"
#include "common/uniquefd.h"

const std::map<std::string, std::string> aeFilePathTable = {
    {"w", persistFile("com.nurvak.aecal.w.bin")},
    {"f", persistFile("com.nurvak.aecal.f.bin")},
    {"t", persistFile("com.nurvak.aecal.t.bin")},
    {"u", persistFile("com.nurvak.aecal.u.bin")},
    {"m", persistFile("com.nurvak.aecal.m.bin")},
    {"t4x", persistFile("com.nurvak.aecal.t4x.bin")},
    {"m2x", persistFile("com.nurvak.aecal.m2x.bin")},
    {"d", persistFile("com.nurvak.aecal.d.bin")},
    {"faux", persistFile("com.nurvak.aecal.faux.bin")},
};

const std::map<std::string, int> aeCameraRoleIdTable = {
    {"w", 0},    {"f", 1},    {"t", 20}, {"u", 21},    {"m", 22},
    {"t4x", 23}, {"m2x", 24}, {"d", 25}, {"faux", 40},
};

const std::map<int, std::string> aeFuseIdPropertyTable = {
    {0, "vendor.camera.sensor.w.fuseID"},     {1, "vendor.camera.sensor.f.fuseID"},
    {20, "vendor.camera.sensor.t.fuseID"},    {21, "vendor.camera.sensor.u.fuseID"},
    {22, "vendor.camera.sensor.m.fuseID"},    {23, "vendor.camera.sensor.t4x.fuseID"},
    {24, "vendor.camera.sensor.m2x.fuseID"},  {25, "vendor.camera.sensor.d.fuseID"},
    {40, "vendor.camera.sensor.faux.fuseID"},
};

const std::map<int, std::string> aeRoleFuseIdPropertyTable = {
    {0, "vendor.camera.sensor.rearMain.fuseID"},     {1, "vendor.camera.sensor.frontMain.fuseID"},
    {20, "vendor.camera.sensor.rearTele.fuseID"},    {21, "vendor.camera.sensor.rearUltra.fuseID"},
    {22, "vendor.camera.sensor.rearMacro.fuseID"},   {23, "vendor.camera.sensor.rearTele4x.fuseID"},
    {24, "vendor.camera.sensor.rearMacro2x.fuseID"}, {25, "vendor.camera.sensor.rearDepth.fuseID"},
    {40, "vendor.camera.sensor.frontAux.fuseID"},
};

namespace {

const char kTag[] = "AeCalibrationFilesManager";
const CalibrationFileTables kTables = {aeFilePathTable, aeCameraRoleIdTable, aeFuseIdPropertyTable,
                                       aeRoleFuseIdPropertyTable};
using Files = CalibrationFilesManager<AeCalibrationData>;

// The fuse ID's hexadecimal text as bytes, two digits each (a lone last digit alone); base-16
// conversion takes either letter case.
std::vector<unsigned char> fuseBytes(const std::string& hex) {
    std::vector<unsigned char> bytes;
    if (hex.size() < 2) return bytes;
    for (size_t i = 0; i < hex.size(); i += 2) {
        const std::string digits = hex.substr(i, 2);
        char* end = nullptr;
        long value = strtol(digits.c_str(), &end, 16);
        if (end == digits.c_str()) abortOnBadNumber("fuse ID byte", digits);
        bytes.push_back(static_cast<unsigned char>(value & 0xFF));
    }
    return bytes;
}

void appendLittleEndian(std::vector<unsigned char>* bytes, int value) {
    bytes->push_back(2);  // the value's length byte
    bytes->push_back(static_cast<unsigned char>(value & 0xFF));
    bytes->push_back(static_cast<unsigned char>((value >> 8) & 0xFF));
}

}  // namespace

AeCalibrationFilesManager::AeCalibrationFilesManager(std::string camera, std::string sourceFile)
    // The source is the temporary AE file, on shared storage.
    : files(std::move(camera), std::move(sourceFile), kTables, kTag, "ae", false) {}

bool AeCalibrationFilesManager::parse() {
    const bool matchedBefore = files.fuseIdMatched();
    if (!matchedBefore) files.matchFuseId();
    return matchedBefore;
}

std::string AeCalibrationFilesManager::propertyFuseId(int roleId) {
    return Files::readFuseId(kTables, roleId, kTag);
}

bool AeCalibrationFilesManager::write() {
    return files.write();
}

void AeCalibrationFilesManager::writeLog(bool ok) {
    files.writeLog(ok);
}

void AeCalibrationFilesManager::dump(std::string file) {
    Files::dump(file);
}

void AeCalibrationFilesManager::makeFile(const std::string& camera, const std::string& file,
                                         int luma, int gain, int exposure) {
    auto roleId = aeCameraRoleIdTable.find(camera);
    if (roleId == aeCameraRoleIdTable.end()) {
        Files::printUnknownCamera(camera);
        return;
    }
    const std::vector<unsigned char> fuseId =
        fuseBytes(Files::readFuseId(kTables, roleId->second, kTag));

    std::vector<unsigned char> content;
    content.push_back(static_cast<unsigned char>(fuseId.size() & 0xFF));
    content.insert(content.end(), fuseId.begin(), fuseId.end());
    appendLittleEndian(&content, luma);
    appendLittleEndian(&content, gain);
    appendLittleEndian(&content, exposure);

    // The file lies on shared storage: whatever stands at its name is replaced, never followed.
    unlink(file.c_str());
    UniqueFd fd(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (!fd.valid()) {
        fprintf(stdout, "Error:failed to open log file %s\n", file.c_str());
        return;
    }
    if (::write(fd.get(), content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
        // Not reported here: parse() refuses the short file with its size message.
    }
}
