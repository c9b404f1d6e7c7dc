#include <cstdio>

#include "af/afcalibrationdata.h"
#include "cli/loadcalifiles.h"
#include "cli/stageactions.h"
#include "cli/stagelock.h"

void runAfStore(const RunParameters& parameters) {
    PersistLock lock;
    const bool locked = lockForStage(lock);
    // Loaded even when another station keeps the directory: it gives the stage its file's path.
    AfCalibrationData store;
    store.init();
    const bool written = locked &&
                         store.write(parameters.camera, parameters.dist, parameters.dac,
                                     parameters.temp, parameters.useflag) &&
                         store.flush();
    if (written) {
        fprintf(stdout, "Successfully write %s\n", store.getPath().c_str());
        loadCaliFiles("com.nurvak.loadCalibrationFiles", "afcal");
    } else {
        fprintf(stdout, "Error:failed to write %s\n", store.getPath().c_str());
    }
}

void runAfCheck(const RunParameters& parameters) {
    AfCalibrationData store;
    store.init();
    std::string fuseId = parameters.check;
    fprintf(stdout, "dac=%d\n", store.getDac(fuseId, parameters.dist));
}
