// optoquill-inspect on a device that optoquill calibrated, healthy and with one planted fault
// of each kind: the problems it names (kind, file, camera) and its exit status.
#include <gtest/gtest.h>
#include <json/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <sstream>

#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"

namespace {

const char kAe[] = "com.nurvak.aecal.w.bin";
const char kAwbLsc[] = "com.nurvak.awblsccal.f.bin";
const char kAf[] = "com.nurvak.afc.bin";
const char kPdOffset[] = "com.nurvak.pdoffset.bin";
const RunOptions kInspect = {/*fileSizeLimit=*/-1, /*inspect=*/true};

// Rear main ABC123 and front F00D, each stored the way a factory station stores them.
void calibrate(DeviceFolder& device) {
    device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    device.setProperty("vendor.camera.sensor.f.fuseID", "xxxx0004F00D");
    device.setProperty("persist.vendor.camera.sensor.w.afInfo", "10:300,50:420");
    device.setProperty("vendor.camera.sensor.qz.dualcal.checksum", "c3");
    writeFile(device.path("awblsc.bin"), awbLscFile(bytes({0xF0, 0x0D})));
    std::string blob(8200, 'U');
    blob[8099] = '\xC3';
    writeFile(device.path("abc123.bin"), blob);
    for (const std::vector<std::string>& run : std::vector<std::vector<std::string>>{
             {"-n", "0", "-l", "100", "-s", "200", "-e", "300"},
             {"-u", "-n", "1", "-f", device.path("awblsc.bin")},
             {"-n", "0", "-d", "50", "-D", "430", "-t", "30", "-F", "1"},
             {"-n", "0", "-o", "1.5,-2", "-L", "2", "-F", "1"},
             {"-E", device.path("abc123.bin")}}) {
        ASSERT_EQ(device.run(run).status, 0);
    }
}

Json::Value inspectJson(const DeviceFolder& device, int expectedStatus) {
    RunResult result = device.run({"--json"}, kInspect);
    EXPECT_EQ(result.status, expectedStatus);
    Json::Value json;
    std::string errors;
    std::istringstream out(result.out);
    EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), out, &json, &errors)) << errors;
    return json;
}

// "kind file camera" of each problem, in order.
std::vector<std::string> problemsOf(const Json::Value& json) {
    std::vector<std::string> problems;
    for (const Json::Value& problem : json["problems"]) {
        problems.push_back(problem["kind"].asString() + " " + problem["file"].asString() + " " +
                           problem["camera"].asString());
    }
    return problems;
}

}  // namespace

TEST(Inspect, HealthyDevice) {
    if (geteuid() != 0) GTEST_SKIP() << "owner 1000:1000 needs root";
    DeviceFolder device;
    calibrate(device);
    const std::string log = device.log();
    const std::vector<std::string> entries = device.persistEntries();
    Json::Value json = inspectJson(device, 0);
    EXPECT_EQ(device.log(), log);  // reads only, the Android log included
    EXPECT_EQ(device.persistEntries(), entries);
    EXPECT_EQ(problemsOf(json), std::vector<std::string>{});
    const Json::Value& w = json["cameras"][0];
    EXPECT_EQ(w["ae"]["crc"]["ok"].asBool(), true);
    EXPECT_EQ(w["ae"]["luma"].asInt(), 100);
    EXPECT_EQ(w["afPoints"][0]["dac"].asString(), "430");
    EXPECT_EQ(w["pdOffset"]["readBackAccepts"].asBool(), true);
    EXPECT_EQ(json["cameras"][1]["awbLsc"]["lsc"]["ok"].asBool(), true);
    EXPECT_EQ(json["eepromCopies"][0]["cameras"][0].asString(), "w");

    RunResult text = device.run({}, kInspect);
    EXPECT_EQ(text.status, 0);
    const std::string rearMain =
        "Camera w (role 0)\n"
        "  fitted sensor     ABC123 from vendor.camera.sensor.w.fuseID\n"
        "  AE file           com.nurvak.aecal.w.bin: maintain form, 15 bytes\n"
        "    CRC             stored 0xBD50, computed 0xBD50: ok\n"
        "    fuse ID         ABC123: matches\n"
        "    values          luma 100, gain 200, exposure 300\n"
        "  AF points         line  camera  distance  DAC  temp  use  CRC\n"
        "                    1     0       50        430  30    1    ok\n"
        "  PD offset         line 1: 2 values, no SFR data, CRC ok: read-back accepts it\n"
        "  calibration log   last AE 1, last AWB -\n";
    EXPECT_NE(text.out.find(rearMain), std::string::npos) << text.out;
    EXPECT_EQ(text.out.substr(text.out.size() - 12), "Problems: 0\n");
}

TEST(Inspect, PlantedFaults) {
    const std::string w = "vendor.camera.sensor.w.fuseID";
    const struct {
        const char* fault;
        std::function<void(DeviceFolder&)> plant;
        std::vector<std::string> problems;
    } kCases[] = {
        {"corrupt CRC",
         [](DeviceFolder& d) {
             std::string ae = readFile(d.persistFile(kAe));
             writeFile(d.persistFile(kAe), ae.replace(9, 1, 1, ae[9] ^ 1));
         },
         {"crc com.nurvak.aecal.w.bin w"}},
        {"wrong fuse ID",
         [](DeviceFolder& d) {
             writeFile(d.persistFile(kAwbLsc), awbLscFile(bytes({0xF0, 0x0E})));
         },
         {"fuse-id com.nurvak.awblsccal.f.bin f"}},
        {"swapped module",
         [&w](DeviceFolder& d) { d.setProperty(w, "xxxx0006DEF456"); },
         {"fuse-id com.nurvak.aecal.w.bin w", "fuse-id com.nurvak.afc.bin w",
          "fuse-id com.nurvak.pdoffset.bin w", "fuse-id abc123.bin "}},
        {"wrong mode",
         [](DeviceFolder& d) { chmod(d.persistFile(kAf).c_str(), 0600); },
         {"mode com.nurvak.afc.bin "}},
        {"wrong owner",
         [](DeviceFolder& d) { chown(d.persistFile(kAe).c_str(), 0, 0); },
         {"owner com.nurvak.aecal.w.bin "}},
        {"leftover temporary",
         [](DeviceFolder& d) { writeFile(d.persistFile(".com.nurvak.afc.bin.a1B2c3"), "1,0"); },
         {"temporary .com.nurvak.afc.bin.a1B2c3 "}},
        {"unreadable entry",
         [](DeviceFolder& d) {
             rename(d.persistFile(kPdOffset).c_str(), d.path("pdoffset").c_str());
             symlink(d.path("pdoffset").c_str(), d.persistFile(kPdOffset).c_str());
         },
         {"unreadable com.nurvak.pdoffset.bin "}},
    };
    if (geteuid() != 0) GTEST_SKIP() << "owner 1000:1000 needs root";
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.fault);
        DeviceFolder device;
        calibrate(device);
        c.plant(device);
        EXPECT_EQ(problemsOf(inspectJson(device, 1)), c.problems);
    }
}

TEST(Inspect, UsageAndUnreadablePersistDirectory) {
    DeviceFolder device;
    EXPECT_EQ(device.run({"--jason"}, kInspect).status, 2);
    rmdir(device.persistFile("").c_str());
    RunResult result = device.run({}, kInspect);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "optoquill-inspect: cannot read " + device.persistFile("") +
                              ": No such file or directory\n");
}
