#include "cli/options.h"
#include "cli/stages.h"
#include "common/standardoutput.h"
#include "platform/deviceroot.h"

int main(int argc, char* argv[]) {
    optoquillOpenDevice();
    RunParameters parameters = parseOptions(argc, argv);
    int status = 0;
    if (parameters.help) {
        printUsage();
    } else {
        status = runStages(parameters);
    }
    // The station reads the outcome from standard output: losing it is said, the status stays.
    flushStandardOutput("optoquill");
    return status;
}
