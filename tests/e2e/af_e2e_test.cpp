#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "tests/support/devicefolder.h"
#include "tests/support/socketlistener.h"

namespace {

const char kAfFile[] = "com.nurvak.afc.bin";
const std::vector<std::string> kStore = {"-n", "0", "-d", "50", "-D", "300", "-t", "30"};

class AfStore : public testing::Test {
  protected:
    void SetUp() override { device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123"); }

    std::string afFile() const { return device.persistFile(kAfFile); }

    DeviceFolder device;
    SocketListener service{device.socketPrefix() + "com.nurvak.loadCalibrationFiles"};
};

TEST_F(AfStore, FullDiskIsAFailureAndKeepsTheOldFile) {
    const std::string old = "1,0,ABC123,10,300,25,1\n";
    writeFile(afFile(), old);
    RunOptions fullDisk;
    fullDisk.fileSizeLimit = 30;  // the new file needs 50 bytes
    RunResult result = device.run(kStore, fullDisk);
    EXPECT_EQ(result.out, "Error:failed to write " + afFile() + "\n");
    EXPECT_EQ(readFile(afFile()), old);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{kAfFile});
    EXPECT_EQ(service.received(), std::vector<std::string>{});
}

TEST_F(AfStore, StationsStoringAtOnceLoseNoPoint) {
    std::vector<std::thread> stations;
    std::vector<RunResult> results(6);
    for (int i = 0; i < 6; ++i) {
        stations.emplace_back([&, i] {
            results[i] = device.run({"-n", "0", "-d", std::to_string(10 * (i + 1)), "-D",
                                     std::to_string(100 + i), "-t", "30"});
        });
    }
    for (std::thread& station : stations) station.join();
    for (const RunResult& result : results) {
        EXPECT_EQ(result.out, "Successfully write " + afFile() + "\n");
    }
    std::string file = readFile(afFile());
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_NE(file.find(",ABC123," + std::to_string(10 * (i + 1)) + "," +
                            std::to_string(100 + i) + ",30,"),
                  std::string::npos)
            << file;
    }
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{kAfFile});
    EXPECT_EQ(service.received().size(), 6u);
}

TEST_F(AfStore, BusyPersistDirectoryEndsTheStageWithoutWriting) {
    const std::string directory = device.persistFile("");
    int fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);  // another station is rewriting a file
    RunResult result = device.run(kStore);
    close(fd);
    EXPECT_EQ(result.out, "Error:persist directory " + directory +
                              " is in use by another optoquill, gave up after 5000 ms\n"
                              "Error:failed to write " +
                              afFile() + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
}

}  // namespace
