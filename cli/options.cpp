#include "cli/options.h"

#include <getopt.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Long names as the factory scripts spell them: "limux" and "useflag" (so "--use" works as a
// prefix) differ from what the usage text says, and stay so.
const option kLongOptions[] = {
    {"camera", required_argument, nullptr, 'n'},
    {"file", required_argument, nullptr, 'f'},
    {"iso", required_argument, nullptr, 's'},
    {"ae", required_argument, nullptr, 'e'},
    {"eeprom", required_argument, nullptr, 'E'},
    {"limux", required_argument, nullptr, 'l'},
    {"dist", required_argument, nullptr, 'd'},
    {"dac", required_argument, nullptr, 'D'},
    {"useflag", required_argument, nullptr, 'F'},
    {"temp", required_argument, nullptr, 't'},
    {"check", required_argument, nullptr, 'c'},
    {"dump", no_argument, nullptr, 'i'},
    {"help", no_argument, nullptr, 'h'},
    {"pseudo", no_argument, nullptr, 'p'},
    {"unscreen", no_argument, nullptr, 'u'},
    {"pdOffset", required_argument, nullptr, 'o'},
    {"pdOffsetLength", required_argument, nullptr, 'L'},
    {"pdOffsetSfrData", required_argument, nullptr, 'S'},
    {nullptr, 0, nullptr, 0},
};

const char kShortOptions[] = "n:s:e:E:f:l:d:D:t:c:o:L:S:F:iphu";

}  // namespace

RunParameters parseOptions(int argc, char* argv[]) {
    RunParameters parameters;
    int letter;
    while ((letter = getopt_long(argc, argv, kShortOptions, kLongOptions, nullptr)) != -1) {
        switch (letter) {
            case 'n':
                parameters.camera = optarg;
                break;
            case 'f':
                parameters.file = optarg;
                break;
            case 's':
                parameters.iso = atoi(optarg);
                break;
            case 'e':
                parameters.ae = optarg;
                break;
            case 'E':
                parameters.eeprom = optarg;
                break;
            case 'l':
                parameters.limux = atoi(optarg);
                break;
            case 'd':
                parameters.dist = atoi(optarg);
                break;
            case 'D':
                parameters.dac = atoi(optarg);
                break;
            case 'F':
                parameters.useflag = atoi(optarg);
                break;
            case 't':
                parameters.temp = atoi(optarg);
                break;
            case 'c':
                parameters.check = optarg;
                break;
            case 'i':
                parameters.dump = true;
                break;
            case 'p':
                break;
            case 'u':
                parameters.unscreen = true;
                break;
            case 'o':
                parameters.pdOffset = optarg;
                parameters.hasPdOffset = true;
                break;
            case 'L':
                parameters.pdOffsetLength = atoi(optarg);
                break;
            case 'S':
                parameters.pdOffsetSfrData = optarg;
                parameters.hasPdOffsetSfrData = true;
                break;
            default:
                parameters.help = true;
                break;  // -h, '?' and anything unexpected
        }
    }
    return parameters;
}

void printUsage() {
    static const char kUsageLine[] =
        "usage: optoquill -n camera  [-c fuseID] [-l limix] [-s iso] [-e exposure] [-d dis] "
        "[-D dac] [-t tempe] [-F useFlag]\n";
    // The camera list under the last line is deliberately left out.
    static const char* const kLines[] = {
        kUsageLine,
        "      --lumix             -l          lumix\n",
        "      --iso               -s          sensitivity\n",
        "      --ae                -e          exposure time\n",
        "      --eeprom            -E          eeprom bin file\n",
        "      --dist              -d          obj distance\n",
        "      --dac               -D          af Dac\n",
        "      --temp              -t          sensor temperature\n",
        "      --use               -F          data use flag\n",
        "      --check             -c          check af Dac\n",
        "      --unscreen          -u          under screen\n",
        "      --pdOffset          -o          pdoffset\n",
        "      --pdOffsetLength    -L          pdoffsetLength\n",
        "      --help              -h          usage tips\n",
        "\n\n",
        "Supported camera List:\n",
    };
    for (const char* line : kLines) fputs(line, stdout);
}
