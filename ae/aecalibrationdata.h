#pragma once

#include <cstdint>
#include <string>

#include "base/filereader.h"
#include "common/safefilewriter.h"

// One camera's auto-exposure calibration record: the sensor fuse ID, luma, gain and exposure.
// Its file comes in a factory form (L + 10 bytes) and a maintain form that adds a CRC-16 of
// everything before it, high byte first (L + 12 bytes), where L is the fuse ID's byte count:
//
//   fuselen | fuseId (L) | 2 | luma LE16 | 2 | gain LE16 | 2 | exposure LE16 [| crc BE16]
class AeCalibrationData {
  public:
    AeCalibrationData() = default;

    // Reads and checks a file of either form (AeRecord takes it apart) and logs what it found. A
    // CRC that does not match is logged but accepted. A file on shared storage, where anyone may
    // plant a link, is read only as the file itself (Links::refuse).
    bool parse(char const* file, Links links = Links::follow);

    // Stores the record in maintain form; a factory-form record gains its CRC.
    WriteResult write(char const* file);

    bool valid() { return isValid; }
    std::string& fuseId() { return fuseIdHex; }

    // Prints the file's layout and its bytes in hexadecimal.
    void dump();

  private:
    const char* path = nullptr;  // the caller's, from the last successful parse
    uint16_t crc = 0;
    int luma = 0;
    int gain = 0;
    int exposure = 0;
    bool isValid = false;
    std::string data;  // the whole file
    std::string fuseIdHex;
    bool hasCrc = false;
};
