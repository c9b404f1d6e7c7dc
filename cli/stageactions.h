#pragma once

#include <string>

#include "cli/runparameters.h"
#include "cli/stageresult.h"

// The action of each stage, in the order the run takes them. Each builds its own calibration
// object and is done with it before the next stage begins.

// Stage 1 (-E): exports an EEPROM blob; the run always goes on.
void runEepromExport(const RunParameters& parameters);

// Stage 2 (-u): stores or dumps a front camera's AWB/LSC file. `camera` is the short name.
StageResult runUnderScreenAwbLsc(const RunParameters& parameters, const std::string& camera);

// Stage 4 (-i): dumps an AE file; always ends the run, with the status returned.
int runAeDump(const RunParameters& parameters);

// Stage 5: stores the AE values of the command line. `camera` is the short name.
StageResult runAeStore(const RunParameters& parameters, const std::string& camera, int exposure);

// Stage 6 (-D and -t): stores an AF point; stage 7 (-c): prints a stored AF DAC.
void runAfStore(const RunParameters& parameters);
void runAfCheck(const RunParameters& parameters);

// Stage 8 (-o): stores PD offsets; stage 9 (-S): adds SFR data and prints the values back.
void runPdOffsetWrite(const RunParameters& parameters);
void runPdOffsetSfrData(const RunParameters& parameters);
