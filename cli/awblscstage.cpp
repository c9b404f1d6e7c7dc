#include "cli/stageactions.h"

StageResult runUnderScreenAwbLsc(const RunParameters&, const std::string&) {
    return StageResult::goOn();
}
