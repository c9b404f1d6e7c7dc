#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ae/aerecord.h"
#include "awblsc/awblscrecord.h"
#include "common/fuseidproperty.h"
#include "eeprom/eeprombinrecord.h"
#include "inspect/productneeds.h"

// How many lines, records or entries of one kind a report lists; the rest are only counted, so
// that a file of junk costs a few kilobytes of report.
constexpr size_t kListLimit = 20;

// What a problem or note is about, in the order of the names the reports give them, which is
// also the order in which what went unlisted is counted.
enum class FindingKind {
    checksum,
    crc,
    droppedLine,
    form,
    fuseId,
    log,
    missing,
    mode,
    owner,
    property,
    size,
    temporary,
    unfitted,
    unknown,
    unreadable,
};
inline constexpr std::string_view kFindingKinds[] = {
    "checksum", "crc",      "dropped-line", "form",      "fuse-id",  "log",     "missing",   "mode",
    "owner",    "property", "size",         "temporary", "unfitted", "unknown", "unreadable"};

inline std::string_view findingKindName(FindingKind kind) {
    return kFindingKinds[static_cast<size_t>(kind)];
}

// The first kListLimit items of a kind, and how many there are in all.
template <typename T>
struct Listing {
    std::vector<T> items;
    size_t count = 0;

    // Counts one more: room for it while it is among the first, else null.
    T* add() {
        ++count;
        if (items.size() >= kListLimit) return nullptr;
        return &items.emplace_back();
    }
    size_t unlisted() const { return count - items.size(); }
};

// Everything the audit found on one device, and the problems and notes it makes of that: a plain
// value that the text and JSON renderers only format.
struct InspectReport {
    // Whether a calibration file could be looked at.
    enum class Presence { absent, unreadable, tooLarge, read };

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
        size_t lines = 0;
        Listing<size_t> droppedLines;  // not loaded (AF, PD offset) or not a result line (log)
        Listing<size_t> crcFailures;   // kept by the loader, but their CRC does not verify
    };

    struct Camera {
        int roleId = 0;
        std::string name;            // the short name
        FuseIdProperty sensor;       // as the AE and AWB/LSC stores read it
        FuseIdProperty focusSensor;  // as the AF and PD-offset stores read it
        bool fitted = false;         // either property is set
        AeFile ae;
        bool hasAwbLsc = false;  // a front camera
        AwbLscFile awbLsc;
        Listing<AfPoint> afPoints;
        bool hasPdOffset = false;
        PdOffsetRecord pdOffset;
        bool hasEepromCopy = false;
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

    // What the product needs of one camera (--expect), and whether the device has it.
    struct Need {
        std::string camera;
        NeedKind kind;
        bool met = false;
    };

    // A problem (the calibration is not what the camera service needs) or a note (harmless
    // history, such as the records of a module no longer fitted).
    struct Finding {
        FindingKind kind;
        std::string file;     // the entry it is about, or empty
        std::string camera;   // the camera's short name, or empty
        std::string message;  // one sentence
    };

    // Findings of one kind in one file past the first kListLimit; an empty file stands for the
    // persist directory's entries taken together.
    struct Unlisted {
        FindingKind kind;
        std::string file;
        size_t count = 0;
    };

    struct Findings {
        std::vector<Finding> listed;
        std::vector<Unlisted> unlisted;
        size_t count = 0;  // listed and unlisted
    };

    std::string persistDirectory;
    std::vector<Need> needs;
    std::vector<Camera> cameras;
    TextFile afFile;
    Listing<AfPoint> unfittedAfPoints;  // of fuse IDs that no fitted sensor has
    TextFile pdOffsetFile;
    Listing<PdOffsetRecord> unfittedPdOffsets;
    Listing<EepromCopy> eepromCopies;
    TextFile calibrationLog;
    Listing<Entry> entries;
    Findings problems;
    Findings notes;
};
