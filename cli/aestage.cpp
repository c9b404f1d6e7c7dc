#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "ae/aecalibrationfilesmanager.h"
#include "base/signalblock.h"
#include "cli/stageactions.h"
#include "cli/stagelock.h"
#include "common/devicepaths.h"

int runAeDump(const RunParameters& parameters) {
    if (parameters.iso == 0) return 0;
    if (access(parameters.file.c_str(), F_OK) != 0) {
        fprintf(stdout, "Error:failed to find file %s!\n", parameters.file.c_str());
        return -1;
    }
    AeCalibrationFilesManager::dump(parameters.file);
    return 0;
}

StageResult runAeStore(const RunParameters& parameters, const std::string& camera, int exposure) {
    // The device has one temporary AE file: the lock keeps it one station's from making to
    // removing, so no other run overwrites, reads or removes it in between.
    PersistLock lock;
    if (!lockForStage(lock)) return StageResult::goOn();
    const std::string& source = tempAeFilePath();
    // The file on shared storage is this run's from making to removing: a hang-up or interrupt
    // waits until it is gone.
    SignalBlock holdSignals;
    AeCalibrationFilesManager::makeFile(camera, source, parameters.limux, parameters.iso, exposure);
    // Whatever stands at the name counts, even what makeFile could not replace (a directory, a
    // link planted meanwhile): parse refuses it and remove takes it away. Links are not followed.
    struct stat info;
    if (lstat(source.c_str(), &info) != 0) {
        fprintf(stdout, "Error:failed to create emp file %s!\n", source.c_str());
        return StageResult::endRun(-1);
    }
    AeCalibrationFilesManager manager(camera, source);
    manager.parse();
    manager.write();
    remove(source.c_str());
    return StageResult::goOn();
}
