#include <gtest/gtest.h>

#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"
#include "tests/support/socketlistener.h"

namespace {

const char kStored[] = "com.nurvak.awblsccal.f.bin";
const char kLog[] = "com.nurak.camera.checksum.bin";

class AwbLscStore : public testing::Test {
  protected:
    void SetUp() override {
        device.setProperty("vendor.camera.sensor.f.fuseID", "xxxx0004F00D");
        writeFile(source, awbLscFile(bytes({0xF0, 0x0D})));
    }

    DeviceFolder device;
    SocketListener service{device.socketPrefix() + "com.nurvak.AWB.LSC.loadCalibrationFiles"};
    const std::string source = device.path("awblsc.bin");
};

TEST_F(AwbLscStore, StoresTheFileLogsAndTellsTheCameraService) {
    RunResult result = device.run({"-u", "-n", "1", "-f", source});
    EXPECT_EQ(result.out, "Successfully write file " + device.persistFile(kStored) + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(device.persistFile(kStored)), readFile(source));
    EXPECT_EQ(fileMode(device.persistFile(kStored)), 0644u);
    EXPECT_EQ(readFile(device.persistFile(kLog)), "camera:f,awb,result:1\n");
    EXPECT_EQ(service.received(), std::vector<std::string>{"awblsc"});
    EXPECT_EQ(device.persistEntries(), (std::vector<std::string>{kLog, kStored}));
}

TEST_F(AwbLscStore, FuseIdDifferingInCaseIsRefused) {
    device.setProperty("vendor.camera.sensor.f.fuseID", "xxxx0004f00d");
    RunResult result = device.run({"-u", "-n", "1", "-f", source});
    EXPECT_EQ(result.out, "Error:mismatch efuseId\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
    EXPECT_EQ(service.received(), std::vector<std::string>{});
}

TEST_F(AwbLscStore, RearCameraIsNotAnAwbLscCamera) {
    RunResult result = device.run({"-u", "-n", "0", "-f", source});
    EXPECT_EQ(result.out, "failed to find camera w's valid cameraRoldId\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

TEST_F(AwbLscStore, WrongChecksumAndTheParseErrorShareOneLine) {
    std::string content = awbLscFile(bytes({0xF0, 0x0D}));
    const int stored = static_cast<unsigned char>(content[awbChecksumAt(2)]);
    content[awbChecksumAt(2)] = static_cast<char>(stored ^ 0x40);
    writeFile(source, content);
    RunResult result = device.run({"-u", "-n", "1", "-f", source});
    EXPECT_EQ(result.out, "AWB information checksum is " + std::to_string(stored) +
                              ", checksum in file is " + std::to_string(stored ^ 0x40) + ", file " +
                              source + " is invalid!Error:Failed to parse file " + source + "\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
    EXPECT_EQ(service.received(), std::vector<std::string>{});
}

TEST_F(AwbLscStore, MissingFileEndsTheRunWithStatusZeroBeforeTheAfStore) {
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    RunResult result =
        device.run({"-u", "-n", "0", "-f", device.path("missing"), "-D", "10", "-t", "30"});
    EXPECT_EQ(result.out,
              "Error:Can not find calibration data file " + device.path("missing") + "!\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

TEST_F(AwbLscStore, DumpPrintsTheSourceFile) {
    RunResult result = device.run({"-u", "-i", "-n", "1", "-f", source});
    EXPECT_EQ(result.out.rfind(source + ":\nmaintain format:\n", 0), 0u);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

}  // namespace
