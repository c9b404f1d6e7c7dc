#include "inspect/jsonreport.h"

#include <json/json.h>

#include <cstdio>

namespace {

Json::Value textOrNull(const std::string& text) {
    return text.empty() ? Json::Value() : Json::Value(text);
}

std::string hex4(unsigned value) {
    char text[8];
    snprintf(text, sizeof text, "0x%04X", value & 0xFFFF);
    return text;
}

const char* presenceName(InspectReport::Presence presence) {
    switch (presence) {
        case InspectReport::Presence::absent:
            return "absent";
        case InspectReport::Presence::unreadable:
            return "unreadable";
        case InspectReport::Presence::read:
            break;
    }
    return "read";
}

Json::Value sensorJson(const FuseIdProperty& sensor) {
    Json::Value json(Json::objectValue);
    json["property"] = textOrNull(sensor.name);
    json["value"] = textOrNull(sensor.value);
    json["wellFormed"] = sensor.wellFormed;
    json["fuseId"] = sensor.set() && sensor.wellFormed ? Json::Value(sensor.fuseId) : Json::Value();
    return json;
}

Json::Value lineList(const std::vector<int>& lines) {
    Json::Value json(Json::arrayValue);
    for (int line : lines) json.append(line);
    return json;
}

Json::Value aeJson(const InspectReport::AeFile& ae) {
    Json::Value json(Json::objectValue);
    json["file"] = ae.name;
    json["state"] = presenceName(ae.presence);
    if (ae.presence != InspectReport::Presence::read) return json;
    const AeRecord& record = ae.record;
    static const char* const kForms[] = {"factory", "maintain", "bad-size"};
    json["size"] = static_cast<Json::UInt64>(record.size);
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
    json["file"] = file.name;
    json["state"] = presenceName(file.presence);
    if (file.presence != InspectReport::Presence::read) return json;
    json["size"] = static_cast<Json::UInt64>(file.record.size);
    json["fuseId"] = file.record.fuseIdHex;
    json["fuseIdMatches"] = file.fuseIdMatches;
    json["awb"] = blockJson(file.record.awb);
    json["lsc"] = blockJson(file.record.lsc);
    return json;
}

Json::Value afPointJson(const InspectReport::AfPoint& point, bool withFuseId) {
    Json::Value json(Json::objectValue);
    json["line"] = point.line;
    if (withFuseId) json["fuseId"] = point.fuseId;
    json["camera"] = point.camera;
    json["distance"] = point.distance;
    json["dac"] = point.dac;
    json["temperature"] = point.temperature;
    json["useFlag"] = point.useFlag;
    json["crcOk"] = point.crcOk;
    return json;
}

Json::Value pdOffsetJson(const InspectReport::PdOffsetRecord& record, bool withFuseId) {
    Json::Value json(Json::objectValue);
    json["line"] = record.line;
    if (withFuseId) json["fuseId"] = record.fuseId;
    json["camera"] = record.camera;
    json["useFlag"] = record.useFlag;
    json["valueCount"] = record.valueCount;
    json["sfrPresent"] = record.sfrPresent;
    json["crcOk"] = record.crcOk;
    json["readBackAccepts"] = record.crcOk && !withFuseId;
    return json;
}

Json::Value resultOrNull(int result) {
    return result < 0 ? Json::Value() : Json::Value(result);
}

Json::Value textFileJson(const InspectReport::TextFile& file, const char* droppedName) {
    Json::Value json(Json::objectValue);
    json["file"] = file.name;
    json["state"] = presenceName(file.presence);
    json["lines"] = file.lines;
    json[droppedName] = lineList(file.droppedLines);
    return json;
}

}  // namespace

std::string renderJsonReport(const InspectReport& report) {
    Json::Value root(Json::objectValue);
    root["persistDirectory"] = report.persistDirectory;

    Json::Value cameras(Json::arrayValue);
    for (const InspectReport::Camera& camera : report.cameras) {
        Json::Value json(Json::objectValue);
        json["roleId"] = camera.roleId;
        json["name"] = camera.name;
        json["sensor"] = sensorJson(camera.sensor);
        json["focusSensor"] = sensorJson(camera.focusSensor);
        json["ae"] = aeJson(camera.ae);
        json["awbLsc"] = camera.hasAwbLsc ? awbLscJson(camera.awbLsc) : Json::Value();
        Json::Value points(Json::arrayValue);
        for (const InspectReport::AfPoint& point : camera.afPoints) {
            points.append(afPointJson(point, false));
        }
        json["afPoints"] = points;
        json["pdOffset"] = camera.hasPdOffset ? pdOffsetJson(camera.pdOffset, false) : Json::Value();
        Json::Value log(Json::objectValue);
        log["lastAe"] = resultOrNull(camera.lastAeResult);
        log["lastAwb"] = resultOrNull(camera.lastAwbResult);
        json["calibrationLog"] = log;
        cameras.append(json);
    }
    root["cameras"] = cameras;

    Json::Value af = textFileJson(report.afFile, "droppedLines");
    af["crcFailures"] = lineList(report.afFile.crcFailures);
    Json::Value unfittedPoints(Json::arrayValue);
    for (const InspectReport::AfPoint& point : report.unfittedAfPoints) {
        unfittedPoints.append(afPointJson(point, true));
    }
    af["unfittedPoints"] = unfittedPoints;
    root["afFile"] = af;

    Json::Value pd = textFileJson(report.pdOffsetFile, "droppedLines");
    pd["crcFailures"] = lineList(report.pdOffsetFile.crcFailures);
    Json::Value unfittedRecords(Json::arrayValue);
    for (const InspectReport::PdOffsetRecord& record : report.unfittedPdOffsets) {
        unfittedRecords.append(pdOffsetJson(record, true));
    }
    pd["unfittedRecords"] = unfittedRecords;
    root["pdOffsetFile"] = pd;

    Json::Value copies(Json::arrayValue);
    for (const InspectReport::EepromCopy& copy : report.eepromCopies) {
        Json::Value json(Json::objectValue);
        json["file"] = copy.name;
        json["state"] = presenceName(copy.presence);
        if (copy.presence == InspectReport::Presence::read) {
            json["size"] = static_cast<Json::UInt64>(copy.size);
            json["fuseId"] = copy.fuseId;
            Json::Value owners(Json::arrayValue);
            for (const std::string& camera : copy.cameras) owners.append(camera);
            json["cameras"] = owners;
            char byte[3];
            snprintf(byte, sizeof byte, "%02X", copy.record.checksum);
            json["checksum"] = copy.record.hasChecksum ? Json::Value(byte) : Json::Value();
            json["publishedChecksum"] = textOrNull(copy.publishedChecksum);
            json["checksumAgrees"] = copy.checksumAgrees;
        }
        copies.append(json);
    }
    root["eepromCopies"] = copies;

    root["calibrationLog"] = textFileJson(report.calibrationLog, "malformedLines");

    Json::Value entries(Json::arrayValue);
    for (const InspectReport::Entry& entry : report.entries) {
        Json::Value json(Json::objectValue);
        json["name"] = entry.name;
        json["type"] = entry.type;
        char mode[8];
        snprintf(mode, sizeof mode, "%04o", entry.mode);
        json["mode"] = mode;
        json["owner"] = entry.uid;
        json["group"] = entry.gid;
        json["role"] = entry.role;
        entries.append(json);
    }
    root["entries"] = entries;

    Json::Value problems(Json::arrayValue);
    for (const InspectReport::Problem& problem : report.problems) {
        Json::Value json(Json::objectValue);
        json["kind"] = problem.kind;
        json["file"] = textOrNull(problem.file);
        json["camera"] = textOrNull(problem.camera);
        json["message"] = problem.message;
        problems.append(json);
    }
    root["problems"] = problems;

    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    return Json::writeString(builder, root) + "\n";
}
