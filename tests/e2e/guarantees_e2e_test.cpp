#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
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
    const std::vector<std::string> names = {"w",   "f",   "t", "u", "m",
                                            "t4x", "m2x", "d", "f", "faux"};
    std::vector<RunResult> results(ids.size() + 4);
    std::vector<std::thread> stations;
    for (size_t i = 0; i < results.size(); ++i) {
        stations.emplace_back([&, i] {
            results[i] = device.run(
                i < 8 ? std::vector<std::string>{"-n", ids[i], "-l", "100", "-s", "200", "-e", "300"}
                : i < 10 ? std::vector<std::string>{"-u", "-n", ids[i], "-f", awbLscSource}
                         : std::vector<std::string>{"-n", "0", "-d", std::to_string(i), "-D", "300",
                                                    "-t", "30"});
        });
    }
    for (std::thread& station : stations) station.join();
    const std::string log = readFile(device.persistFile(kLog));
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 10);
    std::vector<std::string> entries = {kLog, "com.nurvak.afc.bin"};
    for (size_t i = 0; i < ids.size(); ++i) {
        const bool ae = i < 8;
        entries.push_back((ae ? "com.nurvak.aecal." : "com.nurvak.awblsccal.") + names[i] + ".bin");
        EXPECT_EQ(results[i].out, "Successfully write file " + device.persistFile(entries.back()) +
                                      (ae ? "\n" : "\nsocket init failed\n"));
        EXPECT_NE(log.find("camera:" + names[i] + (ae ? ",ae" : ",awb") + ",result:1\n"),
                  std::string::npos);
    }
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(device.persistEntries(), entries);
    const std::string points = readFile(device.persistFile("com.nurvak.afc.bin"));
    for (size_t i = ids.size(); i < results.size(); ++i) {
        EXPECT_NE(points.find("0,0,AB12," + std::to_string(i) + ",300,30,"), std::string::npos);
    }
    EXPECT_EQ(std::count(points.begin(), points.end(), '\n'), 4);
}

// Only regular files named as the safe writer names its temporaries are a killed run's leftovers.
TEST_F(Guarantees, NextStoreRemovesLeftoverTemporariesOnly) {
    const std::vector<std::string> leftovers = {".com.nurvak.afc.bin.Ab3xYz",
                                                ".com.nurvak.aecal.w.bin.000000"};
    std::vector<std::string> kept = {"notes.bin",
                                     "com.nurvak.afc.bin.Ab3xYz",
                                     ".com.nurvak.afc.bin.Ab3xY",
                                     ".com.nurvak.afc.bin.Ab3x-z",
                                     ".notes.txt.Ab3xYz",
                                     ".link.bin.Ab3xYz",
                                     ".dir.bin.Ab3xYz",
                                     "com.nurvak.afc.bin"};
    for (const std::string& name : leftovers) writeFile(device.persistFile(name), "left");
    for (size_t i = 0; i < 5; ++i) writeFile(device.persistFile(kept[i]), "kept");
    ASSERT_EQ(symlink(device.path("properties").c_str(), device.persistFile(kept[5]).c_str()), 0);
    ASSERT_EQ(mkdir(device.persistFile(kept[6]).c_str(), 0755), 0);
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"});
    EXPECT_EQ(result.out, "Successfully write " + device.persistFile("com.nurvak.afc.bin") +
                              "\nsocket init failed\n");
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(device.persistEntries(), kept);
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
