#include <cstdio>

#include "cli/stageactions.h"
#include "common/devicepaths.h"
#include "common/persistlock.h"
#include "eeprom/eeprombindata.h"

void runEepromExport(const RunParameters& parameters) {
    bool exported = false;
    {
        PersistLock lock(persistDirectory());
        if (lock.acquireToWrite()) {
            EepromBinData blob;
            blob.read(parameters.eeprom);
            exported = blob.process();
        }
    }
    fprintf(stdout, exported ? "Successfully write eeprombin\n" : "Failed to write eeprombin\n");
}
