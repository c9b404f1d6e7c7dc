#include "inspect/jsonreport.h"

#include <json/json.h>

#include <cstdio>

#include "base/text.h"
#include "inspect/utf8text.h"

namespace {

// Every text from the device goes through here: jsoncpp's writer takes any bytes for UTF-8, and
// a name or a field may hold any bytes.
Json::Value text(const std::string& value) {
    return Json::Value(validUtf8(value));
}

Json::Value textOrNull(const std::string& value) {
    return value.empty() ? Json::Value() : text(value);
}

Json::Value count(size_t value) {
    return static_cast<Json::UInt64>(value);
}

const char* presenceName(InspectReport::Presence presence) {
    switch (presence) {
        case InspectReport::Presence::absent:
            return "absent";
        case InspectReport::Presence::unreadable:
            return "unreadable";
        case InspectReport::Presence::tooLarge:
            return "too-large";
        case InspectReport::Presence::read:
            break;
    }
    return "read";
}

// The items of a listing under `name`, how many there are in all under `countName`.
template <typename T, typename ToJson>
void putListing(Json::Value* json, const char* name, const char* countName,
                const Listing<T>& listing, ToJson toJson) {
    Json::Value items(Json::arrayValue);
    for (const T& item : listing.items) items.append(toJson(item));
    (*json)[name] = items;
    (*json)[countName] = count(listing.count);
}

Json::Value lineJson(size_t line) {
    return count(line);
}

Json::Value sensorJson(const FuseIdProperty& sensor) {
    Json::Value json(Json::objectValue);
    json["property"] = textOrNull(sensor.name);
    json["value"] = textOrNull(sensor.value);
    json["wellFormed"] = sensor.wellFormed;
    json["fuseId"] = sensor.set() && sensor.wellFormed ? text(sensor.fuseId) : Json::Value();
    return json;
}

Json::Value aeJson(const InspectReport::AeFile& ae) {
    Json::Value json(Json::objectValue);
    json["file"] = text(ae.name);
    json["state"] = presenceName(ae.presence);
    if (ae.presence != InspectReport::Presence::read) return json;
    const AeRecord& record = ae.record;
    static const char* const kForms[] = {"factory", "maintain", "bad-size"};
    json["size"] = count(record.size);
    json["expectedSize"] = record.fuseLength + 12;
    json["form"] = kForms[static_cast<int>(record.form)];
    json["sizeOk"] = record.form == AeRecord::Form::maintain;
    Json::Value crc(Json::objectValue);
    crc["stored"] = record.form == AeRecord::Form::maintain ? Json::Value(hex4(record.storedCrc))
                                                            : Json::Value();
    crc["computed"] = record.form == AeRecord::Form::badSize
                          ? Json::Value()
                          : Json::Value(hex4(record.computedCrc));
    crc["ok"] = record.crcMatches();
    json["crc"] = crc;
    json["fuseId"] = record.fuseIdHex;
    json["fuseIdMatches"] = ae.fuseIdMatches;
    json["luma"] = record.luma;
    json["gain"] = record.gain;
    json["exposure"] = record.exposure;
    return json;
}

Json::Value blockJson(const AwbLscRecord::Block& block) {
    Json::Value json(Json::objectValue);
    json["stored"] = block.present ? Json::Value(block.stored) : Json::Value();
    json["computed"] = block.present ? Json::Value(block.computed) : Json::Value();
    json["ok"] = block.ok();
    return json;
}

Json::Value awbLscJson(const InspectReport::AwbLscFile& file) {
    Json::Value json(Json::objectValue);
    json["file"] = text(file.name);
    json["state"] = presenceName(file.presence);
    if (file.presence != InspectReport::Presence::read) return json;
    json["size"] = count(file.record.size);
    json["fuseId"] = file.record.fuseIdHex;
    json["fuseIdMatches"] = file.fuseIdMatches;
    json["awb"] = blockJson(file.record.awb);
    json["lsc"] = blockJson(file.record.lsc);
    return json;
}

Json::Value afPointJson(const InspectReport::AfPoint& point, bool withFuseId) {
    Json::Value json(Json::objectValue);
    json["line"] = point.line;
    if (withFuseId) json["fuseId"] = text(point.fuseId);
    json["camera"] = text(point.camera);
    json["distance"] = text(point.distance);
    json["dac"] = text(point.dac);
    json["temperature"] = text(point.temperature);
    json["useFlag"] = text(point.useFlag);
    json["crcOk"] = point.crcOk;
    return json;
}

Json::Value pdOffsetJson(const InspectReport::PdOffsetRecord& record, bool withFuseId) {
    Json::Value json(Json::objectValue);
    json["line"] = record.line;
    if (withFuseId) json["fuseId"] = text(record.fuseId);
    json["camera"] = text(record.camera);
    json["useFlag"] = text(record.useFlag);
    json["valueCount"] = record.valueCount;
    json["sfrPresent"] = record.sfrPresent;
    json["crcOk"] = record.crcOk;
    json["readBackAccepts"] = record.crcOk && !withFuseId;
    return json;
}

Json::Value resultOrNull(int result) {
    return result < 0 ? Json::Value() : Json::Value(result);
}

Json::Value textFileJson(const InspectReport::TextFile& file, const char* dropped,
                         const char* droppedCount) {
    Json::Value json(Json::objectValue);
    json["file"] = text(file.name);
    json["state"] = presenceName(file.presence);
    json["lines"] = count(file.lines);
    putListing(&json, dropped, droppedCount, file.droppedLines, lineJson);
    return json;
}

Json::Value cameraJson(const InspectReport::Camera& camera) {
    Json::Value json(Json::objectValue);
    json["roleId"] = camera.roleId;
    json["name"] = camera.name;
    json["fitted"] = camera.fitted;
    json["sensor"] = sensorJson(camera.sensor);
    json["focusSensor"] = sensorJson(camera.focusSensor);
    json["ae"] = aeJson(camera.ae);
    json["awbLsc"] = camera.hasAwbLsc ? awbLscJson(camera.awbLsc) : Json::Value();
    putListing(&json, "afPoints", "afPointCount", camera.afPoints,
               [](const InspectReport::AfPoint& point) { return afPointJson(point, false); });
    json["pdOffset"] = camera.hasPdOffset ? pdOffsetJson(camera.pdOffset, false) : Json::Value();
    json["eepromCopy"] = camera.hasEepromCopy;
    Json::Value log(Json::objectValue);
    log["lastAe"] = resultOrNull(camera.lastAeResult);
    log["lastAwb"] = resultOrNull(camera.lastAwbResult);
    json["calibrationLog"] = log;
    return json;
}

Json::Value eepromCopyJson(const InspectReport::EepromCopy& copy) {
    Json::Value json(Json::objectValue);
    json["file"] = text(copy.name);
    json["state"] = presenceName(copy.presence);
    if (copy.presence != InspectReport::Presence::read) return json;
    json["size"] = count(copy.size);
    json["fuseId"] = text(copy.fuseId);
    Json::Value owners(Json::arrayValue);
    for (const std::string& camera : copy.cameras) owners.append(camera);
    json["cameras"] = owners;
    json["checksum"] =
        copy.record.hasChecksum ? Json::Value(hexByte(copy.record.checksum)) : Json::Value();
    json["publishedChecksum"] = textOrNull(copy.publishedChecksum);
    json["checksumAgrees"] = copy.checksumAgrees;
    return json;
}

Json::Value entryJson(const InspectReport::Entry& entry) {
    Json::Value json(Json::objectValue);
    json["name"] = text(entry.name);
    json["type"] = entry.type;
    char mode[8];
    snprintf(mode, sizeof mode, "%04o", entry.mode);
    json["mode"] = mode;
    json["owner"] = entry.uid;
    json["group"] = entry.gid;
    json["role"] = entry.role;
    return json;
}

// `findings[]` listed, `findingCount` in all, `findingsNotListed[]` per kind and file.
void putFindings(Json::Value* root, const std::string& name,
                 const InspectReport::Findings& findings) {
    Json::Value listed(Json::arrayValue);
    for (const InspectReport::Finding& finding : findings.listed) {
        Json::Value json(Json::objectValue);
        json["kind"] = std::string(findingKindName(finding.kind));
        json["file"] = textOrNull(finding.file);
        json["camera"] = textOrNull(finding.camera);
        json["message"] = text(finding.message);
        listed.append(json);
    }
    Json::Value unlisted(Json::arrayValue);
    for (const InspectReport::Unlisted& more : findings.unlisted) {
        Json::Value json(Json::objectValue);
        json["kind"] = std::string(findingKindName(more.kind));
        json["file"] = textOrNull(more.file);
        json["count"] = count(more.count);
        unlisted.append(json);
    }
    (*root)[name + "s"] = listed;
    (*root)[name + "Count"] = count(findings.count);
    (*root)[name + "sNotListed"] = unlisted;
}

}  // namespace

std::string renderJsonReport(const InspectReport& report) {
    Json::Value root(Json::objectValue);
    root["schemaVersion"] = 1;
    root["persistDirectory"] = text(report.persistDirectory);

    Json::Value needs(Json::arrayValue);
    for (const InspectReport::Need& need : report.needs) {
        Json::Value json(Json::objectValue);
        json["camera"] = need.camera;
        json["kind"] = std::string(needKindName(need.kind));
        json["met"] = need.met;
        needs.append(json);
    }
    root["needs"] = needs;

    Json::Value cameras(Json::arrayValue);
    for (const InspectReport::Camera& camera : report.cameras) cameras.append(cameraJson(camera));
    root["cameras"] = cameras;

    Json::Value af = textFileJson(report.afFile, "droppedLines", "droppedLineCount");
    putListing(&af, "crcFailures", "crcFailureCount", report.afFile.crcFailures, lineJson);
    putListing(&af, "unfittedPoints", "unfittedPointCount", report.unfittedAfPoints,
               [](const InspectReport::AfPoint& point) { return afPointJson(point, true); });
    root["afFile"] = af;

    Json::Value pd = textFileJson(report.pdOffsetFile, "droppedLines", "droppedLineCount");
    putListing(&pd, "crcFailures", "crcFailureCount", report.pdOffsetFile.crcFailures, lineJson);
    putListing(
        &pd, "unfittedRecords", "unfittedRecordCount", report.unfittedPdOffsets,
        [](const InspectReport::PdOffsetRecord& record) { return pdOffsetJson(record, true); });
    root["pdOffsetFile"] = pd;

    putListing(&root, "eepromCopies", "eepromCopyCount", report.eepromCopies, eepromCopyJson);
    root["calibrationLog"] =
        textFileJson(report.calibrationLog, "malformedLines", "malformedLineCount");
    putListing(&root, "entries", "entryCount", report.entries, entryJson);
    putFindings(&root, "problem", report.problems);
    putFindings(&root, "note", report.notes);

    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    return Json::writeString(builder, root) + "\n";
}
