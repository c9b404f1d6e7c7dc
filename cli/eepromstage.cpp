#include "cli/stageactions.h"

void runEepromExport(const RunParameters&) {}
