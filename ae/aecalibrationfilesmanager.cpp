#include "ae/aecalibrationfilesmanager.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "base/parseint.h"
#include "base/uniquefd.h"
#include "common/badnumber.h"
#include "common/fileattribute.h"

namespace {

const char kTag[] = "AeCalibrationFilesManager";
// Every camera of the camera map has an AE file.
constexpr CameraColumn kAeFile = &CameraRole::aeFile;
using Files = CalibrationFilesManager<AeCalibrationData>;

// The fuse ID's hexadecimal text as bytes, two digits each (a lone last digit alone); base-16
// conversion takes either letter case.
std::string fuseBytes(std::string_view hex) {
    std::string bytes;
    if (hex.size() < 2) return bytes;
    for (size_t i = 0; i < hex.size(); i += 2) {
        const std::string_view digits = hex.substr(i, 2);
        const std::optional<long long> value =
            parseInt(digits, INT32_MIN, INT32_MAX, Rest::ignore, 16);
        if (!value) abortOnBadNumber("fuse ID byte", digits);
        bytes.push_back(static_cast<char>(*value & 0xFF));
    }
    return bytes;
}

void appendLittleEndian(std::string* bytes, int value) {
    bytes->push_back(2);  // the value's length byte
    bytes->push_back(static_cast<char>(value & 0xFF));
    bytes->push_back(static_cast<char>((value >> 8) & 0xFF));
}

}  // namespace

AeCalibrationFilesManager::AeCalibrationFilesManager(std::string camera, std::string sourceFile)
    // The source is the temporary AE file, on shared storage.
    : files(std::move(camera), std::move(sourceFile), kAeFile, kTag, "ae", Links::refuse) {}

bool AeCalibrationFilesManager::parse() {
    const bool matchedBefore = files.fuseIdMatched();
    if (!matchedBefore) files.matchFuseId();
    return matchedBefore;
}

bool AeCalibrationFilesManager::write() {
    return files.write();
}

void AeCalibrationFilesManager::dump(std::string file) {
    Files::dump(file);
}

void AeCalibrationFilesManager::makeFile(const std::string& camera, const std::string& file,
                                         int luma, int gain, int exposure) {
    const CameraRole* role = Files::lookUp(kAeFile, camera);
    if (role == nullptr) {
        Files::printUnknownCamera(camera);
        return;
    }
    const std::string fuseId = fuseBytes(Files::readFuseId(kAeFile, role->roleId, kTag));

    std::string content(1, static_cast<char>(fuseId.size() & 0xFF));
    content += fuseId;
    appendLittleEndian(&content, luma);
    appendLittleEndian(&content, gain);
    appendLittleEndian(&content, exposure);

    // The file lies on shared storage: whatever stands at its name is replaced, never followed.
    unlink(file.c_str());
    UniqueFd fd(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                     kCalibrationFileMode));
    if (!fd.valid()) {
        fprintf(stdout, "Error:failed to open log file %s\n", file.c_str());
        return;
    }
    if (::write(fd.get(), content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
        // Not reported here: parse() refuses the short file with its size message.
    }
}
