#include <cstdio>

#include "af/afcalibrationdata.h"
#include "base/parseint.h"
#include "cli/loadcalifiles.h"
#include "cli/stageactions.h"
#include "cli/stagelock.h"

namespace {

// "<label>" followed by every value in six-decimal fixed form, each with a comma after it.
std::string listed(const char* label, const std::vector<float>& values) {
    std::string text = label;
    for (float value : values) text += std::to_string(value) + ",";
    return text;
}

}  // namespace

void runPdOffsetWrite(const RunParameters& parameters) {
    PersistLock lock;
    const bool locked = lockForStage(lock);
    AfCalibrationData store;
    store.pdOffsetInit();
    const bool written = locked &&
                         store.pdOffsetWrite(parameters.camera, parameters.pdOffsetLength,
                                             parameters.pdOffset, parameters.useflag) &&
                         store.pdOffsetFlush();
    if (written) {
        fprintf(stdout, "Successfully write %s\n", store.getPdOffsetPath().c_str());
        loadCaliFiles("com.nurvak.loadCalibrationFiles", "pdoffset");
    } else {
        fprintf(stdout, "Error:failed to write %s\n", store.getPdOffsetPath().c_str());
    }
}

void runPdOffsetSfrData(const RunParameters& parameters) {
    PersistLock lock;
    const bool locked = lockForStage(lock);
    // A store of its own: after an -o write in the same run it sees the record just written.
    AfCalibrationData store;
    store.pdOffsetInit();
    const bool written =
        locked && store.pdOffsetSfrDataWrite(parameters.camera, parameters.pdOffsetSfrData) &&
        store.pdOffsetFlush();
    if (!written) {
        fprintf(stdout, "Error:failed to write pdOffsetSfrData\n");
        return;
    }
    std::vector<float> pdOffset;
    std::vector<float> sfrData;
    store.getPdoffset(atoiOnDevice(parameters.camera), pdOffset, sfrData);
    fprintf(stdout, "Success write %s\n",
            (listed("pdoffset:", pdOffset) + listed("; pdoffsetSfr:", sfrData)).c_str());
}
