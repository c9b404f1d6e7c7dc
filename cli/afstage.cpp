#include "cli/stageactions.h"

void runAfStore(const RunParameters&) {}

void runAfCheck(const RunParameters&) {}
