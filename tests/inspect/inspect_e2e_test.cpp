// optoquill-inspect on a device that optoquill calibrated: healthy, with one planted fault or
// piece of history per row, and full of junk. Each row pins the findings of the JSON report and
// their lines in the text report; every JSON report is checked against inspect/report.schema.json.
#include <gtest/gtest.h>
#include <json/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <regex>
#include <sstream>

#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"

namespace {

const char kAe[] = "com.nurvak.aecal.w.bin";
const char kAwbLsc[] = "com.nurvak.awblsccal.f.bin";
const char kAf[] = "com.nurvak.afc.bin";
const char kPdOffset[] = "com.nurvak.pdoffset.bin";
const char kLog[] = "com.nurak.camera.checksum.bin";

RunOptions inspectOptions() {
    RunOptions options;
    options.inspect = true;
    return options;
}

// What a station stores for rear main: AE, an AF point and a PD offset.
std::vector<std::vector<std::string>> rearMainRuns() {
    return {{"-n", "0", "-l", "100", "-s", "200", "-e", "300"},
            {"-n", "0", "-d", "50", "-D", "430", "-t", "30", "-F", "1"},
            {"-n", "0", "-o", "1.5,-2", "-L", "2", "-F", "1"}};
}

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
    std::vector<std::vector<std::string>> runs = rearMainRuns();
    runs.push_back({"-u", "-n", "1", "-f", device.path("awblsc.bin")});
    runs.push_back({"-E", device.path("abc123.bin")});
    for (const std::vector<std::string>& run : runs) ASSERT_EQ(device.run(run).status, 0);
}

// Both reports of a device as it is, the JSON one parsed and validated against the report's
// schema with Debian's python3-jsonschema.
struct Reports {
    RunResult text;
    std::string jsonText;
    Json::Value json;
};

Reports inspect(const DeviceFolder& device, std::vector<std::string> arguments,
                const RunOptions& options = inspectOptions()) {
    Reports reports;
    reports.text = device.run(arguments, options);
    arguments.push_back("--json");
    RunResult json = device.run(arguments, options);
    EXPECT_EQ(json.status, reports.text.status);
    std::istringstream out(json.out);
    EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), out, &reports.json, nullptr));
    writeFile(device.path("report.json"), json.out);
    reports.jsonText = json.out;
    const std::string source = __FILE__;
    const std::string command =
        "python3 -c 'import json, sys, jsonschema\n"
        "jsonschema.validate(json.load(open(sys.argv[2])), json.load(open(sys.argv[1])), "
        "cls=jsonschema.Draft7Validator)' " +
        source.substr(0, source.rfind("tests/inspect/")) + "inspect/report.schema.json " +
        device.path("report.json");
    EXPECT_EQ(system(command.c_str()), 0) << command;
    return reports;
}

// A report without owners and the padding of their column: a user who is not root leaves
// files of its own ids, which the audit then expects.
std::string withoutOwners(const std::string& report) {
    const std::string ids = std::regex_replace(report, std::regex("\\b\\d+:\\d+\\b"), "ID");
    const std::string json =
        std::regex_replace(ids, std::regex("(\"(owner|group)\" : )\\d+"), "$1ID");
    return std::regex_replace(json, std::regex(" +"), " ");
}

// Compares a whole report with tests/inspect/golden/<name>, the device's folder written "%R"
// there (without owners for a user who is not root). With OPTOQUILL_REGENERATE_GOLDEN=1, as
// root, the file is written instead, so that a change of wording shows in review as a diff of
// the reports.
void expectGolden(const std::string& name, const DeviceFolder& device, std::string report) {
    for (size_t at; (at = report.find(device.root())) != std::string::npos;) {
        report.replace(at, device.root().size(), "%R");
    }
    const std::string source = __FILE__;
    const std::string file = source.substr(0, source.rfind('/')) + "/golden/" + name;
    if (getenv("OPTOQUILL_REGENERATE_GOLDEN") != nullptr) {
        writeFile(file, report);
        return;
    }
    const bool root = geteuid() == 0;
    EXPECT_TRUE(root ? readFile(file) == report
                     : withoutOwners(readFile(file)) == withoutOwners(report))
        << file << " differs from:\n"
        << report;
}

}  // namespace

TEST(Inspect, HealthyPlantedFaultsAndHistory) {
    const struct {
        const char* fault;
        const char* golden;  // both reports' files in golden/: <golden>.txt and <golden>.json
        std::function<void(DeviceFolder&)> plant;
        std::vector<std::string> arguments;
    } kCases[] = {
        {"healthy, what the product needs met",
         "healthy",
         [](DeviceFolder&) {},
         {"--expect", "w=ae,af,pdoffset,eeprom,ae", "--expect=f=awblsc"}},
        {"corrupt CRCs",
         "crc",
         [](DeviceFolder& d) {
             std::string ae = readFile(d.persistFile(kAe));
             writeFile(d.persistFile(kAe), ae.replace(9, 1, 1, ae[9] ^ 1));
             writeFile(d.persistFile(kAf),
                       readFile(d.persistFile(kAf)) + "1,0,ABC123,60,440,30,1\n");
         },
         {}},
        {"another module's AWB/LSC file, a checksum that is not the published one",
         "fuse-id-and-checksum",
         [](DeviceFolder& d) {
             writeFile(d.persistFile(kAwbLsc), awbLscFile(bytes({0xF0, 0x0E})));
             d.setProperty("vendor.camera.sensor.qz.dualcal.checksum", "c4");
         },
         {}},
        {"sizes and form",
         "size-and-form",
         [](DeviceFolder& d) {
             // Camera t fitted with rear main's module, and its AE file cut to no form's size.
             d.setProperty("vendor.camera.sensor.t.fuseID", "xxxx0006ABC123");
             writeFile(d.persistFile("com.nurvak.aecal.t.bin"),
                       readFile(d.persistFile(kAe)).substr(0, 14));
             chown(d.persistFile("com.nurvak.aecal.t.bin").c_str(), 1000, 1000);
             truncate(d.persistFile(kAe).c_str(), 13);
             truncate(d.persistFile(kAwbLsc).c_str(), 1000);
             const std::string large = d.persistFile("com.nurvak.aecal.f.bin");
             writeFile(large, "");
             truncate(large.c_str(), (16 << 20) + 1);
             chown(large.c_str(), 1000, 1000);
         },
         {}},
        {"malformed property, dropped lines",
         "property-and-dropped-lines",
         [](DeviceFolder& d) {
             d.setProperty("vendor.camera.sensor.u.fuseID", "xx");
             // The same module under another name for the focus stores: said once more.
             d.setProperty("vendor.camera.sensor.faux.fuseID", "xxxx0004FA00");
             d.setProperty("vendor.camera.sensor.fd.fuseID", "xxxx0004FA00");
             writeFile(d.persistFile(kAf), readFile(d.persistFile(kAf)) + "junk\n");
             writeFile(d.persistFile(kPdOffset),
                       readFile(d.persistFile(kPdOffset)) + "1,0,ABC123,x,1,2\n1,0,ABC123,1,1\n");
         },
         {}},
        {"calibration log",
         "log",
         [](DeviceFolder& d) {
             writeFile(d.persistFile(kLog),
                       readFile(d.persistFile(kLog)) +
                           "camera:w,ae,result:0\ncamera:w,awb,result:0\ncamera:t,ae,result:0\n"
                           "camera:w,ae,result=1\ncamera:w,ae,result:2\n");
         },
         {}},
        {"entries: a folder, a link, owner, mode, a temporary, a name that is not UTF-8",
         "entries",
         [](DeviceFolder& d) {
             mkdir(d.persistFile("com.nurvak.aecal.t.bin").c_str(), 0755);
             rename(d.persistFile(kPdOffset).c_str(), d.path("pdoffset").c_str());
             symlink(d.path("pdoffset").c_str(), d.persistFile(kPdOffset).c_str());
             chown(d.persistFile(kAe).c_str(), 0, 0);
             chmod(d.persistFile(kAf).c_str(), 0600);
             writeFile(d.persistFile(".com.nurvak.afc.bin.a1B2c3"), "1,0");
             // é, then bytes of no valid sequence: a lead alone, beyond U+10FFFF, a surrogate,
             // an overlong form
             writeFile(d.persistFile("\xC3\xA9\xC3.\xF4\x90\x80\x80\xED\xA0\x80\xE0\x9F\xBF.txt"),
                       "");
             // the highest second bytes that still make a character: ÿ, U+D7FF, U+10FFFF
             writeFile(d.persistFile("\xC3\xBF\xED\x9F\xBF\xF4\x8F\xBF\xBF.txt"), "");
         },
         {}},
        {"a repaired rear main camera: the old module's records are history",
         "history",
         [](DeviceFolder& d) {
             d.run({"-n", "0", "-d", "10", "-D", "300", "-t", "30"});
             d.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006DEF456");
             for (const std::vector<std::string>& run : rearMainRuns()) d.run(run);
         },
         {"--expect", "w=ae,af,pdoffset,eeprom", "--expect", "f=ae", "--expect", "t=af"}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.fault);
        if (std::string(c.golden) == "entries" && geteuid() != 0) continue;  // chowns to root
        DeviceFolder device;
        calibrate(device);
        c.plant(device);
        const std::string log = device.log();
        const std::vector<std::string> entries = device.persistEntries();
        Reports reports = inspect(device, c.arguments);
        EXPECT_EQ(device.log(), log);  // reads only, the Android log included
        EXPECT_EQ(device.persistEntries(), entries);
        EXPECT_EQ(reports.text.status, reports.text.out.rfind("PASS\n", 0) == 0 ? 0 : 1);
        expectGolden(std::string(c.golden) + ".txt", device, reports.text.out);
        expectGolden(std::string(c.golden) + ".json", device, reports.jsonText);
    }
}

// A million junk lines: the first 20 listed, the rest counted, in bounded time and memory.
TEST(Inspect, JunkLog) {
    DeviceFolder device;
    std::string junk;
    for (int i = 0; i < 1000000; ++i) junk += "a\n";
    writeFile(device.persistFile(kLog), junk);
    chown(device.persistFile(kLog).c_str(), 1000, 1000);
    RunOptions options = inspectOptions();
    // Not under qemu, nor AddressSanitizer, whose shadow memory no such limit allows for.
    if (std::string(OPTOQUILL_TEST_EMULATOR).empty() && !getenv("ASAN_OPTIONS")) {
        options.memoryLimit = 64 << 20;
    }
    Reports reports = inspect(device, {}, options);
    EXPECT_EQ(reports.text.status, 1);
    expectGolden("junk-log.txt", device, reports.text.out);
    EXPECT_EQ(reports.json["problems"].size(), 20u);
    EXPECT_EQ(reports.json["calibrationLog"]["malformedLineCount"].asUInt(), 1000000u);
    EXPECT_LT(reports.text.out.size() + readFile(device.path("report.json")).size(), 100000u);
}

TEST(Inspect, UsageErrorsAndUnreadablePersistDirectory) {
    DeviceFolder device;
    for (const auto& [argument, error] : std::vector<std::pair<std::string, std::string>>{
             {"--jason", "unknown argument \"--jason\""},
             {"--expect=w=ae,foo",
              "--expect \"w=ae,foo\": no kind \"foo\" (ae, awblsc, af, pdoffset, eeprom)"},
             {"--expect=w=awblsc",
              "--expect \"w=awblsc\": camera w has no AWB/LSC file (only f, faux)"},
             {"--expect=x=ae",
              "--expect \"x=ae\": no camera \"x\" (w, f, t, u, m, t4x, m2x, d, faux)"}}) {
        RunResult result = device.run({argument}, inspectOptions());
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "optoquill-inspect: " + error + " (see optoquill-inspect --help)\n");
    }
    expectGolden("usage.txt", device, device.run({"--help"}, inspectOptions()).out);
    rmdir(device.persistFile("").c_str());
    RunResult result = device.run({}, inspectOptions());
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "optoquill-inspect: cannot read " + device.persistFile("") +
                              ": No such file or directory\n");
}

// The audit's verdict on the fitted module's PD-offset record is the tool's own read-back's: the
// SFR data goes to camera 0's first record (another module's), then the read-back reads ABC123's.
TEST(Inspect, AgreesWithTheToolsReadBack) {
    const std::string other = "1,0,OTHER,1,5,26266\n";
    const std::pair<std::string, bool> kLines[] = {
        {"1,0,ABC123,2,1.5,-2,41386\n", true},
        {"1 , 0,ABC123 ,2,\t1.5,-2 ,41386\r\n", true},
        {"1,0,ABC123,2,1.5\r,-2,41386\n", true},
        {"1,0,ABC123,2,1.5,-2,41386", true},
        {"1,0,ABC123,2,1.5,-2,41387\n", false},
        {"1,0,ABC123,2," + std::string(5000, '7') + ",-2,41386\n", false},
    };
    for (const auto& [line, accepted] : kLines) {
        SCOPED_TRACE(line);
        DeviceFolder device;
        device.setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
        writeFile(device.persistFile(kPdOffset), other + line);
        const Reports reports = inspect(device, {});
        const RunResult tool = device.run({"-n", "0", "-S", "1,2,3,4,5,6,7,8"});
        const bool toolAccepts = tool.out != "Success write pdoffset:; pdoffsetSfr:\n";
        EXPECT_EQ(toolAccepts, accepted) << tool.out;
        EXPECT_EQ(reports.json["cameras"][0]["pdOffset"]["readBackAccepts"].asBool(), accepted);
    }
}

// Past 20 of a kind, a list says how many more: AF points of the fitted module and of an old
// one, and their CRC problems.
TEST(Inspect, ListsUpToTheirBound) {
    DeviceFolder device;
    calibrate(device);
    std::string points = readFile(device.persistFile(kAf));
    for (int i = 1; i <= 24; ++i) {
        points += "1,0,ABC123," + std::to_string(i) + ",430,30,1\n";
        points += "1,0,OLD," + std::to_string(i) + ",430,30,1\n";
    }
    writeFile(device.persistFile(kAf), points);
    expectGolden("over-bounds.txt", device, inspect(device, {}).text.out);
}
