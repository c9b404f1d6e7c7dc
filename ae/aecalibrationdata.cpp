#include "ae/aecalibrationdata.h"

#include <android/log.h>

#include <cstdio>

#include "common/crc16ccitt.h"
#include "common/filebytes.h"
#include "common/recordfile.h"

namespace {

const char kTag[] = "AeCalibrationData";

}  // namespace

bool AeCalibrationData::parse(char const* file) {
    std::vector<unsigned char> content;
    if (!readWholeFile(file, &content)) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "failed to open file %s", file);
        return false;
    }
    data = std::move(content);
    const int size = static_cast<int>(data.size());
    __android_log_print(ANDROID_LOG_DEBUG, kTag, "data file size %d", size);

    const int fuseLength = static_cast<int>(byteAt(0));
    fuseIdHex += hexText(data, 1, fuseLength);

    // Each value is 2 bytes at a fixed offset, whatever its length byte says.
    const size_t base = 1 + fuseLength;
    const int lengths = fuseLength + byteAt(base) + byteAt(base + 3) + byteAt(base + 6);
    luma = static_cast<int>(shortAt(base + 1));
    gain = static_cast<int>(shortAt(base + 4));
    exposure = static_cast<int>(shortAt(base + 7));

    int covered = 0;
    if (size == fuseLength + 12) {
        hasCrc = true;
        covered = size - 2;
    } else if (size == fuseLength + 10) {
        __android_log_print(ANDROID_LOG_DEBUG, kTag, "factory source file");
        covered = size;
    } else {
        // The message has more conversions than values; the values it was never given are 0.
        __android_log_print(ANDROID_LOG_ERROR, kTag,
                            "%s: fileSize(%d) != (1 + %d + 1 + %d + 1 + %d + 1 + %d)", file, size,
                            lengths, 0, 0, 0);
        return false;
    }
    crc = CRC16CCITT(data.data(), covered).process();
    if (hasCrc) {
        const unsigned stored = byteAt(size - 2) * 256 + byteAt(size - 1);
        // Reported only: a record with a wrong CRC is still valid.
        if (stored != crc) {
            __android_log_print(ANDROID_LOG_ERROR, kTag, "mismatch crc (0x%04X, 0x%04X)", stored,
                                static_cast<unsigned>(crc));
        }
    }
    __android_log_print(ANDROID_LOG_DEBUG, kTag,
                        "file_byte=%d, luma=%d, gain=%d, exposure=%d, crc=0x%04x\n", size, luma,
                        gain, exposure, static_cast<unsigned>(crc));
    __android_log_print(ANDROID_LOG_DEBUG, kTag, "fuse byte=%d, id=%s\n", fuseLength,
                        fuseIdHex.c_str());
    path = file;
    isValid = true;
    return true;
}

bool AeCalibrationData::write(char const* file) {
    if (!isValid) return false;
    std::vector<unsigned char> stored = data;
    if (!hasCrc) {
        stored.push_back(static_cast<unsigned char>(crc >> 8));
        stored.push_back(static_cast<unsigned char>(crc & 0xFF));
    }
    return storeRecordFile(file, stored.data(), stored.size(), kTag, ANDROID_LOG_DEBUG);
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
