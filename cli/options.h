#pragma once

#include "cli/runparameters.h"

// Parses every option; an unknown option, a missing argument or -h asks for the usage text.
RunParameters parseOptions(int argc, char* argv[]);

// The usage text, on standard output.
void printUsage();
