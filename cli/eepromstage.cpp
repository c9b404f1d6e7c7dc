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
            blob.read(parameters.eeprom);
            exported = blob.process();
        }
    }
    fprintf(stdout, exported ? "Successfully write eeprombin\n" : "Failed to write eeprombin\n");
}
