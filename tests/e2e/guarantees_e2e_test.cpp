#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "common/uniquefd.h"
#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"

namespace {

const char kLog[] = "com.nurak.camera.checksum.bin";

// Every camera's sensor carries fuse ID AB12, and an AWB/LSC file for it is at hand.
class Guarantees : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* camera : {"w", "f", "t", "u", "m", "t4x", "m2x", "d", "faux"}) {
            device.setProperty(std::string("vendor.camera.sensor.") + camera + ".fuseID",
                               "xxxx0004AB12");
        }
        writeFile(awbLscSource, awbLscFile(bytes({0xAB, 0x12})));
    }

    DeviceFolder device;
    const std::string awbLscSource = device.path("awblsc.bin");
};

TEST_F(Guarantees, StationsStoringAtOnceLoseNothing) {
    // Eight AE stores, two AWB/LSC stores and four AF points, all at once.
    const std::vector<std::string> ids = {"0", "1", "20", "21", "22", "23", "24", "25", "1", "40"};
    std::vector<std::string> entries = {kLog, "com.nurvak.afc.bin"};
    std::vector<std::thread> stations;
    for (size_t i = 0; i < ids.size() + 4; ++i) {
        const std::vector<std::string> args =
            i < 8    ? std::vector<std::string>{"-n", ids[i], "-l", "100", "-s", "200", "-e", "300"}
            : i < 10 ? std::vector<std::string>{"-u", "-n", ids[i], "-f", awbLscSource}
                     : std::vector<std::string>{"-n", "0",   "-d", std::to_string(i),
                                                "-D", "300", "-t", "30"};
        stations.emplace_back([this, args] { EXPECT_EQ(device.run(args).status, 0); });
    }
    for (const char* name : {"w", "f", "t", "u", "m", "t4x", "m2x", "d"}) {
        entries.push_back(std::string("com.nurvak.aecal.") + name + ".bin");
    }
    entries.insert(entries.end(), {"com.nurvak.awblsccal.f.bin", "com.nurvak.awblsccal.faux.bin"});
    for (std::thread& station : stations) station.join();
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(device.persistEntries(), entries);
    const std::string log = readFile(device.persistFile(kLog));
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 10);
    EXPECT_EQ(log.find("result:0"), std::string::npos);
    const std::string points = readFile(device.persistFile("com.nurvak.afc.bin"));
    for (size_t i = ids.size(); i < ids.size() + 4; ++i) {
        EXPECT_NE(points.find("0,0,AB12," + std::to_string(i) + ",300,30,"), std::string::npos);
    }
}

// Without the right to give files to the system user, the mode is still set, each file's owner
// message comes, and the EEPROM export counts as failed.
TEST_F(Guarantees, WithoutTheRightToChown) {
    device.setProperty("vendor.camera.sensor.qz.dualcal.checksum", "c3");
    std::string blob(8100, 'U');
    blob[8099] = '\xC3';
    writeFile(device.path("ab12.bin"), blob);
    RunOptions nobody;
    nobody.asNobody = true;
    if (geteuid() == 0) {
        ASSERT_EQ(system(("chown -R 65534:65534 " + device.root()).c_str()), 0);
    }
    RunResult result = device.run(
        {"-E", device.path("ab12.bin"), "-n", "0", "-l", "1", "-s", "2", "-e", "3"}, nobody);
    const std::vector<std::string> files = {"ab12.bin", "com.nurvak.aecal.w.bin", kLog};
    EXPECT_EQ(result.out, "Failed to write eeprombin\nSuccessfully write file " +
                              device.persistFile(files[1]) + "\n");
    std::string denied;
    for (const std::string& file : files) {
        denied += "Error changing group ownership of " + device.persistFile(file) +
                  " to 1000: Operation not permitted";
        struct stat info;
        ASSERT_EQ(stat(device.persistFile(file).c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777, 0644u);
    }
    EXPECT_EQ(result.err, denied);
}

TEST_F(Guarantees, FullDiskIsAFailureAndKeepsTheOldFile) {
    const std::string af = device.persistFile("com.nurvak.afc.bin");
    writeFile(af, "1,0,AB12,10,300,25,1\n");
    RunOptions fullDisk;
    fullDisk.fileSizeLimit = 30;  // the new file needs 46 bytes
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"}, fullDisk);
    EXPECT_EQ(result.out, "Error:failed to write " + af + "\n");
    EXPECT_EQ(readFile(af), "1,0,AB12,10,300,25,1\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{"com.nurvak.afc.bin"});
}

TEST_F(Guarantees, BusyPersistDirectoryEndsTheStageWithoutWriting) {
    const std::string directory = device.persistFile("");
    UniqueFd held(open(directory.c_str(), O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(flock(held.get(), LOCK_EX), 0);  // another station is rewriting a file
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"});
    EXPECT_EQ(result.out, "Error:persist directory " + directory +
                              " is in use by another optoquill, gave up after 5000 ms\n"
                              "Error:failed to write " +
                              device.persistFile("com.nurvak.afc.bin") + "\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

}  // namespace
