#pragma once

#include <string>

#include "awblsc/eepromcalibrationdata.h"
#include "common/calibrationfilesmanager.h"

// Stores a front camera's AWB/LSC calibration file under the persist partition once its fuse ID
// is the fitted sensor's, and logs the outcome in the calibration log.
class EepromCalibrationFilesManager {
  public:
    EepromCalibrationFilesManager(std::string camera, std::string sourceFile);

    // Reads the source file and compares its fuse ID with the sensor's; true on a match (now or
    // at an earlier call), which is when the file is to be stored and announced.
    bool parse();

    // Stores a matched file and logs the outcome.
    void write();

    // Prints an AWB/LSC file.
    static void dump(std::string file);

  private:
    CalibrationFilesManager<EepromCalibrationData> files;
};
