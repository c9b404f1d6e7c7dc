#include "awblsc/eepromcalibrationdata.h"

#include <android/log.h>

#include <cstdio>

#include "awblsc/awblscrecord.h"
#include "base/text.h"
#include "common/inputfile.h"
#include "common/recordfile.h"

namespace {

const char kTag[] = "EEPROMCalibrationData";

// Whether a block's checksum holds; prints why not.
bool blockHolds(const char* name, const AwbLscRecord::Block& block, size_t size, const char* file) {
    if (!block.present) {
        fprintf(stdout, "%s information is cut short (file size %d), file %s is invalid!", name,
                static_cast<int>(size), file);
        return false;
    }
    if (!block.ok()) {
        fprintf(stdout, "%s information checksum is %d, checksum in file is %d, file %s is invalid!",
                name, block.computed, block.stored, file);
        return false;
    }
    return true;
}

}  // namespace

bool EepromCalibrationData::parse(char const* file, Links links) {
    FileRead read = links == Links::follow ? readInputFile(file) : readFile(file, links);
    if (!read.ok()) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "failed to open file %s", file);
        return false;
    }
    data = std::move(read.bytes);
    __android_log_print(ANDROID_LOG_INFO, kTag, "data file size %d", static_cast<int>(data.size()));

    const AwbLscRecord record = AwbLscRecord::decode(data);
    fuseIdHex += record.fuseIdHex;
    // AWB first: when it fails the LSC block is not reported.
    if (!blockHolds("AWB", record.awb, record.size, file) ||
        !blockHolds("LSC", record.lsc, record.size, file)) {
        return false;
    }
    path = file;
    isValid = true;
    return true;
}

WriteResult EepromCalibrationData::write(char const* file) {
    if (!isValid) return {WriteResult::Step::open, 0};
    return storeRecordFile(file, data, kTag, "", ANDROID_LOG_INFO);
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
