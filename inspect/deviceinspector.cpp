#include "inspect/deviceinspector.h"

#include <algorithm>
#include <cstdio>

#include "af/aflines.h"
#include "base/paths.h"
#include "base/text.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/safefilewriter.h"
#include "eeprom/eeprombindata.h"
#include "platform/deviceroot.h"

namespace {

std::string octal(unsigned mode) {
    char text[8];
    snprintf(text, sizeof text, "%04o", mode & 07777);
    return text;
}

std::string counted(size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// Calls `visit(number, line)` for each line as the loaders see them, numbered from 1.
template <typename Visit>
void forEachNumberedLine(std::string_view text, Visit visit) {
    size_t number = 0;
    forEachLine(text, [&](std::string_view line) { visit(++number, line); });
}

// The short name of a camera id as the AF and PD-offset lines carry it; empty for none.
std::string cameraNamed(std::string_view roleId) {
    const CameraRole* role = cameraByRoleIdText(roleId);
    return role == nullptr ? "" : std::string(role->shortName);
}

bool endsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// Consecutive records of one module that no fitted sensor has: one note for them all, so that a
// repaired device's history reads as one line per old module.
struct UnfittedRun {
    std::string fuseId;
    std::string camera;
    size_t firstLine = 0;
    size_t lastLine = 0;
    size_t count = 0;

    // Whether a record of `recordFuseId` ends this run (its note is due first).
    bool endedBy(std::string_view recordFuseId) const {
        return count > 0 && fuseId != recordFuseId;
    }

    void add(std::string_view recordFuseId, std::string_view roleId, size_t line) {
        if (count++ == 0) {
            fuseId = std::string(recordFuseId);
            camera = cameraNamed(roleId);
            firstLine = line;
        }
        lastLine = line;
    }

    std::string sentence(const std::string& file, const std::string& noun) const {
        const std::string lines =
            count == 1 ? "line " + std::to_string(firstLine)
                       : "lines " + std::to_string(firstLine) + " to " + std::to_string(lastLine);
        return file + " holds " + counted(count, noun) + " (" + lines + ") of fuse ID " +
               quoted(fuseId) + ", which no fitted sensor has.";
    }
};

}  // namespace

DeviceInspector::DeviceInspector(const PersistDirectory& directory, std::vector<ProductNeed> needs)
    : directory(directory), needs(std::move(needs)) {}

InspectReport DeviceInspector::inspect() {
    report = InspectReport();
    problemCounts.clear();
    noteCounts.clear();
    report.persistDirectory = directory.path();
    for (const CameraRole& role : kCameraRoles) {
        if (role.shortName.empty()) continue;
        InspectReport::Camera& camera = report.cameras.emplace_back();
        camera.roleId = role.roleId;
        camera.name = std::string(role.shortName);
        inspectCamera(&camera, role);
    }
    inspectAfFile();
    inspectPdOffsetFile();
    inspectCalibrationLog();
    inspectEntries();
    judgeNeeds();
    noteUnlisted(problemCounts, &report.problems);
    noteUnlisted(noteCounts, &report.notes);
    return report;
}

std::string* DeviceInspector::problem(const std::string& kind, const std::string& file,
                                      const std::string& camera, Scope scope) {
    return find(&report.problems, &problemCounts, kind, file, camera, scope);
}

std::string* DeviceInspector::note(const std::string& kind, const std::string& file,
                                   const std::string& camera, Scope scope) {
    return find(&report.notes, &noteCounts, kind, file, camera, scope);
}

std::string* DeviceInspector::find(InspectReport::Findings* findings, Counts* counts,
                                   const std::string& kind, const std::string& file,
                                   const std::string& camera, Scope scope) {
    ++findings->count;
    size_t& count = (*counts)[{kind, scope == Scope::file ? file : ""}];
    if (++count > kListLimit) return nullptr;
    findings->listed.push_back({kind, file, camera, ""});
    return &findings->listed.back().message;
}

void DeviceInspector::noteUnlisted(const Counts& counts, InspectReport::Findings* findings) {
    for (const auto& [group, count] : counts) {
        if (count > kListLimit)
            findings->unlisted.push_back({group.first, group.second, count - kListLimit});
    }
}

InspectReport::Presence DeviceInspector::readFile(const std::string& name,
                                                  const std::string& camera, std::string* bytes) {
    FileRead read = directory.read(name);
    std::string* message = nullptr;
    switch (read.status) {
        case FileRead::Status::ok:
            *bytes = std::move(read.bytes);
            return InspectReport::Presence::read;
        case FileRead::Status::absent:
            return InspectReport::Presence::absent;
        case FileRead::Status::tooLarge:
            if ((message = problem("size", name, camera, Scope::entries))) {
                *message = name + " is " + read.reason() + ", too large for a calibration file.";
            }
            return InspectReport::Presence::tooLarge;
        case FileRead::Status::link:
        case FileRead::Status::notRegular: {
            const PersistDirectory::Entry* entry = directory.find(name);
            const std::string type = entry == nullptr ? "" : entry->type;
            if ((message = problem("unreadable", name, camera, Scope::entries))) {
                *message = name +
                           (read.status == FileRead::Status::link ? " is a symbolic link"
                            : type == "directory"                 ? " is a directory"
                                                                  : " is not a regular file") +
                           (read.status == FileRead::Status::notRegular && type != "directory"
                                ? "."
                                : ", not a regular file.");
            }
            return InspectReport::Presence::unreadable;
        }
        case FileRead::Status::ioError:
            break;
    }
    if ((message = problem("unreadable", name, camera, Scope::entries))) {
        *message = name + " cannot be read: " + read.reason() + ".";
    }
    return InspectReport::Presence::unreadable;
}

void DeviceInspector::inspectCamera(InspectReport::Camera* camera, const CameraRole& role) {
    camera->sensor = readSensorFuseIdProperty(role);
    // The AF and PD-offset stores read their own property, where a tele position may fall back
    // on another module's.
    camera->focusSensor = readFocusFuseIdProperty(role.roleId);
    camera->fitted = camera->sensor.set() || camera->focusSensor.set();
    auto reportMalformed = [this, camera](const FuseIdProperty& sensor) {
        if (std::string* message = problem("property", "", camera->name)) {
            *message = "The fuse-ID property " + sensor.name + " of camera " + camera->name +
                       " is malformed: " + quoted(sensor.value) + ".";
        }
    };
    if (camera->sensor.set() && !camera->sensor.wellFormed) reportMalformed(camera->sensor);
    if (camera->focusSensor.set() && !camera->focusSensor.wellFormed &&
        camera->focusSensor.name != camera->sensor.name) {
        reportMalformed(camera->focusSensor);
    }
    inspectAe(camera, role);
    inspectAwbLsc(camera, role);
}

void DeviceInspector::inspectAe(InspectReport::Camera* camera, const CameraRole& role) {
    InspectReport::AeFile& ae = camera->ae;
    ae.name = std::string(role.aeFile);
    std::string bytes;
    ae.presence = readFile(ae.name, camera->name, &bytes);
    if (ae.presence != InspectReport::Presence::read) return;
    ae.record = AeRecord::decode(bytes);
    const AeRecord& record = ae.record;
    ae.fuseIdMatches = camera->sensor.wellFormed && record.fuseIdHex == camera->sensor.fuseId;
    std::string* message = nullptr;
    if (record.form == AeRecord::Form::badSize) {
        if ((message = problem("size", ae.name, camera->name))) {
            *message = ae.name + " has " + std::to_string(record.size) + " bytes, where its " +
                       std::to_string(record.fuseLength) + "-byte fuse ID calls for " +
                       std::to_string(record.fuseLength + 12) + ".";
        }
    } else if (record.form == AeRecord::Form::factory) {
        if ((message = problem("form", ae.name, camera->name))) {
            *message = ae.name + " is stored in factory form, without its CRC.";
        }
    } else if (!record.crcMatches()) {
        if ((message = problem("crc", ae.name, camera->name))) {
            *message = ae.name + " has CRC " + hex4(record.storedCrc) + " stored but " +
                       hex4(record.computedCrc) + " computed.";
        }
    }
    if (!ae.fuseIdMatches) otherFuseId(ae.name, record.fuseIdHex, *camera);
}

void DeviceInspector::inspectAwbLsc(InspectReport::Camera* camera, const CameraRole& role) {
    if (role.awbLscFile.empty()) return;
    camera->hasAwbLsc = true;
    InspectReport::AwbLscFile& file = camera->awbLsc;
    file.name = std::string(role.awbLscFile);
    std::string bytes;
    file.presence = readFile(file.name, camera->name, &bytes);
    if (file.presence != InspectReport::Presence::read) return;
    file.record = AwbLscRecord::decode(bytes);
    file.fuseIdMatches = camera->sensor.wellFormed && file.record.fuseIdHex == camera->sensor.fuseId;
    const std::pair<const char*, const AwbLscRecord::Block*> blocks[] = {{"AWB", &file.record.awb},
                                                                         {"LSC", &file.record.lsc}};
    std::string* message = nullptr;
    for (const auto& [blockName, block] : blocks) {
        if (!block->present) {
            if ((message = problem("size", file.name, camera->name))) {
                *message = file.name + " has " + std::to_string(file.record.size) +
                           " bytes, too few for its " + blockName + " checksum.";
            }
        } else if (!block->ok()) {
            if ((message = problem("checksum", file.name, camera->name))) {
                *message = file.name + " has " + blockName + " checksum " +
                           std::to_string(block->stored) + " stored but " +
                           std::to_string(block->computed) + " computed.";
            }
        }
    }
    if (!file.fuseIdMatches) otherFuseId(file.name, file.record.fuseIdHex, *camera);
}

void DeviceInspector::otherFuseId(const std::string& file, const std::string& fuseId,
                                  const InspectReport::Camera& camera) {
    const FuseIdProperty& sensor = camera.sensor;
    if (sensor.set() && !sensor.wellFormed) return;  // that problem is told already
    const std::string head =
        file + " is for fuse ID " + quoted(fuseId) + ", but camera " + camera.name;
    std::string* message = nullptr;
    if (!sensor.set()) {
        if ((message = note("unfitted", file, camera.name)))
            *message = head + " has no fitted sensor.";
    } else if ((message = problem("fuse-id", file, camera.name))) {
        *message = head + "'s fitted sensor has " + quoted(sensor.fuseId) + ".";
    }
}

InspectReport::Camera* DeviceInspector::cameraOfFocusFuseId(std::string_view fuseId) {
    for (InspectReport::Camera& camera : report.cameras) {
        if (camera.focusSensor.wellFormed && camera.focusSensor.fuseId == fuseId) return &camera;
    }
    return nullptr;
}

// What sets the AF and PD-offset files apart in the one walk over their lines.
struct DeviceInspector::LineFile {
    Decode decode;
    const char* recordName;
    // The rest of the sentence about a line the loader drops or stops on.
    std::string (*dropped)(const DecodedLine& line);
    // The record's identity in a CRC sentence, and what a wrong CRC costs.
    std::string (*identity)(const DecodedLine& line);
    const char* crcCost;
};

template <typename Visit>
void DeviceInspector::inspectLineFile(InspectReport::TextFile* file, std::string_view name,
                                      const LineFile& kind, Visit visit) {
    file->name = std::string(name);
    std::string bytes;
    file->presence = readFile(file->name, "", &bytes);
    if (file->presence != InspectReport::Presence::read) return;
    UnfittedRun run;
    auto noteRun = [&] {
        if (run.count == 0) return;
        if (std::string* message = note("unfitted", file->name, run.camera)) {
            *message = run.sentence(file->name, kind.recordName);
        }
        run = UnfittedRun();
    };
    size_t number = 0;
    forEachDecodedLine(bytes, kind.decode, true, [&](std::string_view, const DecodedLine& line) {
        ++number;
        ++file->lines;
        auto where = [file, number] {
            return "Line " + std::to_string(number) + " of " + file->name;
        };
        if (line.status != LineStatus::ok) {
            if (size_t* listed = file->droppedLines.add()) *listed = number;
            if (std::string* message = problem("dropped-line", file->name, "")) {
                *message = where() + kind.dropped(line);
            }
            return;
        }
        const std::string_view fuseId = line.fields[2];
        InspectReport::Camera* camera = cameraOfFocusFuseId(fuseId);
        const bool crcOk = line.storedCrc == line.computedCrc;
        if (!crcOk) {
            if (size_t* listed = file->crcFailures.add()) *listed = number;
            if (std::string* message =
                    problem("crc", file->name, camera == nullptr ? "" : camera->name)) {
                *message = where() + " (fuse ID " + quoted(fuseId) + kind.identity(line) +
                           ") has CRC " + std::to_string(line.storedCrc) + " stored but " +
                           std::to_string(line.computedCrc) + " computed" + kind.crcCost + ".";
            }
        }
        if (camera != nullptr || run.endedBy(fuseId)) noteRun();
        if (camera == nullptr) run.add(fuseId, line.fields[1], number);
        visit(static_cast<int>(number), line, camera, crcOk);
    });
    noteRun();
}

void DeviceInspector::inspectAfFile() {
    static const LineFile kAfLines = {
        decodeSplitAfLine, "AF point",
        [](const DecodedLine& line) {
            return " has " + counted(line.columnCount, "column") +
                   " instead of 7, so the next AF store drops it.";
        },
        [](const DecodedLine& line) { return ", distance " + std::string(line.fields[3]); }, ""};
    inspectLineFile(
        &report.afFile, kAfFileName, kAfLines,
        [this](int number, const DecodedLine& line, InspectReport::Camera* camera, bool crcOk) {
            InspectReport::AfPoint* point =
                camera != nullptr ? camera->afPoints.add() : report.unfittedAfPoints.add();
            if (point == nullptr) return;
            const auto& f = line.fields;
            *point = {number,
                      std::string(f[0]),
                      std::string(f[1]),
                      std::string(f[2]),
                      std::string(f[3]),
                      std::string(f[4]),
                      std::string(f[5]),
                      crcOk};
        });
}

void DeviceInspector::inspectPdOffsetFile() {
    static const LineFile kPdOffsetLines = {
        decodeSplitPdOffsetLine, "PD-offset record",
        [](const DecodedLine& line) -> std::string {
            if (line.status == LineStatus::lengthNotANumber) {
                return " has a value count that is not a number, so a PD-offset store stops "
                       "abnormally on it.";
            }
            return " has " + counted(line.columnCount, "field") +
                   ", a count no PD-offset record has, so the next PD-offset store drops it.";
        },
        [](const DecodedLine&) { return std::string(); }, ", so the read-back refuses it"};
    inspectLineFile(
        &report.pdOffsetFile, kPdOffsetFileName, kPdOffsetLines,
        [this](int number, const DecodedLine& line, InspectReport::Camera* camera, bool crcOk) {
            // The read-back takes a module's first record.
            InspectReport::PdOffsetRecord* record = nullptr;
            if (camera == nullptr) {
                record = report.unfittedPdOffsets.add();
            } else if (!camera->hasPdOffset) {
                camera->hasPdOffset = true;
                record = &camera->pdOffset;
            }
            if (record == nullptr) return;
            *record = {number,
                       std::string(line.fields[0]),
                       std::string(line.fields[1]),
                       std::string(line.fields[2]),
                       line.valueCount,
                       line.hasSfrData,
                       crcOk};
        });
}

void DeviceInspector::inspectEepromCopy(const std::string& name) {
    InspectReport::EepromCopy copy;
    copy.name = name;
    std::string bytes;
    copy.presence = readFile(name, "", &bytes);
    if (copy.presence == InspectReport::Presence::read) {
        copy.size = bytes.size();
        copy.fuseId = EepromBinRecord::upperCase(EepromBinRecord::fuseIdOfPath(name));
        // The export's own test: a short- or role-named fuse-ID property's whole value contains
        // the name's ID.
        for (InspectReport::Camera& camera : report.cameras) {
            const CameraRole& role = *cameraByRoleId(camera.roleId);
            for (std::string_view property : {role.fuseIdProperty, role.roleFuseIdProperty}) {
                const std::string value = readProperty(property);
                if (!value.empty() && EepromBinRecord::belongsTo(copy.fuseId, value)) {
                    copy.cameras.push_back(camera.name);
                    camera.hasEepromCopy = true;
                    break;
                }
            }
        }
        copy.record = EepromBinRecord::decode(bytes);
        copy.publishedChecksum = readProperty(eepromBinChecksumProperty);
        copy.checksumAgrees = copy.record.checksumAgrees(copy.publishedChecksum);
        std::string* message = nullptr;
        if (copy.cameras.empty() && (message = note("unfitted", name, "", Scope::entries))) {
            *message = name + " is an EEPROM copy for fuse ID " + quoted(copy.fuseId) +
                       ", which no fitted sensor has.";
        }
        if (!copy.record.hasChecksum) {
            if ((message = problem("size", name, "", Scope::entries))) {
                *message = name + " has " + std::to_string(copy.size) +
                           " bytes, too few for the checksum byte at offset " +
                           std::to_string(EepromBinRecord::checksumOffset) + ".";
            }
        } else if (copy.cameras.empty()) {
            // An old module's copy: the published checksum is the fitted module's.
        } else if (copy.publishedChecksum.empty()) {
            if ((message = problem("checksum", name, "", Scope::entries))) {
                *message =
                    name + " cannot be checked, as " + eepromBinChecksumProperty + " is not set.";
            }
        } else if (!copy.checksumAgrees) {
            if ((message = problem("checksum", name, "", Scope::entries))) {
                *message = name + " has checksum byte " + hexByte(copy.record.checksum) + ", but " +
                           eepromBinChecksumProperty + " is " + quoted(copy.publishedChecksum) + ".";
            }
        }
    }
    if (InspectReport::EepromCopy* listed = report.eepromCopies.add()) *listed = std::move(copy);
}

namespace {

// A calibration log line, "camera:<name>,<ae|awb>,result:<0|1>": false for anything else.
bool resultLine(std::string_view line, std::string_view* camera, bool* ae, int* result) {
    constexpr std::string_view kPrefix = "camera:";
    constexpr std::string_view kResult = ",result:";
    if (line.substr(0, kPrefix.size()) != kPrefix ||
        line.size() < kPrefix.size() + kResult.size() + 1) {
        return false;
    }
    const size_t comma = line.find(',');
    const size_t at = line.size() - kResult.size() - 1;
    if (line.substr(at, kResult.size()) != kResult || comma >= at) return false;
    const std::string_view kind = line.substr(comma + 1, at - comma - 1);
    const char value = line.back();
    if ((kind != "ae" && kind != "awb") || (value != '0' && value != '1')) return false;
    *camera = line.substr(kPrefix.size(), comma - kPrefix.size());
    *ae = kind == "ae";
    *result = value - '0';
    return true;
}

}  // namespace

void DeviceInspector::inspectCalibrationLog() {
    InspectReport::TextFile& log = report.calibrationLog;
    log.name = baseName(calibrationLogPath());
    std::string bytes;
    log.presence = readFile(log.name, "", &bytes);
    if (log.presence != InspectReport::Presence::read) return;
    forEachNumberedLine(bytes, [this, &log](size_t number, std::string_view line) {
        ++log.lines;
        std::string_view name;
        bool ae = false;
        int result = 0;
        if (!resultLine(line, &name, &ae, &result)) {
            if (size_t* listed = log.droppedLines.add()) *listed = number;
            if (std::string* message = problem("log", log.name, "")) {
                *message = "Line " + std::to_string(number) + " of " + log.name +
                           " is not a calibration result line.";
            }
            return;
        }
        for (InspectReport::Camera& camera : report.cameras) {
            if (camera.name == name) (ae ? camera.lastAeResult : camera.lastAwbResult) = result;
        }
    });
    for (const InspectReport::Camera& camera : report.cameras) {
        for (const auto& [what, result] : {std::pair<const char*, int>{"AE", camera.lastAeResult},
                                           {"AWB", camera.lastAwbResult}}) {
            if (result != 0) continue;
            const std::string sentence = std::string("The last ") + what + " result that " +
                                         log.name + " holds for camera " + camera.name +
                                         " is a failure";
            // A camera where no sensor is fitted now has nothing to calibrate.
            std::string* message = camera.sensor.set() ? problem("log", log.name, camera.name)
                                                       : note("log", log.name, camera.name);
            if (message != nullptr) {
                *message = sentence + (camera.sensor.set() ? "." : ", and it has no fitted sensor.");
            }
        }
    }
}

void DeviceInspector::inspectEntries() {
    std::map<std::string_view, const char*> roles = {
        {kAfFileName, "af"}, {kPdOffsetFileName, "pdoffset"}, {report.calibrationLog.name, "log"}};
    for (const CameraRole& role : kCameraRoles) {
        if (!role.aeFile.empty()) roles[role.aeFile] = "ae";
        if (!role.awbLscFile.empty()) roles[role.awbLscFile] = "awblsc";
    }
    unsigned ownerUid;
    unsigned ownerGid;
    optoquillFileOwner(kSystemId, &ownerUid, &ownerGid);
    for (const PersistDirectory::Entry& item : directory.entries()) {
        const std::string& name = item.name;
        auto known = roles.find(name);
        const std::string_view role = known != roles.end()                    ? known->second
                                      : SafeFileWriter::isTemporaryName(name) ? "temporary"
                                      : endsWith(name, ".bin")                ? "eeprom"
                                                                              : "unknown";
        if (InspectReport::Entry* entry = report.entries.add()) {
            *entry = {name, item.type, item.mode, item.uid, item.gid, std::string(role)};
        }
        std::string* message = nullptr;
        if (role == "temporary") {
            if ((message = problem("temporary", name, "", Scope::entries))) {
                *message = name + " is a temporary that an interrupted store left behind.";
            }
            continue;
        }
        if (role == "unknown") {
            if ((message = problem("unknown", name, "", Scope::entries))) {
                *message = name + " is not a file that optoquill writes.";
            }
            continue;
        }
        if (role == "eeprom") inspectEepromCopy(name);
        if (item.type != "regular") continue;  // reported as unreadable
        if (item.mode != kCalibrationFileMode &&
            (message = problem("mode", name, "", Scope::entries))) {
            *message = name + " has mode " + octal(item.mode) + " instead of " +
                       octal(kCalibrationFileMode) + ".";
        }
        if ((item.uid != ownerUid || item.gid != ownerGid) &&
            (message = problem("owner", name, "", Scope::entries))) {
            *message = name + " is owned by " + std::to_string(item.uid) + ":" +
                       std::to_string(item.gid) + " instead of " + std::to_string(ownerUid) + ":" +
                       std::to_string(ownerGid) + ".";
        }
    }
}

namespace {

// What a need of one kind looks at: the file, whether it holds the fitted module's calibration,
// and the words for it.
struct NeedFacts {
    std::string file;
    InspectReport::Presence presence = InspectReport::Presence::read;
    bool met = false;
    const char* what = "";
    std::string lacking;  // why a file that was read does not meet it; empty: not told
};

NeedFacts needFacts(NeedKind kind, const InspectReport& report,
                    const InspectReport::Camera& camera) {
    const std::string fuseId = quoted(camera.focusSensor.fuseId);
    switch (kind) {
        case NeedKind::ae:
            return {camera.ae.name, camera.ae.presence,
                    camera.ae.presence == InspectReport::Presence::read && camera.ae.fuseIdMatches,
                    "AE calibration", ""};
        case NeedKind::awblsc:
            return {camera.awbLsc.name, camera.awbLsc.presence,
                    camera.awbLsc.presence == InspectReport::Presence::read &&
                        camera.awbLsc.fuseIdMatches,
                    "AWB/LSC calibration", ""};
        case NeedKind::af:
            return {report.afFile.name, report.afFile.presence, camera.afPoints.count > 0,
                    "AF calibration",
                    report.afFile.name + " holds no AF point of fuse ID " + fuseId};
        case NeedKind::pdoffset:
            return {report.pdOffsetFile.name, report.pdOffsetFile.presence, camera.hasPdOffset,
                    "a PD offset",
                    report.pdOffsetFile.name + " holds no record of fuse ID " + fuseId};
        case NeedKind::eeprom:
            break;
    }
    return {"", InspectReport::Presence::read, camera.hasEepromCopy, "an EEPROM copy",
            "none is stored for fuse ID " + quoted(camera.sensor.fuseId)};
}

}  // namespace

void DeviceInspector::judgeNeeds() {
    for (const ProductNeed& need : needs) {
        InspectReport::Camera* camera = nullptr;
        for (InspectReport::Camera& candidate : report.cameras) {
            if (candidate.roleId == need.camera->roleId) camera = &candidate;
        }
        // The AF and PD-offset stores go by the focus sensor, the others by the sensor.
        const bool focus = need.kind == NeedKind::af || need.kind == NeedKind::pdoffset;
        const FuseIdProperty& sensor = focus ? camera->focusSensor : camera->sensor;
        const NeedFacts facts = needFacts(need.kind, report, *camera);
        report.needs.push_back({camera->name, std::string(needKindName(need.kind)), facts.met});
        // A need that another problem already explains (a file for another module, one that
        // cannot be read, a malformed property) is not told twice.
        std::string reason;
        if (!sensor.set()) {
            reason = "no sensor is fitted";
        } else if (facts.met || !sensor.wellFormed) {
            continue;
        } else if (facts.presence == InspectReport::Presence::absent) {
            reason = facts.file + " is absent";
        } else if (facts.presence == InspectReport::Presence::read && !facts.lacking.empty()) {
            reason = facts.lacking;
        } else {
            continue;
        }
        if (std::string* message = problem("missing", facts.file, camera->name)) {
            *message = "Camera " + camera->name + " needs " + facts.what + ", but " + reason + ".";
        }
    }
}
