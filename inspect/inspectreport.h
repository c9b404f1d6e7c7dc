#pragma once

#include <string>
#include <vector>

#include "ae/aerecord.h"
#include "awblsc/awblscrecord.h"
#include "common/fuseidproperty.h"
#include "eeprom/eeprombinrecord.h"

// Everything the audit found on one device, and the problems it makes of that: a plain value
// that the text and JSON renderers only format.
struct InspectReport {
    // Whether a calibration file could be looked at.
    enum class Presence { absent, unreadable, read };

    struct AeFile {
        std::string name;
        Presence presence = Presence::absent;
        AeRecord record;
        bool fuseIdMatches = false;
    };

    struct AwbLscFile {
        std::string name;
        Presence presence = Presence::absent;
        AwbLscRecord record;
        bool fuseIdMatches = false;
    };

    // One AF line that the loader keeps.
    struct AfPoint {
        int line = 0;  // from 1
        std::string useFlag;
        std::string camera;
        std::string fuseId;
        std::string distance;
        std::string dac;
        std::string temperature;
        bool crcOk = false;
    };

    // One PD-offset line that the loader keeps.
    struct PdOffsetRecord {
        int line = 0;  // from 1
        std::string useFlag;
        std::string camera;
        std::string fuseId;
        int valueCount = 0;
        bool sfrPresent = false;
        bool crcOk = false;  // and so the read-back accepts it
    };

    // A line-oriented file: the AF file, the PD-offset file or the calibration log.
    struct TextFile {
        std::string name;
        Presence presence = Presence::absent;
        int lines = 0;
        std::vector<int> droppedLines;  // not loaded (AF, PD offset) or not a result line (log)
        std::vector<int> crcFailures;   // kept by the loader, but their CRC does not verify
    };

    struct Camera {
        int roleId = 0;
        std::string name;            // the short name
        FuseIdProperty sensor;       // as the AE and AWB/LSC stores read it
        FuseIdProperty focusSensor;  // as the AF and PD-offset stores read it
        AeFile ae;
        bool hasAwbLsc = false;  // a front camera
        AwbLscFile awbLsc;
        std::vector<AfPoint> afPoints;
        bool hasPdOffset = false;
        PdOffsetRecord pdOffset;
        int lastAeResult = -1;  // from the calibration log; -1 for none
        int lastAwbResult = -1;
    };

    struct EepromCopy {
        std::string name;
        Presence presence = Presence::absent;
        size_t size = 0;
        std::string fuseId;                // from the name, upper-cased
        std::vector<std::string> cameras;  // short names of the fitted sensors it belongs to
        EepromBinRecord record;
        std::string publishedChecksum;  // empty when the property is not set
        bool checksumAgrees = false;
    };

    struct Entry {
        std::string name;
        std::string type;  // "regular", "directory", "symlink" or "other"
        unsigned mode = 0;
        unsigned uid = 0;
        unsigned gid = 0;
        std::string role;  // "ae", "awblsc", "af", "pdoffset", "log", "eeprom", "temporary",
                           // "unknown"
    };

    struct Problem {
        std::string kind;     // "fuse-id", "crc", "checksum", "size", "form", "property",
                              // "dropped-line", "log", "unreadable", "mode", "owner", "temporary",
                              // "unknown"
        std::string file;     // the entry it is about, or empty
        std::string camera;   // the camera's short name, or empty
        std::string message;  // one sentence
    };

    std::string persistDirectory;
    std::vector<Camera> cameras;
    TextFile afFile;
    std::vector<AfPoint> unfittedAfPoints;  // of fuse IDs that no fitted sensor has
    TextFile pdOffsetFile;
    std::vector<PdOffsetRecord> unfittedPdOffsets;
    std::vector<EepromCopy> eepromCopies;
    TextFile calibrationLog;
    std::vector<Entry> entries;
    std::vector<Problem> problems;
};
