#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <regex>
#include <thread>

#include "base/uniquefd.h"
#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"
#include "tests/support/socketlistener.h"

namespace {

const char kLog[] = "com.nurak.camera.checksum.bin";

RunOptions auditRun() {
    RunOptions options;
    options.inspect = true;
    return options;
}

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
    std::vector<std::thread> stations;
    auto station = [&](std::vector<std::string> args) {
        stations.emplace_back([this, args] { EXPECT_EQ(device.run(args).status, 0); });
    };
    for (const char* id : {"0", "1", "20", "21", "22", "23", "24", "25"}) {
        station({"-n", id, "-l", "100", "-s", "200", "-e", "300"});
    }
    for (const char* id : {"1", "40"}) station({"-u", "-n", id, "-f", awbLscSource});
    for (const char* distance : {"10", "11", "12", "13"}) {
        station({"-n", "0", "-d", distance, "-D", "300", "-t", "30"});
    }
    for (std::thread& running : stations) running.join();
    EXPECT_EQ(device.persistEntries(),
              (std::vector<std::string>{
                  kLog, "com.nurvak.aecal.d.bin", "com.nurvak.aecal.f.bin", "com.nurvak.aecal.m.bin",
                  "com.nurvak.aecal.m2x.bin", "com.nurvak.aecal.t.bin", "com.nurvak.aecal.t4x.bin",
                  "com.nurvak.aecal.u.bin", "com.nurvak.aecal.w.bin", "com.nurvak.afc.bin",
                  "com.nurvak.awblsccal.f.bin", "com.nurvak.awblsccal.faux.bin"}));
    const std::string log = readFile(device.persistFile(kLog));
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 10);
    EXPECT_EQ(log.find("result:0"), std::string::npos);
    const std::string points = readFile(device.persistFile("com.nurvak.afc.bin"));
    for (const char* distance : {"10", "11", "12", "13"}) {
        EXPECT_NE(points.find(std::string("0,0,AB12,") + distance + ",300,30,"), std::string::npos);
    }
    // Every camera position's store is what the audit finds for it.
    const RunResult audit =
        device.run({"--expect", "w=ae,af", "--expect", "f=ae,awblsc", "--expect", "t=ae",
                    "--expect", "u=ae", "--expect", "m=ae", "--expect", "t4x=ae", "--expect",
                    "m2x=ae", "--expect", "d=ae", "--expect", "faux=awblsc"},
                   auditRun());
    EXPECT_EQ(audit.out.substr(0, 5), "PASS\n") << audit.out;
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

// A log append that the disk cuts short is cut back: the next line starts on a line of its own.
TEST_F(Guarantees, ShortLogAppendLeavesOnlyWholeLines) {
    const std::string log = device.persistFile(kLog);
    std::string lines;
    for (int i = 0; i < 100; ++i) lines += "camera:w,ae,result:1\n";
    const std::vector<std::string> aeStore = {"-n", "0", "-l", "100", "-s", "200", "-e", "300"};
    // A log that the append creates, then one of 100 lines.
    for (const std::string& before : {std::string(), lines}) {
        if (!before.empty()) writeFile(log, before);
        RunOptions fullDisk;
        fullDisk.fileSizeLimit = static_cast<long>(before.size()) + 16;  // 16 of the 21 bytes
        RunResult result = device.run(aeStore, fullDisk);
        EXPECT_EQ(withoutOwnershipRefusals(result.err),
                  "Error:failed to append to log file " + log + ": wrote 16 of 21 bytes\n");
        EXPECT_EQ(readFile(log), before);
        ASSERT_EQ(device.run(aeStore).status, 0);
        EXPECT_EQ(readFile(log), before + "camera:w,ae,result:1\n");
    }
}

// A camera service that hung up costs a line, not the run.
TEST_F(Guarantees, FailedNotificationIsSaid) {
    if (!canTrace()) GTEST_SKIP() << "needs strace and a native tool";
    SocketListener service(device.socketPrefix() + "com.nurvak.loadCalibrationFiles");
    RunOptions options;
    options.strace = {"-o", "/dev/null", "-e", "trace=sendto", "-e", "inject=sendto:error=EPIPE"};
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"}, options);
    EXPECT_EQ(result.out, "Successfully write " + device.persistFile("com.nurvak.afc.bin") +
                              "\nsocket send failed\n");
    EXPECT_EQ(result.status, 0);
}

// Station A waits, holding the lock on the persist directory, while the directory is replaced
// and station B stores into the new one: A writes nothing anywhere, and says so.
TEST_F(Guarantees, StoppedStationWhoseDirectoryIsReplacedWritesNothing) {
    if (!canTrace()) GTEST_SKIP() << "needs strace and a native tool";
    const std::string camera = device.persistFile("");
    const std::string af = camera + "com.nurvak.afc.bin";
    RunOptions stalled;  // held up once its new file is synced, before it is renamed
    stalled.strace = {"-o",          "/dev/null", "-e",
                      "trace=fsync", "-e",        "inject=fsync:delay_exit=3000000:when=1"};
    RunResult a;
    std::thread stationA([&] {
        a = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"}, stalled);
    });
    for (int i = 0; i < 1000 && device.persistEntries().empty(); ++i) usleep(10000);
    const std::string old = device.path("camera.old");
    ASSERT_EQ(rename(camera.c_str(), old.c_str()), 0);
    ASSERT_EQ(mkdir(camera.c_str(), 0755), 0);
    EXPECT_EQ(device.run({"-n", "0", "-d", "70", "-D", "300", "-t", "30"}).out,
              "Successfully write " + af + "\nsocket init failed\n");
    stationA.join();
    EXPECT_EQ(a.out, "Error:failed to write " + af + "\n");
    EXPECT_EQ(a.err, "Error:persist directory " + camera +
                         " was replaced while this run held it; nothing was written\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{"com.nurvak.afc.bin"});
    EXPECT_EQ(readFile(af).substr(0, 15), "0,0,AB12,70,300");
    EXPECT_EQ(directoryEntries(old), std::vector<std::string>{});
}

TEST_F(Guarantees, BusyPersistDirectoryEndsTheStageWithoutWriting) {
    const std::string directory = device.persistFile("");
    UniqueFd held(open(directory.c_str(), O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(flock(held.get(), LOCK_EX), 0);  // another station is rewriting a file
    RunResult audit;
    std::thread auditing([&] { audit = device.run({}, auditRun()); });
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"});
    auditing.join();
    EXPECT_EQ(result.out, "Error:persist directory " + directory +
                              " is in use by another optoquill, gave up after 5000 ms\n"
                              "Error:failed to write " +
                              device.persistFile("com.nurvak.afc.bin") + "\n");
    EXPECT_EQ(device.persistEntries(), std::vector<std::string>{});
    // The audit could not judge: it says so and ends with status 2, not 1.
    EXPECT_EQ(std::make_tuple(audit.status, audit.out, audit.err),
              std::make_tuple(2, std::string(),
                              "optoquill-inspect: " + directory +
                                  " is in use by another optoquill, gave up after 5000 ms; "
                                  "nothing was judged\n"));
}

// 16,777,206 bytes of another module's points: one more point would take the file past the
// reader's cap, and every later run would refuse it.
TEST_F(Guarantees, StoreThatWouldPassTheReadersCapWritesNothing) {
    std::string nearlyFull;
    for (int i = 0; i < 838859; ++i) nearlyFull += "1,0,OLD,10,300,25,1\n";
    nearlyFull += "1,0,OLDOLDOLD,10,300,25,1\n";
    const std::string af = device.persistFile("com.nurvak.afc.bin");
    writeFile(af, nearlyFull);
    const RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"});
    EXPECT_EQ(result.out, "Error:failed to write " + af + "\n");
    EXPECT_EQ(result.err, "Error:cannot store " + af +
                              ": it would hold 16777231 bytes, more than the 16 MiB a calibration "
                              "file may hold\n");
    EXPECT_TRUE(readFile(af) == nearlyFull);
}

// A store's temporary lives only while the store holds the lock, so an audit never sees one.
TEST_F(Guarantees, AuditsDuringStoresSeeNoTemporary) {
    std::atomic<bool> storing{true};
    std::thread stores([&] {
        for (int i = 0; i < 60; ++i) {
            device.run({"-n", "0", "-l", "100", "-s", "200", "-e", "300", "-d", "50", "-D", "300",
                        "-t", "30", "-L", "1", "-o", "5"});
        }
        storing = false;
    });
    int audits = 0;
    while (storing || audits == 0) {
        const RunResult audit = device.run({}, auditRun());
        EXPECT_EQ(audit.out.find("temporary"), std::string::npos) << audit.out;
        ++audits;
    }
    stores.join();
}

// strace sends the signal as the new AE file's temporary is synced, while it and /sdcard/tmp
// exist. The run ends by that signal, with neither left behind and the AE file old or new.
TEST_F(Guarantees, HangUpTerminateOrInterruptDuringAStoreLeavesNothingBehind) {
    if (!canTrace()) GTEST_SKIP() << "needs strace and a native tool";
    for (int signal : {SIGHUP, SIGTERM, SIGINT}) {
        RunOptions options;
        options.strace = {"-o", "/dev/null",
                          "-e", "trace=fsync",
                          "-e", "inject=fsync:signal=" + std::to_string(signal) + ":when=1"};
        RunResult result = device.run({"-n", "0", "-l", "100", "-s", "200", "-e", "300"}, options);
        EXPECT_EQ(result.signal, signal);
        for (const std::string& entry : device.persistEntries()) {
            EXPECT_TRUE(entry == kLog || entry == "com.nurvak.aecal.w.bin") << entry;
        }
        EXPECT_FALSE(fileExists(device.path("sdcard/tmp")));
    }
}

// The rename is not durable until the directory is synced: a store whose directory sync fails
// has failed.
TEST_F(Guarantees, FailedDirectorySyncIsAFailedStore) {
    if (!canTrace()) GTEST_SKIP() << "needs strace and a native tool";
    RunOptions options;
    options.strace = {"-o",          "/dev/null", "-e",
                      "trace=fsync", "-e",        "inject=fsync:error=EIO:when=2"};
    RunResult result = device.run({"-n", "0", "-d", "50", "-D", "300", "-t", "30"}, options);
    EXPECT_EQ(result.out,
              "Error:failed to write " + device.persistFile("com.nurvak.afc.bin") + "\n");
}

// Every file is made and the log appended to through the directory the run locked, and the
// log's new name is made durable by syncing that directory.
TEST_F(Guarantees, CreatingTheLogSyncsItsDirectory) {
    if (!canTrace()) GTEST_SKIP() << "needs strace and a native tool";
    RunOptions options;
    const std::string trace = device.path("trace");
    options.strace = {"-o", trace, "-e", "trace=openat,fsync"};
    ASSERT_EQ(device.run({"-n", "0", "-l", "100", "-s", "200", "-e", "300"}, options).status, 0);
    const std::regex created("openat\\(AT_FDCWD, \"" + device.persistFile("") +
                             "\", [^)]*O_DIRECTORY[^)]*\\) = (\\d+)\n[\\s\\S]*openat\\(\\1, \"" +
                             kLog + "\", [^)]*O_CREAT[^)]*\\) = (\\d+)\nfsync\\(\\2\\) *= 0\n" +
                             "fsync\\(\\1\\) *= 0\n");
    EXPECT_TRUE(std::regex_search(readFile(trace), created)) << readFile(trace);
}

}  // namespace
