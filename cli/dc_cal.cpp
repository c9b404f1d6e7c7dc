#include "cli/options.h"
#include "cli/stages.h"

int main(int argc, char* argv[]) {
    RunParameters parameters = parseOptions(argc, argv);
    if (parameters.help) {
        printUsage();
        return 0;
    }
    return runStages(parameters);
}
