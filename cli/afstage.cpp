#include <cstdio>

#include "af/afcalibrationdata.h"
#include "cli/loadcalifiles.h"
#include "cli/stageactions.h"
#include "cli/underpersistlock.h"

void runAfStore(const RunParameters& parameters) {
    AfCalibrationData store;
    const bool written = loadAndChangeUnderPersistLock(
        [&] { store.init(); },
        [&] {
            return store.write(parameters.camera, parameters.dist, parameters.dac, parameters.temp,
                               parameters.useflag) &&
                   store.flush();
        });
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
