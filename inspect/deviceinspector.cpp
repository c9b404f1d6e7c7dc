#include "inspect/deviceinspector.h"

#include "af/aflines.h"
#include "base/paths.h"
#include "base/text.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/safefilewriter.h"
#include "eeprom/eeprombindata.h"
#include "platform/deviceroot.h"

namespace {

// Calls `visit(number, line)` for each line as the loaders see them, numbered from 1.
template <typename Visit>
void forEachNumberedLine(std::string_view text, Visit visit) {
    size_t number = 0;
    forEachLine(text, [&](std::string_view line) { visit(++number, line); });
}

bool endsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

}  // namespace

DeviceInspector::DeviceInspector(const PersistDirectory& directory, std::vector<ProductNeed> needs)
    : directory(directory), needs(std::move(needs)) {}

InspectReport DeviceInspector::inspect() {
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
    judge.needs(needs, &report);
    book.close();
    return std::move(report);
}

InspectReport::Presence DeviceInspector::readFile(const std::string& name,
                                                  const std::string& camera, std::string* bytes) {
    FileRead read = directory.read(name);
    if (read.ok()) *bytes = std::move(read.bytes);
    return judge.unreadable(name, camera, read, directory.find(name));
}

void DeviceInspector::inspectCamera(InspectReport::Camera* camera, const CameraRole& role) {
    camera->sensor = readSensorFuseIdProperty(role);
    // The AF and PD-offset stores read their own property, where a tele position may fall back
    // on another module's.
    camera->focusSensor = readFocusFuseIdProperty(role.roleId);
    camera->fitted = camera->sensor.set() || camera->focusSensor.set();
    judge.sensors(*camera);
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
    ae.fuseIdMatches = camera->sensor.wellFormed && ae.record.fuseIdHex == camera->sensor.fuseId;
    judge.ae(*camera);
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
    judge.awbLsc(*camera);
}

InspectReport::Camera* DeviceInspector::cameraOfFocusFuseId(std::string_view fuseId) {
    for (InspectReport::Camera& camera : report.cameras) {
        if (camera.focusSensor.wellFormed && camera.focusSensor.fuseId == fuseId) return &camera;
    }
    return nullptr;
}

template <typename Visit>
void DeviceInspector::inspectLineFile(InspectReport::TextFile* file, std::string_view name,
                                      DeviceJudge::LineFile kind, Visit visit) {
    file->name = std::string(name);
    std::string bytes;
    file->presence = readFile(file->name, "", &bytes);
    if (file->presence != InspectReport::Presence::read) return;
    DeviceJudge::UnfittedRun run;
    auto noteRun = [&] {
        if (run.count > 0) judge.unfitted(kind, file->name, run);
        run = DeviceJudge::UnfittedRun();
    };
    const Decode decode =
        kind == DeviceJudge::LineFile::af ? decodeSplitAfLine : decodeSplitPdOffsetLine;
    size_t number = 0;
    forEachDecodedLine(bytes, decode, true, [&](std::string_view, const DecodedLine& line) {
        ++number;
        ++file->lines;
        if (line.status != LineStatus::ok) {
            if (size_t* listed = file->droppedLines.add()) *listed = number;
            judge.droppedLine(kind, file->name, number, line);
            return;
        }
        const std::string_view fuseId = line.fields[2];
        InspectReport::Camera* camera = cameraOfFocusFuseId(fuseId);
        const bool crcOk = line.storedCrc == line.computedCrc;
        if (!crcOk) {
            if (size_t* listed = file->crcFailures.add()) *listed = number;
            judge.crcFailure(kind, file->name, number, line, camera == nullptr ? "" : camera->name);
        }
        if (camera != nullptr || run.endedBy(fuseId)) noteRun();
        if (camera == nullptr) run.add(fuseId, line.fields[1], number);
        visit(static_cast<int>(number), line, camera, crcOk);
    });
    noteRun();
}

void DeviceInspector::inspectAfFile() {
    inspectLineFile(
        &report.afFile, kAfFileName, DeviceJudge::LineFile::af,
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
    inspectLineFile(
        &report.pdOffsetFile, kPdOffsetFileName, DeviceJudge::LineFile::pdOffset,
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
        judge.eepromCopy(copy);
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
            judge.logLine(log.name, number);
            return;
        }
        for (InspectReport::Camera& camera : report.cameras) {
            if (camera.name == name) (ae ? camera.lastAeResult : camera.lastAwbResult) = result;
        }
    });
    judge.lastResults(report);
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
        if (role == "temporary" || role == "unknown") {
            judge.stray(name, role);
            continue;
        }
        if (role == "eeprom") inspectEepromCopy(name);
        if (item.type != "regular") continue;  // reported as unreadable
        judge.attributes(item, ownerUid, ownerGid);
    }
}
