#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// The in-memory image of the focus calibration files on the persist partition. The AF file is
// text, one focus point per line: use flag, camera id, fuse ID, distance, DAC, temperature and
// the CRC-16 of the six texts, comma-separated. Points are keyed by sensor (fuse ID) and
// distance, so a module moved to another camera position keeps them.
//
// One object serves one stage: init() loads the file, write() merges a point in memory, flush()
// rewrites the whole file.
class AfCalibrationData {
  public:
    // One line of the AF file; every field but the CRC is kept as the text read or written.
    struct afCalData {
        std::string useFlag;  // "1" when written with a non-zero use flag
        std::string camera;   // camera id as given
        std::string fuseId;
        std::string dist;
        std::string dac;
        std::string temp;
        uint16_t crc = 0;
    };

    AfCalibrationData() = default;

    // Loads the AF file; a missing file is the normal first run and gives an empty list.
    bool init();
    bool parse();
    std::string getPath() { return path; }

    // The fitted sensor's fuse ID for a decimal camera id, or "0" after saying none is set.
    std::string getFuseId(std::string camera);

    // Index of the first point of `fuseId` at `dist` (exact texts), or -1.
    int find(std::string fuseId, std::string dist);

    // CRC-16 of the record's six texts, concatenated.
    int check(const afCalData* record);

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

    static const std::map<int, std::string> cameraFuseIdPropertyMap;
    static const std::map<int, std::string> cameraAfInfoPropertyMap;
    static const std::map<unsigned, std::vector<unsigned>> cameraBackupIdMap;
    static const std::map<int, std::string> cameraRoleFuseIdPropertyMap;
    static const std::string afCalFilePath;

  private:
    std::string path;
    std::vector<afCalData> afCalDataList;
};
