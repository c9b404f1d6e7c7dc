#include "cli/options.h"
#include "cli/stages.h"
#include "platform/deviceroot.h"

int main(int argc, char* argv[]) {
    optoquillOpenDevice();
    RunParameters parameters = parseOptions(argc, argv);
    if (parameters.help) {
        printUsage();
        return 0;
    }
    return runStages(parameters);
}
