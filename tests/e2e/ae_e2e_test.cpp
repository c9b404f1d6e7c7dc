#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/devicefolder.h"
#include "tests/support/socketlistener.h"

namespace {

const char kAeFile[] = "com.nurvak.aecal.w.bin";
const char kLog[] = "com.nurak.camera.checksum.bin";
const std::string kStored =
    bytes({0x02, 0xAB, 0x12, 0x02, 0x64, 0x00, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01, 0xD3, 0xA9});
const std::vector<std::string> kStore = {"-n", "0", "-l", "100", "-s", "200", "-e", "300"};

TEST(AeStore, StoresTheMaintainFormForTheFittedSensor) {
    DeviceFolder device;
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0004AB12");
    SocketListener service(device.socketPrefix() + "com.nurvak.loadCalibrationFiles");
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.out, "Successfully write file " + device.persistFile(kAeFile) + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(device.persistFile(kAeFile)), kStored);
    EXPECT_EQ(fileMode(device.persistFile(kAeFile)), 0644u);
    if (geteuid() == 0) {
        struct stat info;
        ASSERT_EQ(stat(device.persistFile(kAeFile).c_str(), &info), 0);
        EXPECT_EQ(info.st_uid, 1000u);
        EXPECT_EQ(info.st_gid, 1000u);
    }
    EXPECT_EQ(readFile(device.persistFile(kLog)), "camera:w,ae,result:1\n");
    EXPECT_EQ(fileMode(device.persistFile(kLog)), 0644u);
    EXPECT_FALSE(fileExists(device.path("sdcard/tmp")));
    EXPECT_EQ(device.persistEntries(), (std::vector<std::string>{kLog, kAeFile}));
    EXPECT_EQ(service.received(), std::vector<std::string>{});

    // A second store replaces the file and adds a log line.
    result = device.run({"-n", "0", "-l", "100", "-s", "200", "-e", "600/2"});
    EXPECT_EQ(readFile(device.persistFile(kAeFile)), kStored);
    EXPECT_EQ(readFile(device.persistFile(kLog)), "camera:w,ae,result:1\ncamera:w,ae,result:1\n");
}

TEST(AeStore, LowerCaseFuseIdInThePropertyIsAMismatch) {
    DeviceFolder device;
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0004ab12");
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.out, "Error:mismatch efuseId\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
    EXPECT_FALSE(fileExists(device.path("sdcard/tmp")));
}

TEST(AeStore, NoFuseIdPropertyStoresARecordWithoutFuseId) {
    DeviceFolder device;
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.status, 0);
    std::string stored = readFile(device.persistFile(kAeFile));
    EXPECT_EQ(stored.substr(0, 10),
              bytes({0x00, 0x02, 0x64, 0x00, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01}));
    EXPECT_EQ(stored.size(), 12u);
}

TEST(AeStore, MalformedFuseIdPropertyAbortsBeforeWriting) {
    DeviceFolder device;
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx12");
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_EQ(result.err,
              "Error:fuse-ID length of vendor.camera.sensor.w.fuseID (value too short) is not a "
              "valid number: \"xxxx12\"\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
    EXPECT_FALSE(fileExists(device.path("sdcard/tmp")));
}

TEST(AeStore, MissingSdcardFolderEndsTheRun) {
    DeviceFolder device;
    rmdir(device.path("sdcard").c_str());
    RunResult result = device.run(kStore);
    const std::string tmp = device.path("sdcard/tmp");
    EXPECT_EQ(result.out, "Error:failed to open log file " + tmp +
                              "\nError:failed to create emp file " + tmp + "!\n");
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

TEST(AeStore, LinkPlantedAtTheTemporaryFileIsNotFollowed) {
    DeviceFolder device;
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0004AB12");
    writeFile(device.path("victim"), "must stay");
    ASSERT_EQ(symlink(device.path("victim").c_str(), device.path("sdcard/tmp").c_str()), 0);
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(device.path("victim")), "must stay");
    EXPECT_EQ(readFile(device.persistFile(kAeFile)), kStored);
    EXPECT_FALSE(fileExists(device.path("sdcard/tmp")));
}

TEST(AeDump, PrintsAStoredFile) {
    DeviceFolder device;
    writeFile(device.persistFile(kAeFile), kStored);
    RunResult result = device.run({"-i", "-s", "1", "-f", device.persistFile(kAeFile)});
    EXPECT_EQ(result.out, device.persistFile(kAeFile) +
                              ":\n"
                              "maintain format:\n"
                              "|1 byte |len byte|1 byte |len byte|1 byte |len byte|1 byte     |len "
                              "byte|2 byte|\n"
                              "|fuselen|fuseId  |lumalen|luma    |gainlen|gain    "
                              "|exposurelen|exposure|crc   |\n"
                              "contents:\n"
                              "02AB1202640002C800022C01D3A9\n");
    EXPECT_EQ(result.status, 0);
}

TEST(AeDump, LogsTheValuesAndReportsWhatItCannotRead) {
    DeviceFolder device;
    writeFile(device.path("luma"),
              bytes({0x00, 0x02, 0x34, 0x12, 0x02, 0x00, 0x00, 0x02, 0x00, 0x00, 0xAA, 0xBB}));
    RunResult result = device.run({"-i", "-s", "1", "-f", device.path("luma")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.log(),
              "D/AeCalibrationData: data file size 12\n"
              "E/AeCalibrationData: mismatch crc (0xAABB, 0x5F30)\n"
              "D/AeCalibrationData: file_byte=12, luma=4660, gain=0, exposure=0, crc=0x5f30\n"
              "D/AeCalibrationData: fuse byte=0, id=\n");

    writeFile(device.path("short"), bytes({0x01, 0xAA, 0x02}));
    result = device.run({"-i", "-s", "1", "-f", device.path("short")});
    EXPECT_EQ(result.out, "Error:failed to parse file " + device.path("short") + "\n");
    EXPECT_NE(device.log().find("E/AeCalibrationData: " + device.path("short") +
                                ": fileSize(3) != (1 + 3 + 1 + 0 + 1 + 0 + 1 + 0)\n"),
              std::string::npos);

    result = device.run({"-i", "-s", "1", "-f", device.path("missing")});
    EXPECT_EQ(result.out, "Error:failed to find file " + device.path("missing") + "!\n");
    EXPECT_EQ(result.status, 255);

    result = device.run({"-i", "-f", device.path("missing"), "-n", "0", "-D", "1", "-t", "1"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
