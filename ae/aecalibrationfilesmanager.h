#pragma once

#include <string>

#include "ae/aecalibrationdata.h"
#include "common/calibrationfilesmanager.h"

// Turns the AE values of the command line into a camera's protected AE file: a factory-form
// source file (makeFile), checked against the sensor's fuse ID (parse), stored in maintain form
// under the camera's persist path and logged (write).
class AeCalibrationFilesManager {
  public:
    AeCalibrationFilesManager(std::string camera, std::string sourceFile);

    // Reads the source file and compares its fuse ID with the sensor's. Returns whether the IDs
    // had matched before this call, so a first match gives false; write() goes by the match.
    bool parse();

    // Stores a matched record; true when the AE file was written.
    bool write();

    // Prints an AE file.
    static void dump(std::string file);

    // Writes a factory-form AE file for `camera` with the sensor's fuse ID and the values.
    static void makeFile(const std::string& camera, const std::string& file, int luma, int gain,
                         int exposure);

  private:
    CalibrationFilesManager<AeCalibrationData> files;
};
