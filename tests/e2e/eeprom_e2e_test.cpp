#include <gtest/gtest.h>

#include "tests/support/devicefolder.h"

namespace {

class EepromExport : public testing::Test {
  protected:
    void SetUp() override {
        device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
        device.setProperty("vendor.camera.sensor.qz.dualcal.checksum", "c3");
        blob = std::string(9000, '\0');
        for (size_t i = 0; i < blob.size(); ++i) blob[i] = static_cast<char>(i * 7);
        blob[8099] = static_cast<char>(0xC3);
        writeFile(input, blob);
    }

    DeviceFolder device;
    std::string blob;
    const std::string input = device.path("abc123.bin");
};

TEST_F(EepromExport, CopiesTheBlobUnderItsFuseId) {
    RunResult result = device.run({"-E", input});
    EXPECT_EQ(result.out, "Successfully write eeprombin\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(device.persistFile("abc123.bin")), blob);
    EXPECT_EQ(fileMode(device.persistFile("abc123.bin")), 0644u);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{"abc123.bin"});
}

TEST_F(EepromExport, WrongChecksumWritesNothingAndKeepsAnOlderCopy) {
    device.setProperty("vendor.camera.sensor.qz.dualcal.checksum", "c4");
    RunResult result = device.run({"-E", input});
    EXPECT_EQ(result.out, "Failed to write eeprombin\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});

    writeFile(device.persistFile("abc123.bin"), "older copy");
    result = device.run({"-E", input});
    EXPECT_EQ(readFile(device.persistFile("abc123.bin")), "older copy");
    result = device.run({"-E", device.path("missing/abc123.bin")});
    EXPECT_EQ(result.out, "Failed to write eeprombin\n");
    EXPECT_EQ(readFile(device.persistFile("abc123.bin")), "older copy");
}

TEST_F(EepromExport, ExportAndAfStoreInOneRun) {
    RunResult result = device.run({"-E", input, "-n", "0", "-d", "50", "-D", "300", "-t", "30"});
    EXPECT_EQ(result.out, "Successfully write eeprombin\nSuccessfully write " +
                              device.persistFile("com.nurvak.afc.bin") + "\nsocket init failed\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(),
              (std::vector<std::string>{"abc123.bin", "com.nurvak.afc.bin"}));
}

}  // namespace
