#include "cli/stages.h"

#include <cstdio>

#include "cli/cameramap.h"
#include "cli/stageactions.h"

namespace {

// The short name of the -n camera, or empty after saying it is unknown.
std::string lookUpCamera(const std::string& camera) {
    const std::string_view name = cameraMap(camera);
    if (name.empty()) fprintf(stdout, "Error:Invalid camera name\n");
    return std::string(name);
}

}  // namespace

int runStages(const RunParameters& parameters) {
    if (!parameters.eeprom.empty()) runEepromExport(parameters);

    if (parameters.unscreen && !parameters.camera.empty()) {
        const std::string camera = lookUpCamera(parameters.camera);
        if (camera.empty()) return -1;
        StageResult result = runUnderScreenAwbLsc(parameters, camera);
        if (result.endsRun) return result.status;
    }

    const int exposure = exposureValue(parameters.ae);

    if (parameters.dump) return runAeDump(parameters);

    // The camera is looked up even without AE values, so an unknown -n ends every run that
    // gets this far.
    if (!parameters.camera.empty()) {
        const std::string camera = lookUpCamera(parameters.camera);
        if (camera.empty()) return -1;
        if (parameters.limux != 0 && parameters.iso != 0 && exposure != 0) {
            StageResult result = runAeStore(parameters, camera, exposure);
            if (result.endsRun) return result.status;
        }
    }

    if (parameters.dac != 0 && parameters.temp != 0) runAfStore(parameters);
    if (!parameters.check.empty()) runAfCheck(parameters);
    if (parameters.hasPdOffset) runPdOffsetWrite(parameters);
    if (parameters.hasPdOffsetSfrData) runPdOffsetSfrData(parameters);
    return 0;
}
