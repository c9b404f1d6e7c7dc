#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "af/aflines.h"
#include "base/filereader.h"
#include "inspect/findingsbook.h"
#include "inspect/inspectreport.h"
#include "inspect/persistdirectory.h"
#include "inspect/productneeds.h"

// What the facts the audit gathers mean for the camera service: problems and notes, one
// sentence each. Each member judges one fact as the walk over the device comes to it, so that a
// directory of junk is judged in bounded memory and the findings come in the walk's order.
class DeviceJudge {
  public:
    // The two files of focus calibration lines.
    enum class LineFile { af, pdOffset };

    // Consecutive lines of one fuse ID that no fitted sensor has: a repaired device's history
    // is one note per old module.
    struct UnfittedRun {
        std::string fuseId;
        std::string camera;  // the short name of the lines' camera id, or empty
        size_t firstLine = 0;
        size_t lastLine = 0;
        size_t count = 0;

        // Whether a record of `recordFuseId` ends this run (its note is due first).
        bool endedBy(std::string_view recordFuseId) const;
        void add(std::string_view recordFuseId, std::string_view roleId, size_t line);
    };

    explicit DeviceJudge(FindingsBook* book) : book(*book) {}

    // A calibration file that could not be read, and what stands at its name (or null).
    InspectReport::Presence unreadable(const std::string& name, const std::string& camera,
                                       const FileRead& read, const PersistDirectory::Entry* entry);
    void sensors(const InspectReport::Camera& camera);
    void ae(const InspectReport::Camera& camera);
    void awbLsc(const InspectReport::Camera& camera);
    void droppedLine(LineFile kind, const std::string& file, size_t number, const DecodedLine& line);
    void crcFailure(LineFile kind, const std::string& file, size_t number, const DecodedLine& line,
                    const std::string& camera);
    void unfitted(LineFile kind, const std::string& file, const UnfittedRun& run);
    void eepromCopy(const InspectReport::EepromCopy& copy);
    void logLine(const std::string& file, size_t number);
    void lastResults(const InspectReport& report);
    // An entry that no store makes: a temporary left behind or an unknown file.
    void stray(const std::string& name, std::string_view role);
    // A calibration file's mode and owner, against the owner the stores give.
    void attributes(const PersistDirectory::Entry& entry, unsigned ownerUid, unsigned ownerGid);
    // Whether the device has what the product needs, added to the report.
    void needs(const std::vector<ProductNeed>& needs, InspectReport* report);

  private:
    // The finding about `file`, stored for `fuseId`, which is not the camera's fitted sensor's:
    // history where no sensor is fitted, a problem where another one is.
    void otherFuseId(const std::string& file, const std::string& fuseId,
                     const InspectReport::Camera& camera);

    FindingsBook& book;
};
