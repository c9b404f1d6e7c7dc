#include "cli/options.h"

#include <getopt.h>

#include <cstdio>
#include <utility>

#include "base/parseint.h"

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
    // Numbers are read as the device's atoi reads them: a text that is no number is 0.
    static constexpr std::pair<char, int RunParameters::*> kNumbers[] = {
        {'s', &RunParameters::iso},           {'l', &RunParameters::limux},
        {'d', &RunParameters::dist},          {'D', &RunParameters::dac},
        {'F', &RunParameters::useflag},       {'t', &RunParameters::temp},
        {'L', &RunParameters::pdOffsetLength}};
    static constexpr std::pair<char, std::string RunParameters::*> kTexts[] = {
        {'n', &RunParameters::camera},
        {'f', &RunParameters::file},
        {'e', &RunParameters::ae},
        {'E', &RunParameters::eeprom},
        {'c', &RunParameters::check},
        {'o', &RunParameters::pdOffset},
        {'S', &RunParameters::pdOffsetSfrData}};
    RunParameters parameters;
    int letter;
    while ((letter = getopt_long(argc, argv, kShortOptions, kLongOptions, nullptr)) != -1) {
        bool known = letter == 'i' || letter == 'u' || letter == 'p';
        for (const auto& [option, member] : kNumbers) {
            if (option != letter) continue;
            parameters.*member = atoiOnDevice(optarg);
            known = true;
        }
        for (const auto& [option, member] : kTexts) {
            if (option != letter) continue;
            parameters.*member = optarg;
            known = true;
        }
        parameters.hasPdOffset |= letter == 'o';
        parameters.hasPdOffsetSfrData |= letter == 'S';
        parameters.dump |= letter == 'i';
        parameters.unscreen |= letter == 'u';
        parameters.help |= !known;  // -h, '?' and anything unexpected
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
