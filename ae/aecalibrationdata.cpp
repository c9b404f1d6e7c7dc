#include "ae/aecalibrationdata.h"

#include <android/log.h>

#include <cstdio>

#include "ae/aerecord.h"
#include "base/text.h"
#include "common/inputfile.h"
#include "common/recordfile.h"

namespace {

const char kTag[] = "AeCalibrationData";

}  // namespace

bool AeCalibrationData::parse(char const* file, Links links) {
    // A path from the command line is named with the reason; the store's own file is not.
    FileRead read = links == Links::follow ? readInputFile(file) : readFile(file, links);
    if (!read.ok()) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "failed to open file %s", file);
        return false;
    }
    data = std::move(read.bytes);
    const int size = static_cast<int>(data.size());
    __android_log_print(ANDROID_LOG_DEBUG, kTag, "data file size %d", size);

    const AeRecord record = AeRecord::decode(data);
    fuseIdHex += record.fuseIdHex;
    luma = record.luma;
    gain = record.gain;
    exposure = record.exposure;
    if (record.form == AeRecord::Form::maintain) {
        hasCrc = true;
    } else if (record.form == AeRecord::Form::factory) {
        __android_log_print(ANDROID_LOG_DEBUG, kTag, "factory source file");
    } else {
        // The message has more conversions than values; the values it was never given are 0.
        __android_log_print(ANDROID_LOG_ERROR, kTag,
                            "%s: fileSize(%d) != (1 + %d + 1 + %d + 1 + %d + 1 + %d)", file, size,
                            record.lengthSum, 0, 0, 0);
        return false;
    }
    crc = record.computedCrc;
    if (hasCrc) {
        // Reported only: a record with a wrong CRC is still valid.
        if (record.storedCrc != crc) {
            __android_log_print(ANDROID_LOG_ERROR, kTag, "mismatch crc (0x%04X, 0x%04X)",
                                static_cast<unsigned>(record.storedCrc), static_cast<unsigned>(crc));
        }
    }
    __android_log_print(ANDROID_LOG_DEBUG, kTag,
                        "file_byte=%d, luma=%d, gain=%d, exposure=%d, crc=0x%04x\n", size, luma,
                        gain, exposure, static_cast<unsigned>(crc));
    __android_log_print(ANDROID_LOG_DEBUG, kTag, "fuse byte=%d, id=%s\n", record.fuseLength,
                        fuseIdHex.c_str());
    path = file;
    isValid = true;
    return true;
}

WriteResult AeCalibrationData::write(char const* file) {
    if (!isValid) return {WriteResult::Step::open, 0};
    std::string stored = data;
    if (!hasCrc) {
        stored.push_back(static_cast<char>(crc >> 8));
        stored.push_back(static_cast<char>(crc & 0xFF));
    }
    return storeRecordFile(file, stored, kTag, "", ANDROID_LOG_DEBUG);
}

void AeCalibrationData::dump() {
    if (!isValid) return;
    fprintf(stdout, "%s:\n", path);
    if (hasCrc) {
        fprintf(stdout, "maintain format:\n");
        fprintf(stdout,
                "|1 byte |len byte|1 byte |len byte|1 byte |len byte|1 byte     |len byte|2 "
                "byte|\n");
        fprintf(stdout,
                "|fuselen|fuseId  |lumalen|luma    |gainlen|gain    |exposurelen|exposure|crc  "
                " |\n");
    } else {
        fprintf(stdout, "factor format:\n");
        fprintf(stdout,
                "|1 byte |len byte|1 byte |len byte|1 byte |len byte|1 byte     |len byte|\n");
        fprintf(stdout,
                "|fuselen|fuseId  |lumalen|luma    |gainlen|gain    |exposurelen|exposure|\n");
    }
    fprintf(stdout, "contents:\n%s\n", hexText(data).c_str());
}
