#pragma once

#include "cli/runparameters.h"

// Runs the nine stages in their fixed order, each when its options switch it on, and returns
// the exit status: 0, or -1 for an unknown camera and the stages that fail fatally.
int runStages(const RunParameters& parameters);
