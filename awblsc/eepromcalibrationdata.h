#pragma once

#include <cstddef>
#include <string>

#include "base/filereader.h"
#include "common/safefilewriter.h"

// One front camera's AWB/LSC calibration record, as the module's EEPROM gives it: the fuse ID, an
// AWB block and an LSC block, each guarded by a byte checksum (sum mod 255, plus 1). L is the
// fuse ID's byte count; the first 3 bytes of each block are outside its checksum.
//
//   0 fuselen | 1 fuseId (L) | 1+L reserved | 2+L awb info (12) | 14+L awb checksum
//   | 15+L reserved (19) | 34+L lsc info (1775) | 1809+L lsc checksum
class EepromCalibrationData {
  public:
    EepromCalibrationData() = default;

    // Reads a file (AwbLscRecord takes it apart) and checks both checksums, AWB first.
    bool parse(char const* file, Links links = Links::follow);

    // Stores the file's bytes unchanged.
    WriteResult write(char const* file);

    bool valid() { return isValid; }
    std::string& fuseId() { return fuseIdHex; }

    // Prints the file's layout and its bytes in hexadecimal.
    void dump();

  private:
    const char* path = nullptr;  // the caller's, from the last successful parse
    bool isValid = false;
    std::string data;  // the whole file
    std::string fuseIdHex;
};
