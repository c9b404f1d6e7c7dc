#include <gtest/gtest.h>

#include "tests/support/devicefolder.h"
#include "tests/support/socketlistener.h"

namespace {

const char kPdFile[] = "com.nurvak.pdoffset.bin";
const char kSfr[] = "1,2,3,4,5,6,7,8";
const char kReadBack[] =
    "Success write pdoffset:1.500000,-2.000000,; pdoffsetSfr:1.000000,2.000000,3.000000,"
    "4.000000,5.000000,6.000000,7.000000,8.000000,\n";

class PdOffset : public testing::Test {
  protected:
    void SetUp() override { device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123"); }

    std::string pdFile() const { return device.persistFile(kPdFile); }

    DeviceFolder device;
    SocketListener service{device.socketPrefix() + "com.nurvak.loadCalibrationFiles"};
};

TEST_F(PdOffset, WriteAnnouncesThenSfrDataIsAddedAndReadBack) {
    RunResult result = device.run({"-n", "0", "-o", "1.5,-2", "-L", "2", "-F", "1"});
    EXPECT_EQ(result.out, "Successfully write " + pdFile() + "\n");
    EXPECT_EQ(readFile(pdFile()), "1,0,ABC123,2,1.5,-2,41386\n");
    EXPECT_EQ(fileMode(pdFile()), 0644u);
    EXPECT_EQ(service.received(), std::vector<std::string>{"pdoffset"});

    result = device.run({"-n", "0", "-S", kSfr});
    EXPECT_EQ(result.out, kReadBack);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(pdFile()), "1,0,ABC123,2,1.5,-2,1,2,3,4,5,6,7,8,53134\n");
    EXPECT_EQ(service.received(), std::vector<std::string>{});

    // New values for the same module keep its SFR data; the CRC still holds for the read-back.
    result = device.run({"-n", "0", "-o", "1.5 , -2", "-L", "2", "-F", "5", "-S", kSfr});
    EXPECT_EQ(result.out, "Successfully write " + pdFile() + "\n" + kReadBack);
    EXPECT_EQ(readFile(pdFile()), "1,0,ABC123,2,1.5,-2,1,2,3,4,5,6,7,8,53134\n");
}

TEST_F(PdOffset, ValuesMustMatchTheirCount) {
    RunResult result = device.run({"-n", "0", "-o", "0.1, 0.2 ,0.3", "-L", "03"});
    EXPECT_EQ(result.out, "Successfully write " + pdFile() + "\n");
    EXPECT_EQ(readFile(pdFile()), "0,0,ABC123,3,0.1,0.2,0.3,8413\n");

    const std::string mismatch =
        "input parse is error, pdoffset length and pdoffset data is mismatchError:failed to "
        "write " +
        pdFile() + "\n";
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"-n", "0", "-o", "0.1,0.2,0.3", "-L", "4"},
             {"-n", "0", "-o", "0.1,0.2,0.3", "-L", "2"},
             {"-n", "0", "-o", "0.1,0.2,0.3"},
             {"-n", "0", "-o", "", "-L", "0"},
             {"-n", "0", "-o", std::string(30000, ' ') + ",x", "-L", "3"}}) {
        result = device.run(arguments);
        EXPECT_EQ(result.out, mismatch);
    }
    EXPECT_EQ(readFile(pdFile()), "0,0,ABC123,3,0.1,0.2,0.3,8413\n");
}

TEST_F(PdOffset, SfrDataNeedsEightValuesAndARecordForTheCamera) {
    RunResult result = device.run({"-n", "0", "-S", kSfr});
    EXPECT_EQ(result.out, "Error:failed to write pdOffsetSfrData\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});

    writeFile(pdFile(), "1,0,ABC123,2,1.5,-2,41386\n");
    for (const char* sfr : {"1,2,3,4,5,6,7", "1,2,3,4,5,6,7,8,9", "1,2,3,4,5,6,7,8,", ""}) {
        result = device.run({"-n", "0", "-S", sfr});
        EXPECT_EQ(result.out, std::string("pdoffsetSfrDataStr parse error: ") + sfr +
                                  "\nError:failed to write pdOffsetSfrData\n");
    }
    EXPECT_EQ(readFile(pdFile()), "1,0,ABC123,2,1.5,-2,41386\n");
}

TEST_F(PdOffset, LoadingKeepsWellFormedLinesOnly) {
    writeFile(pdFile(), std::string(30000, ' ') + ",x\n" +
                            "1,0,F1,2,0.5\n"
                            " 1 , 0 ,F1, 2,0.5 ,0.7, 1234\n"
                            "1,0,F1,2,0.5,0.7,1,2\n"
                            "1,20,F2,2,0.5,0.7,1,2,3,4,5,6,7,8,70000\n"
                            "1,21,F1,1,9,5");
    RunResult result = device.run({"-n", "21", "-S", "a,b,c,d,e,f,g,h"});
    EXPECT_EQ(readFile(pdFile()),
              " 1,0,F1,2,0.5,0.7,1234\n"
              "1,20,F2,2,0.5,0.7,1,2,3,4,5,6,7,8,4464\n"
              "1,21,F1,1,9,a,b,c,d,e,f,g,h,31135\n");
    const std::string log = device.log();
    EXPECT_NE(log.find("E/AfCalibrationData: Not expected file format, colum number: 8\n"),
              std::string::npos);
    EXPECT_EQ(log.find("colum number: 5"), std::string::npos);
    EXPECT_NE(log.find("I/AfCalibrationData: exist pdaf offset info : 1,20,F2,2,0.5,0.7,1,2,3,4,5,"
                       "6,7,8,70000\n"),
              std::string::npos);
}

TEST_F(PdOffset, HandAlteredCrcIsRejectedByTheReadBackAndRepairedBySfrData) {
    // The SFR data goes to camera 0's first record, an old module's; the fitted module's record
    // has a hand-altered CRC.
    writeFile(pdFile(),
              "1,0,OLD,1,1,20085\n"
              "1,20,ABC123,2,1.5,-2,999\n");
    RunResult result = device.run({"-n", "0", "-S", kSfr});
    EXPECT_EQ(result.out, "Success write pdoffset:; pdoffsetSfr:\n");
    EXPECT_NE(device.log().find("E/AfCalibrationData: pdOffsetCalData crc check error 34179,999\n"),
              std::string::npos)
        << device.log();

    // With its camera text, the SFR write reaches the fitted module's record and re-sums it.
    writeFile(pdFile(), "1,0,ABC123,2,1.5,-2,999\n");
    result = device.run({"-n", "0", "-S", kSfr});
    EXPECT_EQ(result.out, kReadBack);
}

TEST_F(PdOffset, SfrDataOnAMovedModulesRecordReadsBackEmpty) {
    writeFile(pdFile(), "1,0,OLD,2,1.5,-2,1\n");
    RunResult result = device.run({"-n", "0", "-S", kSfr});
    EXPECT_EQ(result.out, "Success write pdoffset:; pdoffsetSfr:\n");
    EXPECT_EQ(readFile(pdFile()), "1,0,OLD,2,1.5,-2,1,2,3,4,5,6,7,8,11924\n");
    EXPECT_NE(device.log().find("E/AfCalibrationData: fuseId check error ABC123\n"),
              std::string::npos);
}

TEST_F(PdOffset, NonNumericLengthInTheFileEndsTheRunWithoutWriting) {
    writeFile(pdFile(), "1,0,ABC123,x,1.5,-2,1\n");
    RunResult result = device.run({"-n", "0", "-o", "1", "-L", "1"});
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_EQ(result.err,
              "Error:PD-offset length of fuse ID ABC123 is not a valid number: \"x\"\n");
    EXPECT_EQ(readFile(pdFile()), "1,0,ABC123,x,1.5,-2,1\n");
    EXPECT_EQ(service.received(), std::vector<std::string>{});
}

}  // namespace
