#pragma once

#include <android/log.h>

#include <cstdio>
#include <string>

#include "common/calibrationfiletables.h"
#include "common/calibrationlog.h"
#include "common/fileattribute.h"
#include "common/fuseidproperty.h"

// What the AE and the AWB/LSC files managers have in common: a calibration record read from a
// source file, accepted only when its fuse ID is the fitted sensor's, stored under the camera's
// persist path and logged in the calibration log. `Record` provides parse, valid, fuseId, write
// and dump.
template <typename Record>
class CalibrationFilesManager {
  public:
    // The tables, tag and kind must outlive the manager: they are the managers' constants. A
    // source file on shared storage, where anyone may plant a link, is read only as the file
    // itself (`followSourceLinks` false).
    CalibrationFilesManager(std::string camera, std::string sourceFile,
                            const CalibrationFileTables& tables, const char* logTag,
                            const char* logKind, bool followSourceLinks)
        : camera(std::move(camera)),
          sourceFile(std::move(sourceFile)),
          tables(tables),
          logTag(logTag),
          logKind(logKind),
          followSourceLinks(followSourceLinks) {}

    bool fuseIdMatched() const { return matched; }

    // Reads the source file and compares its fuse ID with the sensor's; true when they match,
    // now or at an earlier call (the file is then not read again).
    bool matchFuseId() {
        if (matched) return true;
        record.parse(sourceFile.c_str(), followSourceLinks);
        if (!record.valid()) {
            fprintf(stdout, "Error:Failed to parse file %s\n", sourceFile.c_str());
            return false;
        }
        auto roleId = tables.cameraRoleId.find(camera);
        if (roleId == tables.cameraRoleId.end()) {
            printUnknownCamera(camera);
            return false;
        }
        const std::string recordFuseId = record.fuseId();
        if (readFuseId(tables, roleId->second, logTag) == recordFuseId) {
            matched = true;
        } else {
            fprintf(stdout, "Error:mismatch efuseId\n");
        }
        return matched;
    }

    // Stores a matched record at the camera's persist path and logs the outcome.
    bool write() {
        if (!matched || !record.valid()) return false;
        auto path = tables.filePath.find(camera);
        if (path == tables.filePath.end()) {
            writeLog(false);
            return false;
        }
        const char* file = path->second.c_str();
        bool ok = record.write(file);
        if (ok) {
            fprintf(stdout, "Successfully write file %s\n", file);
            changeFileAttribute(file);
        } else {
            fprintf(stdout, "Error:Failed to write file %s\n", file);
        }
        writeLog(ok);
        return ok;
    }

    void writeLog(bool ok) const { appendCalibrationLog(camera, logKind, ok); }

    // The sensor's fuse-ID property for a role id: the short-named property first, the
    // role-named one when the first is empty; unset when neither is. Reads only.
    static FuseIdProperty lookUpFuseId(const CalibrationFileTables& tables, int roleId) {
        auto named = [roleId](const std::map<int, std::string>& table) {
            auto entry = table.find(roleId);
            return entry == table.end() ? nullptr : &entry->second;
        };
        return readFuseIdProperty({named(tables.fuseIdProperty), named(tables.roleFuseIdProperty)});
    }

    // The sensor's fuse ID for a role id, logged; an empty text when no property is set.
    static std::string readFuseId(const CalibrationFileTables& tables, int roleId,
                                  const char* logTag) {
        const FuseIdProperty property = lookUpFuseId(tables, roleId);
        if (!property.set()) return "";
        __android_log_print(ANDROID_LOG_INFO, logTag, "proertyId:%s \n", property.value.c_str());
        int length = 0;
        std::string fuseId = decodeFuseIdProperty(property.value, property.name, &length);
        __android_log_print(ANDROID_LOG_INFO, logTag, "fuseLen: %d, fuseId:%s", length,
                            fuseId.c_str());
        return fuseId;
    }

    static void printUnknownCamera(const std::string& camera) {
        fprintf(stdout, "failed to find camera %s's valid cameraRoldId\n", camera.c_str());
    }

    // Prints a stored or source file, or why it cannot be read.
    static void dump(const std::string& file) {
        Record record;
        if (record.parse(file.c_str())) {
            record.dump();
        } else {
            fprintf(stdout, "Error:failed to parse file %s\n", file.c_str());
        }
    }

  private:
    std::string camera;
    std::string sourceFile;
    bool matched = false;
    Record record;
    const CalibrationFileTables& tables;
    const char* logTag;
    const char* logKind;
    bool followSourceLinks;
};
