#pragma once

#include <string>
#include <vector>

#include "common/safefilewriter.h"

// Copies a camera module's EEPROM calibration blob (the dual-camera calibration data) to the
// persist partition, under the fuse ID its file name carries, once that fuse ID belongs to a
// fitted sensor and the blob's checksum byte (offset 8099) agrees with the one the camera stack
// published.
class EepromBinData {
  public:
    EepromBinData() = default;
    ~EepromBinData() = default;

    // Takes the blob at `path`; false when it cannot be read.
    bool read(std::string const& path);

    // The whole export; true only when the copy was written and given its mode and owner.
    bool process();

    // Whether a fitted sensor's fuse ID contains the file name's (upper-cased).
    bool checkFuseIdPass();

    // The fuse ID of the input path: the name after the last '/' up to the path's first ".bin",
    // lower-cased.
    std::string parsePath();

    // Whether the checksum byte agrees with "vendor.camera.sensor.qz.dualcal.checksum".
    bool check();

    // Stores the blob at `path`, with the calibration files' mode and owner.
    WriteResult write(std::string const& path);

    // The fitted sensors' fuse IDs, added to `out`, de-duplicated and sorted.
    void getAllFuseId(std::vector<std::string>& out);

  private:
    std::string inputPath;
    std::string outputPath;
    std::string data;  // the whole blob
};

// The property holding the dual-camera calibration blob's checksum, as two hexadecimal digits.
extern const char eepromBinChecksumProperty[];
