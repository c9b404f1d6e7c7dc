#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "ae/aecalibrationfilesmanager.h"
#include "cli/stageactions.h"
#include "common/devicepaths.h"
#include "common/persistlock.h"

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
    const std::string& source = tempAeFilePath();
    AeCalibrationFilesManager::makeFile(camera, source, parameters.limux, parameters.iso, exposure);
    // Only the file makeFile made will do: a link planted on shared storage is not followed.
    struct stat info;
    if (lstat(source.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        fprintf(stdout, "Error:failed to create emp file %s!\n", source.c_str());
        return StageResult::endRun(-1);
    }
    {
        PersistLock lock(persistDirectory());
        if (lock.acquire()) {
            AeCalibrationFilesManager manager(camera, source);
            manager.parse();
            manager.write();
        }
    }
    remove(source.c_str());
    return StageResult::goOn();
}
