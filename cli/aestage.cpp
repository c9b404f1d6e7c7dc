#include "cli/stageactions.h"

int runAeDump(const RunParameters&) {
    return 0;
}

StageResult runAeStore(const RunParameters&, const std::string&, int) {
    return StageResult::goOn();
}
