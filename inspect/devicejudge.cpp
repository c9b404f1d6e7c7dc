#include "inspect/devicejudge.h"

#include <cstdio>

#include "base/text.h"
#include "common/cameras.h"
#include "common/fileattribute.h"
#include "eeprom/eeprombindata.h"

namespace {

using Scope = FindingsBook::Scope;

std::string octal(unsigned mode) {
    char text[8];
    snprintf(text, sizeof text, "%04o", mode & 07777);
    return text;
}

std::string counted(size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

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

bool DeviceJudge::UnfittedRun::endedBy(std::string_view recordFuseId) const {
    return count > 0 && fuseId != recordFuseId;
}

void DeviceJudge::UnfittedRun::add(std::string_view recordFuseId, std::string_view roleId,
                                   size_t line) {
    if (count++ == 0) {
        fuseId = std::string(recordFuseId);
        const CameraRole* role = cameraByRoleIdText(roleId);
        camera = role == nullptr ? "" : std::string(role->shortName);
        firstLine = line;
    }
    lastLine = line;
}

InspectReport::Presence DeviceJudge::unreadable(const std::string& name, const std::string& camera,
                                                const FileRead& read,
                                                const PersistDirectory::Entry* entry) {
    std::string* message = nullptr;
    switch (read.status) {
        case FileRead::Status::ok:
            return InspectReport::Presence::read;
        case FileRead::Status::absent:
            return InspectReport::Presence::absent;
        case FileRead::Status::tooLarge:
            if ((message = book.problem(FindingKind::size, name, camera, Scope::entries))) {
                *message = name + " is " + read.reason() + ", too large for a calibration file.";
            }
            return InspectReport::Presence::tooLarge;
        case FileRead::Status::link:
        case FileRead::Status::notRegular: {
            const std::string type = entry == nullptr ? "" : entry->type;
            if ((message = book.problem(FindingKind::unreadable, name, camera, Scope::entries))) {
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
    if ((message = book.problem(FindingKind::unreadable, name, camera, Scope::entries))) {
        *message = name + " cannot be read: " + read.reason() + ".";
    }
    return InspectReport::Presence::unreadable;
}

void DeviceJudge::sensors(const InspectReport::Camera& camera) {
    auto malformed = [this, &camera](const FuseIdProperty& sensor) {
        if (std::string* message = book.problem(FindingKind::property, "", camera.name)) {
            *message = "The fuse-ID property " + sensor.name + " of camera " + camera.name +
                       " is malformed: " + quoted(sensor.value) + ".";
        }
    };
    if (camera.sensor.set() && !camera.sensor.wellFormed) malformed(camera.sensor);
    if (camera.focusSensor.set() && !camera.focusSensor.wellFormed &&
        camera.focusSensor.name != camera.sensor.name) {
        malformed(camera.focusSensor);
    }
}

void DeviceJudge::ae(const InspectReport::Camera& camera) {
    const InspectReport::AeFile& ae = camera.ae;
    const AeRecord& record = ae.record;
    std::string* message = nullptr;
    if (record.form == AeRecord::Form::badSize) {
        if ((message = book.problem(FindingKind::size, ae.name, camera.name))) {
            *message = ae.name + " has " + std::to_string(record.size) + " bytes, where its " +
                       std::to_string(record.fuseLength) + "-byte fuse ID calls for " +
                       std::to_string(record.fuseLength + 12) + ".";
        }
    } else if (record.form == AeRecord::Form::factory) {
        if ((message = book.problem(FindingKind::form, ae.name, camera.name))) {
            *message = ae.name + " is stored in factory form, without its CRC.";
        }
    } else if (!record.crcMatches()) {
        if ((message = book.problem(FindingKind::crc, ae.name, camera.name))) {
            *message = ae.name + " has CRC " + hex4(record.storedCrc) + " stored but " +
                       hex4(record.computedCrc) + " computed.";
        }
    }
    if (!ae.fuseIdMatches) otherFuseId(ae.name, record.fuseIdHex, camera);
}

void DeviceJudge::awbLsc(const InspectReport::Camera& camera) {
    const InspectReport::AwbLscFile& file = camera.awbLsc;
    const std::pair<const char*, const AwbLscRecord::Block*> blocks[] = {{"AWB", &file.record.awb},
                                                                         {"LSC", &file.record.lsc}};
    std::string* message = nullptr;
    for (const auto& [blockName, block] : blocks) {
        if (!block->present) {
            if ((message = book.problem(FindingKind::size, file.name, camera.name))) {
                *message = file.name + " has " + std::to_string(file.record.size) +
                           " bytes, too few for its " + blockName + " checksum.";
            }
        } else if (!block->ok()) {
            if ((message = book.problem(FindingKind::checksum, file.name, camera.name))) {
                *message = file.name + " has " + blockName + " checksum " +
                           std::to_string(block->stored) + " stored but " +
                           std::to_string(block->computed) + " computed.";
            }
        }
    }
    if (!file.fuseIdMatches) otherFuseId(file.name, file.record.fuseIdHex, camera);
}

void DeviceJudge::otherFuseId(const std::string& file, const std::string& fuseId,
                              const InspectReport::Camera& camera) {
    const FuseIdProperty& sensor = camera.sensor;
    if (sensor.set() && !sensor.wellFormed) return;  // that problem is told already
    const std::string head =
        file + " is for fuse ID " + quoted(fuseId) + ", but camera " + camera.name;
    std::string* message = nullptr;
    if (!sensor.set()) {
        if ((message = book.note(FindingKind::unfitted, file, camera.name)))
            *message = head + " has no fitted sensor.";
    } else if ((message = book.problem(FindingKind::fuseId, file, camera.name))) {
        *message = head + "'s fitted sensor has " + quoted(sensor.fuseId) + ".";
    }
}

void DeviceJudge::droppedLine(LineFile kind, const std::string& file, size_t number,
                              const DecodedLine& line) {
    std::string* message = book.problem(FindingKind::droppedLine, file, "");
    if (message == nullptr) return;
    *message = "Line " + std::to_string(number) + " of " + file;
    if (kind == LineFile::af) {
        *message += " has " + counted(line.columnCount, "column") +
                    " instead of 7, so the next AF store drops it.";
    } else if (line.status == LineStatus::lengthNotANumber) {
        *message +=
            " has a value count that is not a number, so a PD-offset store stops abnormally on it.";
    } else {
        *message += " has " + counted(line.columnCount, "field") +
                    ", a count no PD-offset record has, so the next PD-offset store drops it.";
    }
}

void DeviceJudge::crcFailure(LineFile kind, const std::string& file, size_t number,
                             const DecodedLine& line, const std::string& camera) {
    std::string* message = book.problem(FindingKind::crc, file, camera);
    if (message == nullptr) return;
    const bool af = kind == LineFile::af;
    *message = "Line " + std::to_string(number) + " of " + file + " (fuse ID " +
               quoted(line.fields[2]) + (af ? ", distance " + std::string(line.fields[3]) : "") +
               ") has CRC " + std::to_string(line.storedCrc) + " stored but " +
               std::to_string(line.computedCrc) + " computed" +
               (af ? "" : ", so the read-back refuses it") + ".";
}

void DeviceJudge::unfitted(LineFile kind, const std::string& file, const UnfittedRun& run) {
    std::string* message = book.note(FindingKind::unfitted, file, run.camera);
    if (message == nullptr) return;
    const std::string lines = run.count == 1 ? "line " + std::to_string(run.firstLine)
                                             : "lines " + std::to_string(run.firstLine) + " to " +
                                                   std::to_string(run.lastLine);
    *message = file + " holds " +
               counted(run.count, kind == LineFile::af ? "AF point" : "PD-offset record") + " (" +
               lines + ") of fuse ID " + quoted(run.fuseId) + ", which no fitted sensor has.";
}

void DeviceJudge::eepromCopy(const InspectReport::EepromCopy& copy) {
    const std::string& name = copy.name;
    std::string* message = nullptr;
    if (copy.cameras.empty() &&
        (message = book.note(FindingKind::unfitted, name, "", Scope::entries))) {
        *message = name + " is an EEPROM copy for fuse ID " + quoted(copy.fuseId) +
                   ", which no fitted sensor has.";
    }
    if (!copy.record.hasChecksum) {
        if ((message = book.problem(FindingKind::size, name, "", Scope::entries))) {
            *message = name + " has " + std::to_string(copy.size) +
                       " bytes, too few for the checksum byte at offset " +
                       std::to_string(EepromBinRecord::checksumOffset) + ".";
        }
    } else if (copy.cameras.empty()) {
        // An old module's copy: the published checksum is the fitted module's.
    } else if (copy.publishedChecksum.empty()) {
        if ((message = book.problem(FindingKind::checksum, name, "", Scope::entries))) {
            *message = name + " cannot be checked, as " + eepromBinChecksumProperty + " is not set.";
        }
    } else if (!copy.checksumAgrees) {
        if ((message = book.problem(FindingKind::checksum, name, "", Scope::entries))) {
            *message = name + " has checksum byte " + hexByte(copy.record.checksum) + ", but " +
                       eepromBinChecksumProperty + " is " + quoted(copy.publishedChecksum) + ".";
        }
    }
}

void DeviceJudge::logLine(const std::string& file, size_t number) {
    if (std::string* message = book.problem(FindingKind::log, file, "")) {
        *message =
            "Line " + std::to_string(number) + " of " + file + " is not a calibration result line.";
    }
}

void DeviceJudge::lastResults(const InspectReport& report) {
    const std::string& log = report.calibrationLog.name;
    for (const InspectReport::Camera& camera : report.cameras) {
        for (const auto& [what, result] : {std::pair<const char*, int>{"AE", camera.lastAeResult},
                                           {"AWB", camera.lastAwbResult}}) {
            if (result != 0) continue;
            const std::string sentence = std::string("The last ") + what + " result that " + log +
                                         " holds for camera " + camera.name + " is a failure";
            // A camera where no sensor is fitted now has nothing to calibrate.
            std::string* message = camera.sensor.set()
                                       ? book.problem(FindingKind::log, log, camera.name)
                                       : book.note(FindingKind::log, log, camera.name);
            if (message != nullptr) {
                *message = sentence + (camera.sensor.set() ? "." : ", and it has no fitted sensor.");
            }
        }
    }
}

void DeviceJudge::stray(const std::string& name, std::string_view role) {
    const bool temporary = role == "temporary";
    if (std::string* message = book.problem(
            temporary ? FindingKind::temporary : FindingKind::unknown, name, "", Scope::entries)) {
        *message = name + (temporary ? " is a temporary that an interrupted store left behind."
                                     : " is not a file that optoquill writes.");
    }
}

void DeviceJudge::attributes(const PersistDirectory::Entry& entry, unsigned ownerUid,
                             unsigned ownerGid) {
    const std::string& name = entry.name;
    std::string* message = nullptr;
    if (entry.mode != kCalibrationFileMode &&
        (message = book.problem(FindingKind::mode, name, "", Scope::entries))) {
        *message = name + " has mode " + octal(entry.mode) + " instead of " +
                   octal(kCalibrationFileMode) + ".";
    }
    if ((entry.uid != ownerUid || entry.gid != ownerGid) &&
        (message = book.problem(FindingKind::owner, name, "", Scope::entries))) {
        *message = name + " is owned by " + std::to_string(entry.uid) + ":" +
                   std::to_string(entry.gid) + " instead of " + std::to_string(ownerUid) + ":" +
                   std::to_string(ownerGid) + ".";
    }
}

void DeviceJudge::needs(const std::vector<ProductNeed>& needs, InspectReport* report) {
    for (const ProductNeed& need : needs) {
        InspectReport::Camera* camera = nullptr;
        for (InspectReport::Camera& candidate : report->cameras) {
            if (candidate.roleId == need.camera->roleId) camera = &candidate;
        }
        // The AF and PD-offset stores go by the focus sensor, the others by the sensor.
        const bool focus = need.kind == NeedKind::af || need.kind == NeedKind::pdoffset;
        const FuseIdProperty& sensor = focus ? camera->focusSensor : camera->sensor;
        const NeedFacts facts = needFacts(need.kind, *report, *camera);
        report->needs.push_back({camera->name, need.kind, facts.met});
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
        if (std::string* message = book.problem(FindingKind::missing, facts.file, camera->name)) {
            *message = "Camera " + camera->name + " needs " + facts.what + ", but " + reason + ".";
        }
    }
}
