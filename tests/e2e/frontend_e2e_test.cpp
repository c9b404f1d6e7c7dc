#include <gtest/gtest.h>

#include "tests/support/devicefolder.h"

namespace {

const char kUsage[] =
    "usage: optoquill -n camera  [-c fuseID] [-l limix] [-s iso] [-e exposure] [-d dis] "
    "[-D dac] [-t tempe] [-F useFlag]\n"
    "      --lumix             -l          lumix\n"
    "      --iso               -s          sensitivity\n"
    "      --ae                -e          exposure time\n"
    "      --eeprom            -E          eeprom bin file\n"
    "      --dist              -d          obj distance\n"
    "      --dac               -D          af Dac\n"
    "      --temp              -t          sensor temperature\n"
    "      --use               -F          data use flag\n"
    "      --check             -c          check af Dac\n"
    "      --unscreen          -u          under screen\n"
    "      --pdOffset          -o          pdoffset\n"
    "      --pdOffsetLength    -L          pdoffsetLength\n"
    "      --help              -h          usage tips\n"
    "\n\n"
    "Supported camera List:\n";

TEST(FrontEnd, UsageTextForHelpUnknownOptionsAndMissingArguments) {
    DeviceFolder device;
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"-h"},
                                               {"--lumix", "5"},
                                               {"-n"},
                                               {"-n", "0", "-D", "10", "-t", "30", "-h"},
                                               {"-x", "-n", "99", "-D", "10", "-t", "30"}}) {
        RunResult result = device.run(arguments);
        EXPECT_EQ(result.out, kUsage) << arguments[0];
        EXPECT_EQ(result.status, 0);
    }
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
    EXPECT_EQ(device.log(), "");
}

TEST(FrontEnd, AcceptsTheLongNamesAsTheScriptsSpellThem) {
    DeviceFolder device;
    RunResult result = device.run({"--limux", "5", "--use", "1", "-p"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST(FrontEnd, NoOptionsRunsNothing) {
    DeviceFolder device;
    RunResult result = device.run({});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

TEST(FrontEnd, UnknownCameraEndsTheRunBeforeTheAfStore) {
    DeviceFolder device;
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    RunResult result = device.run({"-n", "99", "-D", "10", "-t", "30"});
    EXPECT_EQ(result.out, "Error:Invalid camera name\n");
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});

    result = device.run({"-u", "-n", "w", "-f", device.path("properties")});
    EXPECT_EQ(result.out, "Error:Invalid camera name\n");
    EXPECT_EQ(result.status, 255);
}

TEST(FrontEnd, UnreadablePropertiesFileStopsBeforeAnyStage) {
    DeviceFolder device;
    RunOptions options;
    options.propertiesFile = device.path("no-such-properties");
    RunResult result = device.run({"-n", "0", "-D", "10", "-t", "30"}, options);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "optoquill: cannot read properties file " +
                              device.path("no-such-properties") + ": No such file or directory\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});

    // A line of neither form is only worth a warning.
    writeFile(options.propertiesFile, "vendor.a=1\nvendor.b: 2\n");
    result = device.run({}, options);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "optoquill: properties file " + options.propertiesFile +
                              ", line 2 is neither name=value nor [name]: [value], skipped\n");
}

}  // namespace
