#include <unistd.h>

#include <cstdio>

#include "awblsc/eepromcalibrationfilesmanager.h"
#include "cli/loadcalifiles.h"
#include "cli/stageactions.h"
#include "cli/stagelock.h"

StageResult runUnderScreenAwbLsc(const RunParameters& parameters, const std::string& camera) {
    if (access(parameters.file.c_str(), F_OK) != 0) {
        // Not an error for the exit status, but nothing more is done.
        fprintf(stdout, "Error:Can not find calibration data file %s!\n", parameters.file.c_str());
        return StageResult::endRun(0);
    }
    if (parameters.dump) {
        EepromCalibrationFilesManager::dump(parameters.file);
        return StageResult::goOn();
    }
    bool matched = false;
    {
        PersistLock lock;
        if (lockForStage(lock)) {
            EepromCalibrationFilesManager manager(camera, parameters.file);
            matched = manager.parse();
            if (matched) manager.write();
        }
    }
    if (matched) loadCaliFiles("com.nurvak.AWB.LSC.loadCalibrationFiles", "awblsc");
    return StageResult::goOn();
}
