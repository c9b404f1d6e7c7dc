#pragma once

#include <string>

// What one invocation was asked to do, as the options gave it.
struct RunParameters {
    std::string camera;     // -n: camera role id
    std::string file;       // -f: calibration data file
    int iso = 0;            // -s
    std::string ae;         // -e: exposure text, converted by exposureValue
    std::string eeprom;     // -E: EEPROM blob to export
    int limux = 0;          // -l: luma
    int dist = -1;          // -d: object distance
    int dac = 0;            // -D: AF DAC
    int useflag = 0;        // -F
    int temp = 0;           // -t: sensor temperature
    std::string check;      // -c: fuse ID whose AF DAC is looked up
    bool dump = false;      // -i
    bool help = false;      // -h, or options that could not be parsed
    bool unscreen = false;  // -u: under-screen AWB/LSC
    std::string pdOffset;   // -o
    bool hasPdOffset = false;
    int pdOffsetLength = 0;       // -L
    std::string pdOffsetSfrData;  // -S
    bool hasPdOffsetSfrData = false;
};
