#pragma once

#include <android/log.h>

#include <cstdio>
#include <string>

#include "base/filereader.h"
#include "common/calibrationlog.h"
#include "common/cameras.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/fuseidproperty.h"

// What the AE and the AWB/LSC files managers have in common: a calibration record read from a
// source file, accepted only when its fuse ID is the fitted sensor's, stored under the camera's
// persist path and logged in the calibration log. `Record` provides parse, valid, fuseId, write
// and dump. The manager's cameras are those with a file in `fileColumn` of the camera table.
template <typename Record>
class CalibrationFilesManager {
  public:
    // The tag and kind must outlive the manager: they are the managers' constants. A source file
    // on shared storage, where anyone may plant a link, is read only as the file itself
    // (`sourceLinks` Links::refuse).
    CalibrationFilesManager(std::string camera, std::string sourceFile, CameraColumn fileColumn,
                            const char* logTag, const char* logKind, Links sourceLinks)
        : camera(std::move(camera)),
          sourceFile(std::move(sourceFile)),
          fileColumn(fileColumn),
          logTag(logTag),
          logKind(logKind),
          sourceLinks(sourceLinks) {}

    bool fuseIdMatched() const { return matched; }

    // Reads the source file and compares its fuse ID with the sensor's; true when they match,
    // now or at an earlier call (the file is then not read again).
    bool matchFuseId() {
        if (matched) return true;
        record.parse(sourceFile.c_str(), sourceLinks);
        if (!record.valid()) {
            fprintf(stdout, "Error:Failed to parse file %s\n", sourceFile.c_str());
            return false;
        }
        const CameraRole* role = lookUp(fileColumn, camera);
        if (role == nullptr) {
            printUnknownCamera(camera);
            return false;
        }
        const std::string recordFuseId = record.fuseId();
        if (readFuseId(*role, logTag) == recordFuseId) {
            matched = true;
        } else {
            fprintf(stdout, "Error:mismatch efuseId\n");
        }
        return matched;
    }

    // Stores a matched record at the camera's persist path and logs the outcome.
    bool write() {
        if (!matched || !record.valid()) return false;
        const CameraRole* role = lookUp(fileColumn, camera);
        if (role == nullptr) {
            writeLog(false);
            return false;
        }
        const std::string file = persistFile(role->*fileColumn);
        const WriteResult result = record.write(file.c_str());
        if (result.stored()) {
            fprintf(stdout, "Successfully write file %s\n", file.c_str());
            reportFileAttribute(file.c_str(), 0, result.ownerError);
        } else {
            fprintf(stdout, "Error:Failed to write file %s\n", file.c_str());
        }
        writeLog(result.stored());
        return result.stored();
    }

    void writeLog(bool ok) const { appendCalibrationLog(camera, logKind, ok); }

    // The camera of `column` named `shortName`, or null.
    static const CameraRole* lookUp(CameraColumn column, const std::string& shortName) {
        const CameraRole* role = cameraByShortName(shortName);
        return role != nullptr && !(role->*column).empty() ? role : nullptr;
    }

    // The sensor's fuse ID for a role id of the manager's table, logged; an empty text when no
    // property is set.
    static std::string readFuseId(CameraColumn column, int roleId, const char* logTag) {
        const CameraRole* role = cameraByRoleId(roleId);
        if (role == nullptr || (role->*column).empty()) return "";
        return readFuseId(*role, logTag);
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
    static std::string readFuseId(const CameraRole& role, const char* logTag) {
        const FuseIdProperty property = readSensorFuseIdProperty(role);
        if (!property.set()) return "";
        __android_log_print(ANDROID_LOG_INFO, logTag, "proertyId:%s \n", property.value.c_str());
        int length = 0;
        std::string fuseId = decodeFuseIdProperty(property.value, property.name, &length);
        __android_log_print(ANDROID_LOG_INFO, logTag, "fuseLen: %d, fuseId:%s", length,
                            fuseId.c_str());
        return fuseId;
    }

    std::string camera;
    std::string sourceFile;
    CameraColumn fileColumn;
    bool matched = false;
    Record record;
    const char* logTag;
    const char* logKind;
    Links sourceLinks;
};
