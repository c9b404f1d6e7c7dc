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

TEST_F(AfStore, StoresThePointAnnouncesItAndReadsItBack) {
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.out, "Successfully write " + afFile() + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(afFile()), "0,0,ABC123,50,300,30,30010\n");
    EXPECT_EQ(fileMode(afFile()), 0644u);
    EXPECT_EQ(service.received(), std::vector<std::string>{"afcal"});
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{kAfFile});

    result = device.run({"-c", "ABC123", "-d", "50"});
    EXPECT_EQ(result.out, "dac=300\n");
    result = device.run({"-c", "ABC123"});  // the default distance, -1
    EXPECT_EQ(result.out, "dac=-1\n");
    EXPECT_EQ(service.received(), std::vector<std::string>{});
}

TEST_F(AfStore, HandEditedFileIsReadAndWrittenBackClean) {
    // The blanks once overflowed the stack of every later run.
    writeFile(afFile(), "1 , 0 ,ABC, 10,300,25,123\n" + std::string(30000, ' ') +
                            ",x\n"
                            "1,0,ABC,10,300,25\n"
                            "1,20,DEF,50,310,25,70000");
    RunResult result = device.run(kStore);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(afFile()),
              "1,0,ABC,10,300,25,123\n"
              "1,20,DEF,50,310,25,4464\n"
              "0,0,ABC123,50,300,30,30010\n");
    const std::string log = device.log();
    EXPECT_NE(log.find("E/AfCalibrationData: Not expected file format, colum number: 6\n"),
              std::string::npos);
    EXPECT_NE(log.find("I/AfCalibrationData: exist calibration info: 1, 20, DEF, 50, 310, 25, "
                       "4464\n"),
              std::string::npos);
    EXPECT_NE(log.find("I/AfCalibrationData: write record: 0,0,ABC123,50,300,30,30010\n"),
              std::string::npos);
}

TEST_F(AfStore, PointIsUpdatedInPlaceAndDuplicatesResolveToTheFirst) {
    writeFile(afFile(),
              "1,0,ABC123,10,300,25,1\n"
              "1,0,ABC123,50,280,25,2\n"
              "1,0,ABC123,50,999,25,3\n");
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"});
    EXPECT_EQ(readFile(afFile()),
              "1,0,ABC123,10,300,25,1\n"
              "0,0,ABC123,50,300,30,30010\n"
              "1,0,ABC123,50,999,25,3\n");
    result = device.run({"-c", "ABC123", "-d", "50"});
    EXPECT_EQ(result.out, "dac=300\n");
}

TEST_F(AfStore, RefusedPointLeavesTheFileAsItWas) {
    device.setProperty("persist.vendor.camera.sensor.w.afInfo", "10:300,50:420");
    writeFile(afFile(), "1,0,ABC123,10,300,25,1\n");
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "600", "-t", "30", "-F", "1"});
    EXPECT_EQ(result.out, "Error:abs(writingDac - eepromDac) is over 120\nError:failed to write " +
                              afFile() + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(afFile()), "1,0,ABC123,10,300,25,1\n");
    EXPECT_EQ(service.received(), std::vector<std::string>{});
    const std::string log = device.log();
    EXPECT_NE(log.find("I/AfCalibrationData: dis 10 : dac 300\nI/AfCalibrationData: dis 50 : dac "
                       "420\n"),
              std::string::npos);
}

TEST_F(AfStore, BadNumbersEndTheRunWithoutWriting) {
    RunResult result = device.run({"-D", "300", "-t", "30"});  // no camera id for the AF store
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_EQ(result.err, "Error:camera id is not a valid number: \"\"\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});

    writeFile(afFile(), "1,0,ABC123,50,x300,25,1\n");
    result = device.run({"-c", "ABC123", "-d", "50"});
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_EQ(result.err,
              "Error:stored DAC of ABC123 at distance 50 is not a valid number: \"x300\"\n");

    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxxABCDABC123");
    result = device.run(kStore);
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_EQ(readFile(afFile()), "1,0,ABC123,50,x300,25,1\n");
}

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
