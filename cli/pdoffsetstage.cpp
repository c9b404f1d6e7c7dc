#include "cli/stageactions.h"

void runPdOffsetWrite(const RunParameters&) {}

void runPdOffsetSfrData(const RunParameters&) {}
