#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "common/uniquefd.h"
#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"

namespace {

const char kLog[] = "com.nurak.camera.checksum.bin";
const char kLinkError[] = "Too many levels of symbolic links";
const std::string kAeStored =
    bytes({0x02, 0xAB, 0x12, 0x02, 0x64, 0x00, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01, 0xD3, 0xA9});
const std::vector<std::string> kAeStore = {"-n", "0", "-l", "100", "-s", "200", "-e", "300"};

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

// A directory at the temporary AE file's name cannot be made or parsed, but is removed and the
// run goes on; a link there is replaced, and its target (a valid AE source) never read.
TEST_F(Guarantees, WrongThingAtTheTemporaryAeFile) {
    const std::string tmp = device.path("sdcard/tmp");
    const std::string afDone =
        "Successfully write " + device.persistFile("com.nurvak.afc.bin") + "\nsocket init failed\n";
    std::vector<std::string> storeBoth = kAeStore;
    storeBoth.insert(storeBoth.end(), {"-D", "300", "-t", "30"});

    ASSERT_EQ(mkdir(tmp.c_str(), 0755), 0);
    RunResult result = device.run(storeBoth);
    EXPECT_EQ(result.out, "Error:failed to open log file " + tmp + "\nError:Failed to parse file " +
                              tmp + "\n" + afDone);
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(fileExists(tmp));

    const std::string other =
        bytes({0x02, 0xAB, 0x12, 0x02, 0xE7, 0x03, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01});
    writeFile(device.path("other"), other);
    ASSERT_EQ(symlink(device.path("other").c_str(), tmp.c_str()), 0);
    result = device.run(storeBoth);
    EXPECT_EQ(result.out, "Successfully write file " +
                              device.persistFile("com.nurvak.aecal.w.bin") + "\n" + afDone);
    EXPECT_EQ(readFile(device.persistFile("com.nurvak.aecal.w.bin")), kAeStored);
    EXPECT_EQ(readFile(device.path("other")), other);
    EXPECT_FALSE(fileExists(tmp));

    // Not even a dump reads the temporary AE file through a link.
    ASSERT_EQ(symlink(device.path("other").c_str(), tmp.c_str()), 0);
    result = device.run({"-i", "-s", "1", "-f", tmp});
    EXPECT_EQ(result.out, "Error:failed to parse file " + tmp + "\n");
}

TEST_F(Guarantees, LinkAtAPersistNameLeavesItsTargetAlone) {
    const auto written = [&](const char* file, const char* verb = "Successfully write file ") {
        return verb + device.persistFile(file) + "\n";
    };
    const std::string log = device.persistFile(kLog);
    const std::string toLog = "Error:failed to open log file " + log +
                              "\nError: fail to change permissions of " + log +
                              " to 0644: " + kLinkError;
    const struct {
        const char* name;
        std::vector<std::string> arguments;
        std::string out;
    } cases[] = {
        {"com.nurvak.aecal.w.bin", kAeStore, written("com.nurvak.aecal.w.bin")},
        {kLog, kAeStore, written("com.nurvak.aecal.w.bin") + toLog},
        {"com.nurvak.awblsccal.f.bin",
         {"-u", "-n", "1", "-f", awbLscSource},
         written("com.nurvak.awblsccal.f.bin") + "socket init failed\n"},
        {"com.nurvak.afc.bin",
         {"-n", "0", "-d", "50", "-D", "300", "-t", "30"},
         written("com.nurvak.afc.bin", "Successfully write ") + "socket init failed\n"},
        {"com.nurvak.pdoffset.bin",
         {"-n", "0", "-L", "1", "-o", "1.5"},
         written("com.nurvak.pdoffset.bin", "Successfully write ") + "socket init failed\n"},
    };
    const std::string victim = device.path("victim");
    for (const auto& c : cases) {
        unlink(victim.c_str());
        writeFile(victim, "victim");
        ASSERT_EQ(chmod(victim.c_str(), 0600), 0);
        ASSERT_EQ(symlink(victim.c_str(), device.persistFile(c.name).c_str()), 0);
        RunResult result = device.run(c.arguments);
        EXPECT_EQ(result.out, c.out) << c.name;
        if (geteuid() == 0) {  // else every file's ownership message comes too
            EXPECT_EQ(result.err, c.name == kLog ? "Error changing group ownership of " + log +
                                                       " to 1000: " + kLinkError
                                                 : "");
        }
        struct stat info;
        ASSERT_EQ(stat(victim.c_str(), &info), 0);
        EXPECT_EQ(readFile(victim), "victim") << c.name;
        EXPECT_EQ(info.st_mode & 07777, 0600u) << c.name;
        EXPECT_EQ(info.st_uid, geteuid()) << c.name;
        for (const std::string& name : device.persistEntries()) {
            unlink(device.persistFile(name).c_str());
        }
    }
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
