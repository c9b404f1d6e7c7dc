#include "awblsc/eepromcalibrationdata.h"

#include <android/log.h>

#include <cstdio>

#include "common/filebytes.h"
#include "common/recordfile.h"

namespace {

const char kTag[] = "EEPROMCalibrationData";

constexpr size_t kAwbCoveredStart = 5;  // after the fuse ID: the AWB block's last 9 bytes
constexpr size_t kAwbCoveredEnd = 13;
constexpr size_t kLscCoveredStart = 37;  // the LSC block's last 1772 bytes
constexpr size_t kLscCoveredEnd = 1808;

}  // namespace

bool EepromCalibrationData::parse(char const* file) {
    std::vector<unsigned char> content;
    if (!readWholeFile(file, &content)) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "failed to open file %s", file);
        return false;
    }
    data = std::move(content);
    __android_log_print(ANDROID_LOG_INFO, kTag, "data file size %d", static_cast<int>(data.size()));

    const size_t fuseLength = data.empty() ? 0 : data[0];
    fuseIdHex += hexText(data, 1, fuseLength);

    if (!checkBlock("AWB", fuseLength + kAwbCoveredStart, fuseLength + kAwbCoveredEnd, file) ||
        !checkBlock("LSC", fuseLength + kLscCoveredStart, fuseLength + kLscCoveredEnd, file)) {
        return false;
    }
    path = file;
    isValid = true;
    return true;
}

bool EepromCalibrationData::checkBlock(const char* block, size_t from, size_t to,
                                       const char* file) const {
    const size_t storedAt = to + 1;
    if (storedAt >= data.size()) {
        fprintf(stdout, "%s information is cut short (file size %d), file %s is invalid!", block,
                static_cast<int>(data.size()), file);
        return false;
    }
    unsigned sum = 0;
    for (size_t i = from; i <= to; ++i) sum += data[i];
    const int checksum = static_cast<int>(sum % 255 + 1);
    const int stored = data[storedAt];
    if (checksum != stored) {
        fprintf(stdout, "%s information checksum is %d, checksum in file is %d, file %s is invalid!",
                block, checksum, stored, file);
        return false;
    }
    return true;
}

bool EepromCalibrationData::write(char const* file) {
    if (!isValid) return false;
    return storeRecordFile(file, data.data(), data.size(), kTag, ANDROID_LOG_INFO);
}

void EepromCalibrationData::dump() {
    if (!isValid) return;
    fprintf(stdout, "%s:\n", path);
    fprintf(stdout, "maintain format:\n");
    // The empty cell after "1 byte|" is part of the header as the factory tools know it.
    fprintf(stdout,
            "|1 byte |len byte|1 byte  |12 byte   |1 byte| |19 byte |1775 byte |1 byte      |\n");
    fprintf(stdout,
            "|fuselen|fuseId  |reserved|awb info |awb checksum |reserved|lsc info  |lsc "
            "checksum|\n");
    fprintf(stdout, "contents:\n%s\n", hexText(data).c_str());
}
