#include "inspect/deviceinspector.h"

#include <cstdio>
#include <cstdlib>
#include <map>

#include "ae/aecalibrationfilesmanager.h"
#include "af/afcalibrationdata.h"
#include "af/aflines.h"
#include "awblsc/eepromcalibrationfilesmanager.h"
#include "cli/cameramap.h"
#include "common/calibrationfilesmanager.h"
#include "common/devicepaths.h"
#include "eeprom/eeprombindata.h"

namespace {

constexpr unsigned kMode = 0644;
constexpr unsigned kOwner = 1000;  // system, the camera service's reader

std::string baseName(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string hex4(unsigned value) {
    char text[8];
    snprintf(text, sizeof text, "0x%04X", value & 0xFFFF);
    return text;
}

std::string octal(unsigned mode) {
    char text[8];
    snprintf(text, sizeof text, "%04o", mode & 07777);
    return text;
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

// The lines of a text file as the loaders see them: split at "\n", a last line without one
// included.
std::vector<std::string> linesOf(const std::vector<unsigned char>& bytes) {
    std::vector<std::string> lines;
    const std::string text(bytes.begin(), bytes.end());
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

// The safe writer's temporaries are ".<name>.XXXXXX".
bool isTemporary(const std::string& name) {
    if (name.size() < 9 || name[0] != '.') return false;
    const size_t dot = name.rfind('.');
    return dot > 1 && name.size() - dot == 7;
}

// The short name of a camera id as the AF and PD-offset lines carry it; empty for none.
std::string cameraNamed(const std::string& roleId) {
    auto entry = cameraMap.find(roleId);
    return entry == cameraMap.end() ? "" : entry->second;
}

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

const CalibrationFileTables kAeTables = {aeFilePathTable, aeCameraRoleIdTable,
                                         aeFuseIdPropertyTable, aeRoleFuseIdPropertyTable};
const CalibrationFileTables kAwbLscTables = {awbLscFilePathTable, awbLscCameraRoleIdTable,
                                             awbLscFuseIdPropertyTable,
                                             awbLscRoleFuseIdPropertyTable};

}  // namespace

DeviceInspector::DeviceInspector(const PersistDirectory& directory) : directory(directory) {}

InspectReport DeviceInspector::inspect() {
    report = InspectReport();
    report.persistDirectory = directory.path();
    for (const auto& [roleId, name] : cameraMap) {
        InspectReport::Camera camera;
        camera.roleId = atoi(roleId.c_str());
        camera.name = name;
        report.cameras.push_back(camera);
    }
    for (InspectReport::Camera& camera : report.cameras) inspectCamera(&camera);
    inspectAfFile();
    inspectPdOffsetFile();
    inspectCalibrationLog();
    inspectEntries();
    return report;
}

void DeviceInspector::problem(const std::string& kind, const std::string& file,
                              const std::string& camera, const std::string& message) {
    report.problems.push_back({kind, file, camera, message});
}

InspectReport::Presence DeviceInspector::readFile(const std::string& name,
                                                  std::vector<unsigned char>* bytes,
                                                  const std::string& camera) {
    switch (directory.read(name, bytes)) {
        case PersistDirectory::Read::ok:
            return InspectReport::Presence::read;
        case PersistDirectory::Read::absent:
            return InspectReport::Presence::absent;
        case PersistDirectory::Read::notRegular:
            problem("unreadable", name, camera,
                    name + " is a " + directory.find(name)->type + ", not a regular file.");
            return InspectReport::Presence::unreadable;
        case PersistDirectory::Read::failed:
            break;
    }
    problem("unreadable", name, camera, name + " cannot be read.");
    return InspectReport::Presence::unreadable;
}

void DeviceInspector::inspectCamera(InspectReport::Camera* camera) {
    camera->sensor =
        CalibrationFilesManager<AeCalibrationData>::lookUpFuseId(kAeTables, camera->roleId);
    // The AF and PD-offset stores read their own table, where a tele position may fall back on
    // another module's property.
    auto focusProperty = [](int id) -> const std::string* {
        auto entry = AfCalibrationData::cameraFuseIdPropertyMap.find(id);
        return entry == AfCalibrationData::cameraFuseIdPropertyMap.end() ? nullptr : &entry->second;
    };
    std::vector<int> focusIds = {camera->roleId, -1, -1};
    auto backups = AfCalibrationData::cameraBackupIdMap.find(static_cast<unsigned>(camera->roleId));
    if (backups != AfCalibrationData::cameraBackupIdMap.end()) {
        for (size_t i = 0; i < backups->second.size() && i < 2; ++i) {
            focusIds[i + 1] = static_cast<int>(backups->second[i]);
        }
    }
    camera->focusSensor = readFuseIdProperty(
        {focusProperty(focusIds[0]), focusProperty(focusIds[1]), focusProperty(focusIds[2])});

    auto reportMalformed = [this, camera](const FuseIdProperty& sensor) {
        problem("property", "", camera->name,
                "The fuse-ID property " + sensor.name + " of camera " + camera->name +
                    " is malformed: " + quoted(sensor.value) + ".");
    };
    if (camera->sensor.set() && !camera->sensor.wellFormed) reportMalformed(camera->sensor);
    if (camera->focusSensor.set() && !camera->focusSensor.wellFormed &&
        camera->focusSensor.name != camera->sensor.name) {
        reportMalformed(camera->focusSensor);
    }
    inspectAe(camera);
    inspectAwbLsc(camera);
}

void DeviceInspector::inspectAe(InspectReport::Camera* camera) {
    InspectReport::AeFile& ae = camera->ae;
    ae.name = baseName(aeFilePathTable.at(camera->name));
    std::vector<unsigned char> bytes;
    ae.presence = readFile(ae.name, &bytes, camera->name);
    if (ae.presence != InspectReport::Presence::read) return;
    ae.record = AeRecord::decode(bytes);
    const AeRecord& record = ae.record;
    ae.fuseIdMatches = record.fuseIdHex == camera->sensor.fuseId;
    if (record.form == AeRecord::Form::badSize) {
        problem("size", ae.name, camera->name,
                ae.name + " has " + std::to_string(record.size) + " bytes, where its " +
                    std::to_string(record.fuseLength) + "-byte fuse ID calls for " +
                    std::to_string(record.fuseLength + 12) + ".");
    } else if (record.form == AeRecord::Form::factory) {
        problem("form", ae.name, camera->name,
                ae.name + " is stored in factory form, without its CRC.");
    } else if (!record.crcMatches()) {
        problem("crc", ae.name, camera->name,
                ae.name + " has CRC " + hex4(record.storedCrc) + " stored but " +
                    hex4(record.computedCrc) + " computed.");
    }
    if (!ae.fuseIdMatches) {
        problem("fuse-id", ae.name, camera->name,
                ae.name + " is for fuse ID " + quoted(record.fuseIdHex) + ", but camera " +
                    camera->name +
                    (camera->sensor.fuseId.empty()
                         ? " has no fitted sensor."
                         : "'s fitted sensor has " + quoted(camera->sensor.fuseId) + "."));
    }
}

void DeviceInspector::inspectAwbLsc(InspectReport::Camera* camera) {
    auto path = awbLscFilePathTable.find(camera->name);
    if (path == awbLscFilePathTable.end()) return;
    camera->hasAwbLsc = true;
    InspectReport::AwbLscFile& file = camera->awbLsc;
    file.name = baseName(path->second);
    std::vector<unsigned char> bytes;
    file.presence = readFile(file.name, &bytes, camera->name);
    if (file.presence != InspectReport::Presence::read) return;
    file.record = AwbLscRecord::decode(bytes);
    const FuseIdProperty sensor =
        CalibrationFilesManager<EepromCalibrationData>::lookUpFuseId(kAwbLscTables, camera->roleId);
    file.fuseIdMatches = file.record.fuseIdHex == sensor.fuseId;
    const std::pair<const char*, const AwbLscRecord::Block*> blocks[] = {{"AWB", &file.record.awb},
                                                                         {"LSC", &file.record.lsc}};
    for (const auto& [blockName, block] : blocks) {
        if (!block->present) {
            problem("size", file.name, camera->name,
                    file.name + " has " + std::to_string(file.record.size) +
                        " bytes, too few for its " + blockName + " checksum.");
        } else if (!block->ok()) {
            problem("checksum", file.name, camera->name,
                    file.name + " has " + blockName + " checksum " + std::to_string(block->stored) +
                        " stored but " + std::to_string(block->computed) + " computed.");
        }
    }
    if (!file.fuseIdMatches) {
        problem("fuse-id", file.name, camera->name,
                file.name + " is for fuse ID " + quoted(file.record.fuseIdHex) + ", but camera " +
                    camera->name +
                    (sensor.fuseId.empty() ? " has no fitted sensor."
                                           : "'s fitted sensor has " + quoted(sensor.fuseId) + "."));
    }
}

bool DeviceInspector::readLines(const std::string& path, InspectReport::TextFile* file,
                                std::vector<std::string>* lines) {
    file->name = baseName(path);
    std::vector<unsigned char> bytes;
    file->presence = readFile(file->name, &bytes);
    if (file->presence != InspectReport::Presence::read) return false;
    *lines = linesOf(bytes);
    file->lines = static_cast<int>(lines->size());
    return true;
}

InspectReport::Camera* DeviceInspector::cameraOfFocusFuseId(const std::string& fuseId) {
    for (InspectReport::Camera& camera : report.cameras) {
        if (camera.focusSensor.set() && camera.focusSensor.fuseId == fuseId) return &camera;
    }
    return nullptr;
}

void DeviceInspector::inspectAfFile() {
    InspectReport::TextFile& file = report.afFile;
    std::vector<std::string> lines;
    if (!readLines(AfCalibrationData::afCalFilePath, &file, &lines)) return;
    for (size_t i = 0; i < lines.size(); ++i) {
        const int number = static_cast<int>(i + 1);
        const std::string where = "Line " + std::to_string(number) + " of " + file.name;
        const DecodedLine line = decodeAfLine(lines[i]);
        if (line.status != LineStatus::ok) {
            file.droppedLines.push_back(number);
            problem("dropped-line", file.name, "",
                    where + " has " + std::to_string(line.columnCount) +
                        " columns instead of 7, so the next AF store drops it.");
            continue;
        }
        InspectReport::AfPoint point;
        point.line = number;
        point.useFlag = std::string(line.fields[0]);
        point.camera = std::string(line.fields[1]);
        point.fuseId = std::string(line.fields[2]);
        point.distance = std::string(line.fields[3]);
        point.dac = std::string(line.fields[4]);
        point.temperature = std::string(line.fields[5]);
        point.crcOk = line.storedCrc == line.computedCrc;
        InspectReport::Camera* camera = cameraOfFocusFuseId(point.fuseId);
        if (!point.crcOk) {
            file.crcFailures.push_back(number);
            problem("crc", file.name, camera == nullptr ? "" : camera->name,
                    where + " (fuse ID " + quoted(point.fuseId) + ", distance " + point.distance +
                        ") has CRC " + std::to_string(line.storedCrc) + " stored but " +
                        std::to_string(line.computedCrc) + " computed.");
        }
        if (camera != nullptr) {
            camera->afPoints.push_back(point);
        } else {
            report.unfittedAfPoints.push_back(point);
        }
    }
    // One problem per module that is no longer fitted, however many points it left.
    std::map<std::string, int> pointsOf;
    std::vector<const InspectReport::AfPoint*> firsts;
    for (const InspectReport::AfPoint& point : report.unfittedAfPoints) {
        if (pointsOf[point.fuseId]++ == 0) firsts.push_back(&point);
    }
    for (const InspectReport::AfPoint* first : firsts) {
        const std::string& fuseId = first->fuseId;
        const int count = pointsOf[fuseId];
        problem("fuse-id", file.name, cameraNamed(first->camera),
                file.name + " holds " + std::to_string(count) + " AF point" +
                    (count == 1 ? "" : "s") + " of fuse ID " + quoted(fuseId) +
                    ", which no fitted sensor has.");
    }
}

void DeviceInspector::inspectPdOffsetFile() {
    InspectReport::TextFile& file = report.pdOffsetFile;
    std::vector<std::string> lines;
    if (!readLines(AfCalibrationData::pdOffsetCalFilePath, &file, &lines)) return;
    for (size_t i = 0; i < lines.size(); ++i) {
        const int number = static_cast<int>(i + 1);
        const std::string where = "Line " + std::to_string(number) + " of " + file.name;
        const DecodedLine line = decodePdOffsetLine(lines[i]);
        if (line.status == LineStatus::lengthNotANumber) {
            file.droppedLines.push_back(number);
            problem("dropped-line", file.name, "",
                    where +
                        " has a value count that is not a number, so a PD-offset store "
                        "stops abnormally on it.");
            continue;
        }
        if (line.status != LineStatus::ok) {
            file.droppedLines.push_back(number);
            problem("dropped-line", file.name, "",
                    where + " has " + std::to_string(line.columnCount) +
                        " fields, which no PD-offset record has, so the next PD-offset store "
                        "drops it.");
            continue;
        }
        InspectReport::PdOffsetRecord record;
        record.line = number;
        record.useFlag = std::string(line.fields[0]);
        record.camera = std::string(line.fields[1]);
        record.fuseId = std::string(line.fields[2]);
        record.valueCount = line.valueCount;
        record.sfrPresent = line.hasSfrData;
        record.crcOk = line.storedCrc == line.computedCrc;
        InspectReport::Camera* camera = cameraOfFocusFuseId(record.fuseId);
        if (!record.crcOk) {
            file.crcFailures.push_back(number);
            problem("crc", file.name, camera == nullptr ? "" : camera->name,
                    where + " (fuse ID " + quoted(record.fuseId) + ") has CRC " +
                        std::to_string(line.storedCrc) + " stored but " +
                        std::to_string(line.computedCrc) +
                        " computed, so the read-back refuses it.");
        }
        if (camera == nullptr) {
            report.unfittedPdOffsets.push_back(record);
            problem("fuse-id", file.name, cameraNamed(record.camera),
                    where + " holds the PD offsets of fuse ID " + quoted(record.fuseId) +
                        ", which no fitted sensor has.");
        } else if (!camera->hasPdOffset) {  // the read-back takes a module's first record
            camera->hasPdOffset = true;
            camera->pdOffset = record;
        }
    }
}

void DeviceInspector::inspectEepromCopy(const std::string& name) {
    InspectReport::EepromCopy copy;
    copy.name = name;
    std::vector<unsigned char> bytes;
    copy.presence = readFile(name, &bytes);
    if (copy.presence != InspectReport::Presence::read) {
        report.eepromCopies.push_back(copy);
        return;
    }
    copy.size = bytes.size();
    copy.fuseId = EepromBinRecord::upperCase(EepromBinRecord::fuseIdOfPath(name));
    // The export's own test: a fitted sensor's whole property value contains the name's ID.
    for (const InspectReport::Camera& camera : report.cameras) {
        for (const auto* table :
             {&eepromBinFuseIdPropertyTable, &eepromBinRoleFuseIdPropertyTable}) {
            auto property = table->find(camera.roleId);
            if (property == table->end()) continue;
            const std::string value = readProperty(property->second);
            if (!value.empty() && EepromBinRecord::belongsTo(copy.fuseId, value)) {
                copy.cameras.push_back(camera.name);
                break;
            }
        }
    }
    copy.record = EepromBinRecord::decode(bytes);
    copy.publishedChecksum = readProperty(eepromBinChecksumProperty);
    copy.checksumAgrees = copy.record.checksumAgrees(copy.publishedChecksum);
    if (copy.cameras.empty()) {
        problem("fuse-id", name, "",
                name + " is an EEPROM copy for fuse ID " + quoted(copy.fuseId) +
                    ", which no fitted sensor has.");
    }
    if (!copy.record.hasChecksum) {
        problem("size", name, "",
                name + " has " + std::to_string(copy.size) +
                    " bytes, too few for the checksum byte at offset " +
                    std::to_string(EepromBinRecord::checksumOffset) + ".");
    } else if (copy.publishedChecksum.empty()) {
        problem("checksum", name, "",
                name + " cannot be checked, as " + eepromBinChecksumProperty + " is not set.");
    } else if (!copy.checksumAgrees) {
        char byte[3];
        snprintf(byte, sizeof byte, "%02X", copy.record.checksum);
        problem("checksum", name, "",
                name + " has checksum byte " + byte + ", but " + eepromBinChecksumProperty +
                    " is " + quoted(copy.publishedChecksum) + ".");
    }
    report.eepromCopies.push_back(copy);
}

void DeviceInspector::inspectCalibrationLog() {
    InspectReport::TextFile& log = report.calibrationLog;
    log.name = baseName(calibrationLogPath());
    std::vector<unsigned char> bytes;
    log.presence = readFile(log.name, &bytes);
    if (log.presence != InspectReport::Presence::read) return;
    const std::vector<std::string> lines = linesOf(bytes);
    log.lines = static_cast<int>(lines.size());
    std::map<std::string, InspectReport::Camera*> byName;
    for (InspectReport::Camera& camera : report.cameras) byName[camera.name] = &camera;
    for (size_t i = 0; i < lines.size(); ++i) {
        // "camera:<name>,<ae|awb>,result:<0|1>"
        const std::string& line = lines[i];
        const size_t comma = line.find(',');
        const size_t result = line.find(",result:");
        const std::string prefix = "camera:";
        bool understood = line.compare(0, prefix.size(), prefix) == 0 &&
                          comma != std::string::npos && result != std::string::npos &&
                          result > comma;
        std::string name, kind, value;
        if (understood) {
            name = line.substr(prefix.size(), comma - prefix.size());
            kind = line.substr(comma + 1, result - comma - 1);
            value = line.substr(result + 8);
            understood = (kind == "ae" || kind == "awb") && (value == "0" || value == "1");
        }
        if (!understood) {
            log.droppedLines.push_back(static_cast<int>(i + 1));
            problem("log", log.name, "",
                    "Line " + std::to_string(i + 1) + " of " + log.name +
                        " is not a calibration result line.");
            continue;
        }
        auto camera = byName.find(name);
        if (camera == byName.end()) continue;
        (kind == "ae" ? camera->second->lastAeResult : camera->second->lastAwbResult) =
            value == "1" ? 1 : 0;
    }
    for (const InspectReport::Camera& camera : report.cameras) {
        if (camera.lastAeResult == 0 || camera.lastAwbResult == 0) {
            problem("log", log.name, camera.name,
                    std::string("The last ") + (camera.lastAeResult == 0 ? "AE" : "AWB") +
                        " result that " + log.name + " holds for camera " + camera.name +
                        " is a failure.");
        }
    }
}

void DeviceInspector::inspectEntries() {
    std::map<std::string, std::string> roles;
    for (const auto& [camera, path] : aeFilePathTable) roles[baseName(path)] = "ae";
    for (const auto& [camera, path] : awbLscFilePathTable) roles[baseName(path)] = "awblsc";
    roles[report.afFile.name] = "af";
    roles[report.pdOffsetFile.name] = "pdoffset";
    roles[report.calibrationLog.name] = "log";

    for (const PersistDirectory::Entry& item : directory.entries()) {
        InspectReport::Entry entry{item.name, item.type, item.mode, item.uid, item.gid, ""};
        auto known = roles.find(item.name);
        if (known != roles.end()) {
            entry.role = known->second;
        } else if (isTemporary(item.name)) {
            entry.role = "temporary";
        } else if (endsWith(item.name, ".bin")) {
            entry.role = "eeprom";
        } else {
            entry.role = "unknown";
        }
        report.entries.push_back(entry);

        if (entry.role == "temporary") {
            problem("temporary", item.name, "",
                    item.name + " is a temporary that an interrupted store left behind.");
            continue;
        }
        if (entry.role == "unknown") {
            problem("unknown", item.name, "", item.name + " is not a file that optoquill writes.");
            continue;
        }
        if (entry.role == "eeprom") inspectEepromCopy(item.name);
        if (item.type != "regular") continue;  // reported as unreadable
        if (item.mode != kMode) {
            problem(
                "mode", item.name, "",
                item.name + " has mode " + octal(item.mode) + " instead of " + octal(kMode) + ".");
        }
        if (item.uid != kOwner || item.gid != kOwner) {
            problem("owner", item.name, "",
                    item.name + " is owned by " + std::to_string(item.uid) + ":" +
                        std::to_string(item.gid) + " instead of 1000:1000.");
        }
    }
}
