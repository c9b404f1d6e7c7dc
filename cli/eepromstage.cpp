#include <cstdio>

#include "cli/stageactions.h"
#include "cli/stagelock.h"
#include "eeprom/eeprombindata.h"

void runEepromExport(const RunParameters& parameters) {
    bool exported = false;
    {
        PersistLock lock;
        if (lockForStage(lock)) {
            EepromBinData blob;
            // An unreadable blob is left to process(), whose checks then fail: the stage's one
            // failure line says it.
            static_cast<void>(blob.read(parameters.eeprom));
            exported = blob.process();
        }
    }
    fprintf(stdout, exported ? "Successfully write eeprombin\n" : "Failed to write eeprombin\n");
}
