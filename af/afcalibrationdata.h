#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "af/calibrationlines.h"

// The in-memory image of the focus calibration files on the persist partition, both text files
// of comma-separated lines ending in a CRC-16:
//
// - the AF file, one focus point per line: use flag, camera id, fuse ID, distance, DAC and
//   temperature. Points are keyed by sensor (fuse ID) and distance, so a module moved to another
//   camera position keeps them.
// - the PD-offset file, one record per sensor: use flag, camera id, fuse ID, the count N of
//   PD-offset values, the N values, and optionally 8 SFR values.
//
// One object serves one stage: init() or pdOffsetInit() loads a file, a writer changes the list
// in memory, flush() or pdOffsetFlush() rewrites the whole file.
class AfCalibrationData {
  public:
    // One point of the AF file (use flag, camera id, fuse ID, distance, DAC, temperature) and
    // one record of the PD-offset file (use flag, camera id, fuse ID, N, the N values and none or
    // 8 SFR texts), each held where its file's text holds it.
    using afCalData = CalibrationLines::Record;
    using pdOffsetCalData = CalibrationLines::Record;

    AfCalibrationData() = default;

    // Loads the AF file; a missing file is the normal first run and gives an empty list.
    bool init();
    bool parse();
    std::string getPath() { return path; }

    // The fitted sensor's fuse ID for a decimal camera id, or "0" after saying none is set.
    std::string getFuseId(std::string camera);

    // Index of the first point of `fuseId` at `dist` (exact texts), or -1.
    int find(std::string fuseId, std::string dist);

    // The DAC stored for `fuseId` at `dist`, or -1.
    int getDac(std::string& fuseId, int dist);

    // Rewrites the whole AF file from the list; false when it could not be written, and the old
    // file then stays as it was.
    bool flush();

    // Merges one focus point into the list. With a non-zero use flag the point must have a
    // usable temperature and DAC and match the sensor's own EEPROM AF points. False, with the
    // reason printed, when it is refused.
    bool write(const std::string& camera, int dist, int dac, int temp, int useFlag);

    // Whether the sensor's EEPROM AF points hold `dist` with a DAC within tolerance of `dac`.
    bool checkDacPass(const std::string& camera, int dist, int dac);

    // Appends the pieces of `text` between separators to `out`; no empty last piece.
    void splitAFInfoString(const std::string& text, std::vector<std::string>& out,
                           const std::string& sep);

    // Loads the PD-offset file; a missing file gives an empty list.
    void pdOffsetInit();
    void pdOffsetParse();
    std::string getPdOffsetPath() { return pdOffsetPath; }

    // Index of the first record of `fuseId`, or -1.
    int pdOffsetFind(std::string fuseId);

    // CRC-16 of the record: its first four texts, its N values and its SFR texts each followed
    // by ","; 0 for no record.
    int pdOffsetCheck(const pdOffsetCalData* record);

    // Rewrites the whole PD-offset file; false when it could not be written (the old file then
    // stays as it was).
    bool pdOffsetFlush();

    // Stores the comma-separated `pdOffset` values of the module fitted in `camera`, replacing
    // that module's values (its SFR data is kept) or adding a record.
    bool pdOffsetWrite(const std::string& camera, int pdOffsetLength, std::string pdOffset,
                       int useFlag);

    // Gives the first record of `camera` (by its text, whichever module) the 8 SFR values.
    bool pdOffsetSfrDataWrite(const std::string& camera, const std::string& sfrData);

    // Appends the values of the fitted module's record to the vectors once its CRC holds, and
    // returns the count of PD-offset values; -1 when there is no such record or its CRC is wrong.
    int getPdoffset(int camera, std::vector<float>& pdOffset, std::vector<float>& sfrData);

    // The two files in the persist directory. The camera table (common/cameras.h) gives the
    // fuse-ID and AF-information properties, and the modules that stand in for one another.
    static std::string afCalFilePath();
    static std::string pdOffsetCalFilePath();

  private:
    // N of a PD-offset record from its texts.
    static int valueCountOf(const std::vector<std::string_view>& texts);

    std::string path;
    std::string pdOffsetPath;
    CalibrationLines points{"AfCalibrationData"};
    CalibrationLines pdOffsets{"AfCalibrationData"};
};
