// Every stage of the tool, one run per row: the device before (properties and files), the command
// line, and everything the factory scripts and the camera service see afterwards (standard
// output and error, the exit status, the whole persist directory, the socket payloads).
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <regex>

#include "base/text.h"
#include "tests/support/awblscfile.h"
#include "tests/support/devicefolder.h"
#include "tests/support/socketlistener.h"

namespace {

using Files = std::map<std::string, std::string>;
using Args = std::vector<std::string>;

// In paths, arguments and expected texts "%R" stands for the device's root and "%P" for its
// persist directory. A file name without either is a persist file.
struct Case {
    std::string name;
    Files properties;
    Files before;  // kDirectory or kFifo in place of any file, kAbsent: none, kLinkTo: a link
    Args args;
    std::string out;
    int status;      // exit status, or -signal
    Files after;     // the whole persist directory afterwards; "%R/..." entries: other files
    Args sent = {};  // on the AF/PD-offset socket, then on the AWB/LSC one
    std::string err = "";
    Args logged = {};  // texts somewhere in the Android log
    RunOptions options = {};
};

const std::string kDirectory = "\x01<directory>";
const std::string kFifo = "\x01<fifo>";
const std::string kAbsent = "\x01<absent>";
const std::string kLinkTo = "\x01->";

const char kW[] = "vendor.camera.sensor.w.fuseID";
const char kAe[] = "com.nurvak.aecal.w.bin";
const char kLog[] = "com.nurak.camera.checksum.bin";
const char kAf[] = "com.nurvak.afc.bin";
const char kPd[] = "com.nurvak.pdoffset.bin";
const char kAwb[] = "com.nurvak.awblsccal.f.bin";
const std::string kAeWrote = "Successfully write file %Pcom.nurvak.aecal.w.bin\n";
const std::string kAfWrote = "Successfully write %Pcom.nurvak.afc.bin\n";
const std::string kPdWrote = "Successfully write %Pcom.nurvak.pdoffset.bin\n";
const std::string kAfFailed = "Error:failed to write %Pcom.nurvak.afc.bin\n";
const std::string kPdFailed = "Error:failed to write %Pcom.nurvak.pdoffset.bin\n";
const std::string kLogged = "camera:w,ae,result:1\n";
const Files kAbc123 = {{kW, "xxxx0006ABC123"}};
const Files kAb12 = {{kW, "xxxx0004AB12"}};
const Args kAeStore = {"-n", "0", "-l", "100", "-s", "200", "-e", "300"};
const Args kAfStore = {"-n", "0", "-d", "50", "-D", "300", "-t", "30"};
const std::string kAfPoint = "0,0,ABC123,50,300,30,30010\n";
const std::string kAfLines =
    "1,0,A,1,1,1,10000\n1,0,A,2,1,1,1000\n1,0,A,3,1,1,100\n1,0,A,4,1,1,10\n";
const std::string kPdRecord = "1,0,ABC123,2,1.5,-2,41386\n";
const std::string kPdWithSfr = "1,0,ABC123,2,1.5,-2,1,2,3,4,5,6,7,8,53134\n";

const std::string kFactory =
    bytes({0x02, 0xAB, 0x12, 0x02, 0x64, 0x00, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01});
const std::string kMaintain = kFactory + bytes({0xD3, 0xA9});
const std::string kAeLayout =
    "|1 byte |len byte|1 byte |len byte|1 byte |len byte|1 byte     |len byte|";
const std::string kAeFields =
    "|fuselen|fuseId  |lumalen|luma    |gainlen|gain    |exposurelen|exposure|";

const char kUsage[] =
    "usage: optoquill -n camera  [-c fuseID] [-l limix] [-s iso] [-e exposure] [-d dis] "
    "[-D dac] [-t tempe] [-F useFlag]\n"
    "      --lumix             -l          lumix\n"
    "      --iso               -s          sensitivity\n"
    "      --ae                -e          exposure time\n"
    "      --eeprom            -E          eeprom bin file\n"
    "      --dist              -d          obj distance\n"
    "      --dac               -D          af Dac\n"
    "      --temp              -t          sensor temperature\n"
    "      --use               -F          data use flag\n"
    "      --check             -c          check af Dac\n"
    "      --unscreen          -u          under screen\n"
    "      --pdOffset          -o          pdoffset\n"
    "      --pdOffsetLength    -L          pdoffsetLength\n"
    "      --help              -h          usage tips\n"
    "\n\n"
    "Supported camera List:\n";

const char kSfr[] = "1,2,3,4,5,6,7,8";
const std::string kReadBack =
    "Success write pdoffset:1.500000,-2.000000,; pdoffsetSfr:1.000000,2.000000,3.000000,"
    "4.000000,5.000000,6.000000,7.000000,8.000000,\n";
const std::string kPdMismatch =
    "input parse is error, pdoffset length and pdoffset data is mismatchError:failed to write "
    "%Pcom.nurvak.pdoffset.bin\n";
const std::string kSfrFailed = "Error:failed to write pdOffsetSfrData\n";
const std::string kReadBackEmpty = "Success write pdoffset:; pdoffsetSfr:\n";

std::string blob(int checksum) {
    std::string content(9000, '\0');
    for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
    content[8099] = static_cast<char>(checksum);
    return content;
}

RunOptions outputTo(const char* file) {
    RunOptions options;
    options.output = file;
    return options;
}

std::vector<Case> cases() {
    const std::string awbLsc = awbLscFile(bytes({0xF0, 0x0D}));
    const std::string plain = awbLscFile("");
    const std::string noFuseId = bytes({0}) + kFactory.substr(3) + bytes({0x69, 0x86});
    std::string badAwb = awbLsc;  // AWB checksum 182 stored as 246, LSC 184 as 185
    badAwb[awbChecksumAt(2)] ^= 0x40;
    std::string badLsc = awbLsc;
    badLsc[lscChecksumAt(2)] ^= 1;
    const Files front = {{"vendor.camera.sensor.f.fuseID", "xxxx0004F00D"}};
    const Files eeprom = {{kW, "xxxx0006ABC123"},
                          {"vendor.camera.sensor.qz.dualcal.checksum", "c3"}};
    const Args awbStore = {"-u", "-n", "1", "-f", "%R/a.bin"};
    // Once enough to overflow the stack of every later run.
    const std::string blanks(30000, ' ');
    const std::string largest = "340282346638528859811704183484516925440.000000,";
    const std::string sfrParse = "pdoffsetSfrDataStr parse error: ";
    // clang-format off
    return {
        // name, properties, files before, arguments, standard output, status, persist files after
        // [, socket payloads [, standard error [, log texts]]]
        {"UnknownLongOption", {}, {}, {"--lumix", "5"}, kUsage, 0, {}, {},
            "%B: unrecognized option '--lumix'\n"},
        {"HelpAfterAStage", kAbc123, {}, {"-n", "0", "-D", "10", "-t", "30", "-h"}, kUsage, 0, {}},
        {"UnknownOptionBeforeABadCamera", {}, {}, {"-x", "-n", "99", "-D", "10"}, kUsage, 0, {}, {},
            "%B: invalid option -- 'x'\n"},
        // No AF store without -D, and no AE store without -s and -e.
        {"LongNamesAsTheScriptsSpellThem", {}, {}, {"--limux", "5", "--use", "1", "-p", "-t", "30"},
            "", 0, {}},
        {"NoOptions", {}, {}, {}, "", 0, {}},
        {"MissingPropertiesFileStopsBeforeAnyStage", {}, {{"%R/properties", kAbsent}},
            {"-n", "0", "-D", "10", "-t", "30"}, "", 2, {}, {},
            "optoquill: cannot read properties file %R/properties: No such file or directory\n"},
        {"PropertiesThatAreNoFile", {}, {{"%R/properties", kFifo}}, kAfStore, "", 2, {}, {},
            "optoquill: cannot read properties file %R/properties: not a regular file\n"},
        {"LogThatIsNoFile", {}, {{"%R/log", kFifo}}, {}, "", 2, {}, {},
            "optoquill: cannot use log file %R/log: not a regular file\n"},
        // A device's property ends at a NUL: the AF line carries no byte after it.
        {"PropertyWithAByteOrderMarkAndANul", {}, {{"%R/properties", "\xEF\xBB\xBF" + std::string(kW)
            + "=xxxx0010ABC123" + std::string(1, '\0') + "XYZ\n"}}, kAfStore, kAfWrote, 0,
            {{kAf, kAfPoint}}, {"afcal"}, "optoquill: properties file %R/properties, line 1 starts "
            "with a byte-order mark, which is skipped\noptoquill: properties file %R/properties, "
            "line 1 holds a NUL byte, the value is cut there\n"},
        {"PropertyLineOfNeitherFormIsOnlyWarnedAbout", {}, {{"%R/properties", "a=1\nb: 2\n"}},
            {}, "", 0, {}, {}, "optoquill: properties file %R/properties, line 2 is neither "
            "name=value nor [name]: [value], skipped\n"},
        // A real device's dump: a value over several lines, a long ro.* value, CRLF lines.
        {"RealGetpropDumpReplaysClean", {}, {{"%R/properties", "[persist.sys.boot.reason."
            "history]: [reboot,1700000000\nkernel_panic,1690000000\r\nshutdown,1680000000]\r\n"
            "[ro.build.fingerprint]: [" + std::string(120, 'f') + "]\n[" + kW +
            "]: [xxxx0006ABC123]\n"}}, kAfStore, kAfWrote, 0, {{kAf, kAfPoint}}, {"afcal"}},
        {"UnknownCameraEndsTheRunBeforeTheAfStore", kAbc123, {},
            {"-n", "99", "-D", "10", "-t", "30"}, "Error:Invalid camera name\n", 255, {}},
        {"UnknownUnderScreenCamera", {}, {}, {"-u", "-n", "w", "-f", "%R/x"},
            "Error:Invalid camera name\n", 255, {}},

        // Each store's first row plants a link at the name it writes: the link is replaced, its
        // target never written or changed.
        {"AeStore", kAb12, {{kAe, kLinkTo + "%R/v"}, {"%R/v", "v"}}, kAeStore, kAeWrote, 0,
            {{kAe, kMaintain}, {kLog, kLogged}, {"%R/v", "v"}}, {}, "",
            {"I/AeCalibrationFilesManager: proertyId:xxxx0004AB12 \n"
             "I/AeCalibrationFilesManager: fuseLen: 4, fuseId:AB12\n"}},
        {"AeWriteFailsAndLogsResultZero", kAb12, {{kAe, kDirectory}}, kAeStore,
            "Error:Failed to write file %Pcom.nurvak.aecal.w.bin\n", 0,
            {{kAe, kDirectory}, {kLog, "camera:w,ae,result:0\n"}}},
        {"AeStoreReplacesAndLogsAgain", kAb12, {{kAe, "old"}, {kLog, kLogged}},
            {"-n", "0", "-l", "100", "-s", "200", "-e", "600/2"}, kAeWrote, 0,
            {{kAe, kMaintain}, {kLog, kLogged + kLogged}}},
        {"AeLowerCaseFuseIdIsAMismatch", {{kW, "xxxx0004ab12"}}, {}, kAeStore,
            "Error:mismatch efuseId\n", 0, {}},
        {"AeRoleNamedFuseIdLongerLength",
            {{"vendor.camera.sensor.rearMain.fuseID", "xxxx0010AB12"}}, {}, kAeStore, kAeWrote, 0,
            {{kAe, kMaintain}, {kLog, kLogged}}},
        {"AeZeroLengthFuseIdIsEmpty", {{kW, "xxxx0000AB12"}}, {}, kAeStore, kAeWrote, 0,
            {{kAe, noFuseId}, {kLog, kLogged}}},
        {"AeWithoutFuseId", {}, {}, kAeStore, kAeWrote, 0, {{kAe, noFuseId}, {kLog, kLogged}}},
        {"AeMalformedFuseIdAbortsBeforeWriting", {{kW, "x"}}, {}, kAeStore, "", -SIGABRT, {},
            {}, "Error:fuse-ID length of vendor.camera.sensor.w.fuseID (value too short) is not a "
            "valid number: \"x\"\n"},
        {"AeWithoutSdcardEndsTheRun", kAb12, {{"%R/sdcard", kAbsent}}, kAeStore,
            "Error:failed to open log file %R/sdcard/tmp\n"
            "Error:failed to create emp file %R/sdcard/tmp!\n", 255, {}},
        {"AeLinkAtTheTemporaryFileIsNotFollowed", kAb12,
            {{"%R/victim", "must stay"}, {"%R/sdcard/tmp", kLinkTo + "%R/victim"}}, kAeStore,
            kAeWrote, 0, {{kAe, kMaintain}, {kLog, kLogged}, {"%R/victim", "must stay"}}},
        {"AeDirectoryAtTheTemporaryFileIsRemovedAndTheRunGoesOn", kAbc123,
            {{"%R/sdcard/tmp", kDirectory}}, {"-n", "0", "-l", "1", "-s", "2", "-e", "3", "-D",
            "300", "-t", "30", "-d", "50"}, "Error:failed to open log file %R/sdcard/tmp\n"
            "Error:Failed to parse file %R/sdcard/tmp\n" + kAfWrote, 0, {{kAf, kAfPoint}},
            {"afcal"}},
        {"LinkAtTheLog", kAb12, {{kLog, kLinkTo + "%R/v"}, {"%R/v", "v"}}, kAeStore, kAeWrote +
            "Error:failed to open log file %P" + kLog + "\nError: fail to change permissions of %P"
            + kLog + " to 0644: Too many levels of symbolic links", 0,
            {{kAe, kMaintain}, {kLog, kLinkTo}, {"%R/v", "v"}}, {}, "Error changing group "
            "ownership of %P" + std::string(kLog) + " to 1000: Too many levels of symbolic links"},
        // A FIFO at the log's name is refused by its type: never opened, never changed.
        {"FifoAtTheLog", kAb12, {{kLog, kFifo}}, kAeStore, kAeWrote +
            "Error:failed to open log file %P" + kLog + "\nError: fail to change permissions of %P"
            + kLog + " to 0644: Invalid argument", 0, {{kAe, kMaintain}, {kLog, kFifo}}, {},
            "Error changing group ownership of %P" + std::string(kLog) + " to 1000: Invalid argument"},
        {"AeDumpOfTheFactoryForm", {}, {{"%R/f", kFactory}}, {"-i", "-s", "1", "-f", "%R/f"},
            "%R/f:\nfactor format:\n" + kAeLayout + "\n" + kAeFields +
            "\ncontents:\n02AB1202640002C800022C01\n", 0, {}, {}, "",
            {"D/AeCalibrationData: factory source file\n"}},
        {"AeDumpOfABadCrc", {}, {{"%R/l", bytes({0, 2, 0x34, 0x12, 2, 0, 0, 2, 0, 0, 0xAA, 0xBB})}},
            {"-i", "-s", "1", "-f", "%R/l"}, "%R/l:\nmaintain format:\n" + kAeLayout + "2 byte|\n" +
            kAeFields + "crc   |\ncontents:\n00023412020000020000AABB\n", 0, {}, {}, "",
            {"D/AeCalibrationData: data file size 12\n"
             "E/AeCalibrationData: mismatch crc (0xAABB, 0x5F30)\n"
             "D/AeCalibrationData: file_byte=12, luma=4660, gain=0, exposure=0, crc=0x5f30\n"
             "D/AeCalibrationData: fuse byte=0, id=\n"}},
        {"AeDumpOfAShortFile", {}, {{"%R/s", bytes({0x01, 0xAA, 0x02})}},
            {"-i", "-s", "1", "-f", "%R/s"}, "Error:failed to parse file %R/s\n", 0, {}, {}, "",
            {"E/AeCalibrationData: %R/s: fileSize(3) != (1 + 3 + 1 + 0 + 1 + 0 + 1 + 0)\n"}},
        // A directory opens but cannot be read: refused like any unreadable file, never retried.
        {"DirectoriesGivenAsInputFiles", eeprom, {{"%R/abc123.bin", kDirectory}},
            {"-E", "%R/abc123.bin", "-u", "-n", "1", "-f", "%R/abc123.bin"},
            "Failed to write eeprombin\nError:Failed to parse file %R/abc123.bin\n", 0, {}, {},
            "Error:cannot read %R/abc123.bin: Is a directory\n"
            "Error:cannot read %R/abc123.bin: Is a directory\n"},
        // Inputs that never end or never come are refused before a byte is read.
        {"EndlessAndWaitingInputs", eeprom, {{"%R/fifo", kFifo}},
            {"-E", "/dev/zero", "-u", "-n", "1", "-f", "%R/fifo"},
            "Failed to write eeprombin\nError:Failed to parse file %R/fifo\n", 0, {}, {},
            "Error:cannot read /dev/zero: not a regular file\n"
            "Error:cannot read %R/fifo: not a regular file\n",
            {"E/EepromBinData: failed to open file /dev/zero\n"}},
        {"EndlessAndWaitingInputsToDump", eeprom, {{"%R/fifo", kFifo}},
            {"-E", "%R/fifo", "-i", "-s", "1", "-f", "/dev/zero"},
            "Failed to write eeprombin\nError:failed to parse file /dev/zero\n", 0, {}, {},
            "Error:cannot read %R/fifo: not a regular file\n"
            "Error:cannot read /dev/zero: not a regular file\n"},
        {"AeDumpOfAMissingFile", {}, {}, {"-i", "-s", "1", "-f", "%R/missing"},
            "Error:failed to find file %R/missing!\n", 255, {}},
        {"AeDumpWithoutIsoEndsTheRun", kAbc123, {}, {"-i", "-f", "%R/m", "-n", "0", "-D", "1",
            "-t", "1"}, "", 0, {}},

        {"AwbLscStore", front, {{"%R/a.bin", awbLsc}, {kAwb, kLinkTo + "%R/v"},
            {"%R/v", "v"}}, awbStore, "Successfully write file %Pcom.nurvak.awblsccal.f.bin\n", 0,
            {{kAwb, awbLsc}, {kLog, "camera:f,awb,result:1\n"}, {"%R/v", "v"}}, {"awblsc"}},
        {"AwbLscFuseIdDifferingInCase", {{"vendor.camera.sensor.f.fuseID", "xxxx0004f00d"}},
            {{"%R/a.bin", awbLsc}}, awbStore, "Error:mismatch efuseId\n", 0, {}},
        {"AwbLscRearCamera", front, {{"%R/a.bin", awbLsc}}, {"-u", "-n", "0", "-f", "%R/a.bin"},
            "failed to find camera w's valid cameraRoldId\n", 0, {}},
        {"AwbLscWrongChecksum", front, {{"%R/a.bin", badAwb}}, awbStore,
            "AWB information checksum is 182, checksum in file is 246, file %R/a.bin is invalid!"
            "Error:Failed to parse file %R/a.bin\n", 0, {}},
        {"AwbLscWrongLscChecksum", front, {{"%R/a.bin", badLsc}}, awbStore,
            "LSC information checksum is 184, checksum in file is 185, file %R/a.bin is invalid!"
            "Error:Failed to parse file %R/a.bin\n", 0, {}},
        {"AwbLscCutShort", front, {{"%R/a.bin", awbLsc.substr(0, 17)}}, awbStore,
            "LSC information is cut short (file size 17), file %R/a.bin is invalid!"
            "Error:Failed to parse file %R/a.bin\n", 0, {}},
        {"AwbLscEmpty", front, {{"%R/a.bin", ""}}, awbStore, "AWB information is cut short (file "
            "size 0), file %R/a.bin is invalid!Error:Failed to parse file %R/a.bin\n", 0, {}},
        {"AwbLscMissingFileEndsTheRunBeforeTheAfStore", kAbc123, {},
            {"-u", "-n", "0", "-f", "%R/missing", "-D", "10", "-t", "30"},
            "Error:Can not find calibration data file %R/missing!\n", 0, {}},
        {"AwbLscDump", {}, {{"%R/z.bin", plain}}, {"-u", "-i", "-n", "1", "-f", "%R/z.bin"},
            "%R/z.bin:\nmaintain format:\n"
            "|1 byte |len byte|1 byte  |12 byte   |1 byte| |19 byte |1775 byte |1 byte      |\n"
            "|fuselen|fuseId  |reserved|awb info |awb checksum |reserved|lsc info  |lsc checksum|\n"
            "contents:\n" + hexText(plain) + "\n", 0, {}},

        {"AfStore", kAbc123, {{kAf, kLinkTo + "%R/v"}, {"%R/v", "v"}}, kAfStore,
            kAfWrote, 0, {{kAf, kAfPoint}, {"%R/v", "v"}}, {"afcal"}},
        // Taking the lock removes what a killed run's safe writer left (which names, the
        // writer's own table).
        {"LeftoverTemporariesGoOthersStay", kAbc123, {{".com.nurvak.afc.bin.Ab3xYz", "left"},
            {".com.nurvak.afc.bin.Ab3xY", "kept"}}, kAfStore, kAfWrote, 0,
            {{kAf, kAfPoint}, {".com.nurvak.afc.bin.Ab3xY", "kept"}}, {"afcal"}},
        // What is not a file at a persist file's name is kept, and the stage writes nothing; a
        // link there is no file: the new file replaces it with none of its target's lines.
        {"FifosAtTheAfAndPdOffsetFiles", kAbc123, {{kAf, kFifo}, {kPd, kFifo}},
            {"-n", "0", "-d", "50", "-D", "300", "-t", "30", "-c", "ABC123", "-o", "5", "-L", "1",
             "-S", kSfr}, "Error:failed to write %Pcom.nurvak.afc.bin\ndac=-1\n"
            "Error:failed to write %Pcom.nurvak.pdoffset.bin\n" + kSfrFailed, 0,
            {{kAf, kFifo}, {kPd, kFifo}}, {}, "",
            {"E/AfCalibrationData: cannot load %Pcom.nurvak.pdoffset.bin: not a regular file\n"}},
        {"LinksAtTheAfAndPdOffsetFiles", kAbc123, {{kAf, kLinkTo + "/dev/zero"},
            {kPd, kLinkTo + "%R/private"}, {"%R/private", "1,0,OLD,1,7,1\n"}},
            {"-n", "0", "-d", "50", "-D", "300", "-t", "30", "-o", "5", "-L", "1"},
            kAfWrote + kPdWrote, 0, {{kAf, kAfPoint}, {kPd, "0,0,ABC123,1,5,26266\n"},
            {"%R/private", "1,0,OLD,1,7,1\n"}}, {"afcal", "pdoffset"}},
        {"ReportThatCannotBeWrittenIsSaid", kAbc123, {}, kAfStore, "", 0, {{kAf, kAfPoint}},
            {"afcal"}, "optoquill: standard output: No space left on device\n", {}, outputTo("/dev/full")},
        // 2^32 + 50: the device's atoi keeps the low 32 bits of strtol's value.
        {"OptionOutOfRangeReadsAsOnTheDevice", kAbc123, {}, {"-n", "0", "-d", "4294967346", "-D",
            "300", "-t", "30"}, kAfWrote, 0, {{kAf, kAfPoint}}, {"afcal"}},
        {"AfCheck", {}, {{kAf, kAfPoint}}, {"-c", "ABC123", "-d", "50"}, "dac=300\n", 0,
            {{kAf, kAfPoint}}},
        {"AfCheckAtTheDefaultDistance", {}, {{kAf, kAfPoint + "0,0,ABC123,-1,777,30,1\n"}},
            {"-c", "ABC123"}, "dac=777\n", 0, {{kAf, kAfPoint + "0,0,ABC123,-1,777,30,1\n"}}},
        {"AfStoreNeedsATemperature", kAbc123, {}, {"-n", "0", "-D", "300"}, "", 0, {}},
        // A module that stands in for another position: its own property, the position's id.
        {"AfStoreOfAStandInTele", {{"vendor.camera.sensor.t5.fuseID", "xxxx0004AB12"}}, {},
            {"-n", "23", "-d", "50", "-D", "300", "-t", "30"}, kAfWrote, 0, {{kAf, "0,23,AB12,50,300,30,21475\n"}}, {"afcal"}},
        {"AfHandEditedFileIsWrittenBackClean", kAbc123, {{kAf, "1 , 0 ,ABC, 10,300,25,123\n" +
            blanks + ",x\n1,0,ABC,10,300,25\n1,20,DEF,50,310,25,70000"}}, kAfStore, kAfWrote, 0,
            {{kAf, "1,0,ABC,10,300,25,123\n1,20,DEF,50,310,25,4464\n" + kAfPoint}}, {"afcal"}, "",
            {"E/AfCalibrationData: Not expected file format, colum number: 6\n",
             "I/AfCalibrationData: exist calibration info: 1, 20, DEF, 50, 310, 25, 4464\n",
             "I/AfCalibrationData: write record: 0,0,ABC123,50,300,30,30010\n"}},
        // Lines written back as they stand, whatever the length of their CRC; a last line
        // without its newline gets one.
        {"AfLinesKeptAsTheyStand", kAbc123, {{kAf, kAfLines + "1,0,ABC,10,300,25,123"}},
            kAfStore, kAfWrote, 0, {{kAf, kAfLines + "1,0,ABC,10,300,25,123\n" + kAfPoint}},
            {"afcal"}},
        {"AfPointUpdatedInPlaceTheFirstOfDuplicates", kAbc123,
            {{kAf, "1,0,ABC123,10,300,25,1\n1,0,ABC123,50,280,25,2\n1,0,ABC123,50,999,25,3\n"}},
            kAfStore, kAfWrote, 0,
            {{kAf, "1,0,ABC123,10,300,25,1\n" + kAfPoint + "1,0,ABC123,50,999,25,3\n"}}, {"afcal"}},
        {"AfRefusedPointKeepsTheFile",
            {{kW, "xxxx0006ABC123"}, {"persist.vendor.camera.sensor.w.afInfo", "10:300,50:420"}},
            {{kAf, "1,0,ABC123,10,300,25,1\n"}}, {"-n", "0", "-d", "50", "-D", "600", "-t", "30",
            "-F", "1"}, "Error:abs(writingDac - eepromDac) is over 120\nError:failed to write "
            "%Pcom.nurvak.afc.bin\n", 0, {{kAf, "1,0,ABC123,10,300,25,1\n"}}, {}, "",
            {"I/AfCalibrationData: dis 10 : dac 300\nI/AfCalibrationData: dis 50 : dac 420\n"}},
        // A missing fuse ID is reported first, then the point is refused whatever it holds.
        {"AfStoreWithoutFuseId", {}, {}, kAfStore, "can't find camera[0] fuseid\n"
            "Error:failed to write %Pcom.nurvak.afc.bin\n", 0, {}, {}, "",
            {"I/AfCalibrationData: Filed not Exist %Pcom.nurvak.afc.bin\n"}},
        {"AfStoreWithoutFuseIdAndOutOfRange", {}, {}, {"-n", "0", "-d", "50", "-D", "300", "-t",
            "51", "-F", "1"}, "can't find camera[0] fuseid\nError:temperature 51 is not within the "
            "usable range\nError:failed to write %Pcom.nurvak.afc.bin\n", 0, {}},
        {"AfStoreWithoutCameraAborts", {}, {}, {"-D", "300", "-t", "30"}, "", -SIGABRT, {}, {},
            "Error:camera id is not a valid number: \"\"\n"},
        {"AfCheckOfANonNumericDacAborts", {}, {{kAf, "1,0,ABC123,50,x300,25,1\n"}},
            {"-c", "ABC123", "-d", "50"}, "", -SIGABRT, {{kAf, "1,0,ABC123,50,x300,25,1\n"}}, {},
            "Error:stored DAC of ABC123 at distance 50 is not a valid number: \"x300\"\n"},
        {"AfStoreWithAMalformedFuseIdAborts", {{kW, "xxxxABCDABC123"}}, {{kAf, "1,0,A,1,2,3,1\n"}},
            kAfStore, "", -SIGABRT, {{kAf, "1,0,A,1,2,3,1\n"}}, {}, "Error:fuse-ID length of "
            "vendor.camera.sensor.w.fuseID is not a valid number: \"ABCD\"\n"},

        // A store commits only what the next load reads back as it was meant.
        {"AfFuseIdWithAComma", {{kW, "xxxx0006AB,123"}}, {}, kAfStore, kAfFailed, 0, {}, {},
            "Error:cannot store %Pcom.nurvak.afc.bin: the fuse ID \"AB,123\" holds a comma\n"},
        {"PdOffsetValueWithALineBreak", kAbc123, {}, {"-n", "0", "-L", "1", "-o", "5\n1"},
            kPdFailed, 0, {}, {}, "Error:cannot store %Pcom.nurvak.pdoffset.bin: the PD-offset "
            "value \"5\\n1\" holds a line break\n"},
        {"PdOffsetValuesFromAWindowsFile", kAbc123, {}, {"-n", "0", "-L", "3", "-o",
            "1.5,-2,0.25\r"}, kPdFailed, 0, {}, {}, "Error:cannot store %Pcom.nurvak.pdoffset.bin: "
            "the PD-offset value \"0.25\\r\" begins or ends with white space\n"},
        {"SfrDataFromAWindowsFile", kAbc123, {{kPd, kPdRecord}}, {"-n", "0", "-S",
            "1,2,3,4,5,6,7,8\r"}, kSfrFailed, 0, {{kPd, kPdRecord}}, {}, "Error:cannot store "
            "%Pcom.nurvak.pdoffset.bin: the SFR value \"8\\r\" begins or ends with white space\n"},
        {"PdOffsetWrite", kAbc123, {{kPd, kLinkTo + "%R/v"}, {"%R/v", "v"}},
            {"-n", "0", "-o", "1.5,-2", "-L", "2", "-F", "1"}, kPdWrote, 0,
            {{kPd, kPdRecord}, {"%R/v", "v"}}, {"pdoffset"}},
        {"PdOffsetSfrDataAndReadBack", kAbc123, {{kPd, kPdRecord}}, {"-n", "0", "-S", kSfr},
            kReadBack, 0, {{kPd, kPdWithSfr}}},
        {"PdOffsetNewValuesKeepSfrData", kAbc123, {{kPd, "1,0,ABC123,2,9,9,1,2,3,4,5,6,7,8,1\n"}},
            {"-n", "0", "-o", "1.5 , -2", "-L", "2", "-F", "5", "-S", kSfr}, kPdWrote + kReadBack,
            0, {{kPd, kPdWithSfr}}, {"pdoffset"}},
        {"PdOffsetCountWithALeadingZero", kAbc123, {}, {"-n", "0", "-o", "0.1, 0.2 ,0.3", "-L",
            "03"}, kPdWrote, 0, {{kPd, "0,0,ABC123,3,0.1,0.2,0.3,8413\n"}}, {"pdoffset"}},
        {"PdOffsetTooManyValues", kAbc123, {{kPd, kPdRecord}},
            {"-n", "0", "-o", "0.1,0.2,0.3", "-L", "2"}, kPdMismatch, 0, {{kPd, kPdRecord}}},
        {"PdOffsetOfBlanks", kAbc123, {}, {"-n", "0", "-o", blanks + ",x", "-L", "3"}, kPdMismatch,
            0, {}},
        {"PdOffsetEmpty", kAbc123, {}, {"-n", "0", "-o", "", "-L", "0"}, kPdMismatch, 0, {}},
        {"PdOffsetLargestFloatsReadBackRounded", kAbc123, {},
            {"-n", "0", "-L", "3", "-o", "3.4028235e+38,-3.4028235677e+38,3.4028236e+38", "-S",
             kSfr}, kPdWrote + "Success write pdoffset:" + largest + "-" + largest +
            "inf,; pdoffsetSfr:" + kReadBack.substr(kReadBack.find("pdoffsetSfr:") + 12), 0,
            {{kPd, "0,0,ABC123,3,3.4028235e+38,-3.4028235677e+38,3.4028236e+38,"
                   "1,2,3,4,5,6,7,8,26593\n"}}, {"pdoffset"}},
        {"SfrDataWithoutARecord", kAbc123, {}, {"-n", "0", "-S", kSfr}, kSfrFailed, 0, {}},
        {"SfrDataSevenValues", kAbc123, {{kPd, kPdRecord}}, {"-n", "0", "-S", "1,2,3,4,5,6,7"},
            sfrParse + "1,2,3,4,5,6,7\n" + kSfrFailed, 0, {{kPd, kPdRecord}}},
        {"SfrDataLastCommaIsAnEmptyNinth", kAbc123, {{kPd, kPdRecord}},
            {"-n", "0", "-S", "1,2,3,4,5,6,7,8,"}, sfrParse + "1,2,3,4,5,6,7,8,\n" + kSfrFailed, 0,
            {{kPd, kPdRecord}}},
        {"SfrDataEmpty", kAbc123, {{kPd, kPdRecord}}, {"-n", "0", "-S", ""},
            sfrParse + "\n" + kSfrFailed, 0, {{kPd, kPdRecord}}},
        {"PdOffsetLoadingKeepsWellFormedLines", kAbc123,
            {{kPd, blanks + ",x\n1,0,F1,2,0.5\n1,0,F1,2,0.5,x\n 1 , 0 ,F1, 2,0.5 ,0.7, 1234\n"
                   "1,0,F1,2,0.5,0.7,1,2\n"
                   "1,20,F2,2,0.5,0.7,1,2,3,4,5,6,7,8,70000\n1,21,F1,1,9,5"}},
            {"-n", "21", "-S", "a,b,c,d,e,f,g,h"}, "can't find camera[21] fuseid\n"
            + kReadBackEmpty, 0,
            {{kPd, " 1,0,F1,2,0.5,0.7,1234\n1,20,F2,2,0.5,0.7,1,2,3,4,5,6,7,8,4464\n"
                   "1,21,F1,1,9,a,b,c,d,e,f,g,h,31135\n"}}, {}, "",
            {"E/AfCalibrationData: Not expected file format, colum number: 6\n",
             "E/AfCalibrationData: Not expected file format, colum number: 8\n",
             "I/AfCalibrationData: exist pdaf offset info : "
             "1,20,F2,2,0.5,0.7,1,2,3,4,5,6,7,8,70000\n"}},
        {"PdOffsetReadBackRefusesAnAlteredCrc", kAbc123,
            {{kPd, "1,0,OLD,1,1,20085\n1,20,ABC123,2,1.5,-2,999\n"}}, {"-n", "0", "-S", kSfr},
            kReadBackEmpty, 0, {{kPd,
            "1,0,OLD,1,1,1,2,3,4,5,6,7,8,30269\n1,20,ABC123,2,1.5,-2,999\n"}},
            {}, "", {"E/AfCalibrationData: pdOffsetCalData crc check error 34179,999\n"}},
        {"SfrDataRepairsAnAlteredCrc", kAbc123, {{kPd, "1,0,ABC123,2,1.5,-2,999\n"}},
            {"-n", "0", "-S", kSfr}, kReadBack, 0, {{kPd, kPdWithSfr}}},
        {"SfrDataOnAMovedModulesRecordReadsBackEmpty", kAbc123, {{kPd, "1,0,OLD,2,1.5,-2,1\n"}},
            {"-n", "0", "-S", kSfr}, kReadBackEmpty, 0,
            {{kPd, "1,0,OLD,2,1.5,-2,1,2,3,4,5,6,7,8,11924\n"}}, {}, "",
            {"E/AfCalibrationData: fuseId check error ABC123\n"}},
        {"PdOffsetNonNumericLengthAborts", kAbc123, {{kPd, "1,0,ABC123,x,1.5,-2,1\n"}},
            {"-n", "0", "-o", "1", "-L", "1"}, "", -SIGABRT, {{kPd, "1,0,ABC123,x,1.5,-2,1\n"}}, {},
            "Error:PD-offset length of fuse ID ABC123 is not a valid number: \"x\"\n"},

        {"EepromExport", eeprom, {{"%R/abc123.bin", blob(0xC3)}}, {"-E", "%R/abc123.bin"},
            "Successfully write eeprombin\n", 0, {{"abc123.bin", blob(0xC3)}}, {}, "",
            {"D/EepromBinData: successfully write to file %Pabc123.bin\n"}},
        {"EepromWrongChecksumKeepsAnOlderCopy", eeprom,
            {{"%R/abc123.bin", blob(0xC4)}, {"abc123.bin", "older copy"}}, {"-E", "%R/abc123.bin"},
            "Failed to write eeprombin\n", 0, {{"abc123.bin", "older copy"}}},
        {"EepromCopyCannotReplaceADirectory", eeprom,
            {{"%R/abc123.bin", blob(0xC3)}, {"abc123.bin", kDirectory}}, {"-E", "%R/abc123.bin"},
            "Failed to write eeprombin\n", 0, {{"abc123.bin", kDirectory}}, {}, "",
            {"E/EepromBinData: failed to write file %Pabc123.bin\n"}},
        {"EepromOfASensorKnownByItsShortName",
            {{"vendor.camera.sensor.t4x.fuseID", "xxxx0006ABC123"},
             {"vendor.camera.sensor.qz.dualcal.checksum", "c3"}},
            {{"%R/abc123.bin", blob(0xC3)}}, {"-E", "%R/abc123.bin"},
            "Successfully write eeprombin\n", 0, {{"abc123.bin", blob(0xC3)}}},
        // A one-letter fuse ID, and a name in lower case to its last letter.
        {"EepromOfTheShortestFuseId", {{kW, "Z"}, {"vendor.camera.sensor.qz.dualcal.checksum", "c3"}},
            {{"%R/z.bin", blob(0xC3)}}, {"-E", "%R/z.bin"}, "Successfully write eeprombin\n", 0,
            {{"z.bin", blob(0xC3)}}},
        {"EepromOfAnotherModule", eeprom, {{"%R/abd123.bin", blob(0xC3)}}, {"-E", "%R/abd123.bin"},
            "Failed to write eeprombin\n", 0, {}},
        {"MissingPersistDirectory", eeprom,
            {{"%R/mnt/vendor/persist/camera", kAbsent}, {"%R/abc123.bin", blob(0xC3)}},
            {"-E", "%R/abc123.bin", "-n", "0", "-l", "1", "-s", "2", "-e", "3", "-D", "300", "-t",
             "30"},
            "Failed to write eeprombin\nError:Failed to write file %Pcom.nurvak.aecal.w.bin\n"
            "Error:failed to open log file %P" + std::string(kLog) + "\nError: fail to change "
            "permissions of %P" + kLog + " to 0644: No such file or directoryError:failed to write "
            "%Pcom.nurvak.afc.bin\n", 0, {}, {}, "Error changing group ownership of %P" +
            std::string(kLog) + " to 1000: No such file or directory",
            {"E/AeCalibrationData: failed to open file %Pcom.nurvak.aecal.w.bin\n",
             "E/AfCalibrationData: flush:failed to open file %Pcom.nurvak.afc.bin\n"}},
        {"EepromExportAndAfStoreInOneRun", eeprom, {{"%R/abc123.bin", blob(0xC3)}},
            {"-E", "%R/abc123.bin", "-n", "0", "-d", "50", "-D", "300", "-t", "30"},
            "Successfully write eeprombin\n" + kAfWrote, 0,
            {{"abc123.bin", blob(0xC3)}, {kAf, kAfPoint}}, {"afcal"}},
    };
    // clang-format on
}

void PrintTo(const Case& c, std::ostream* out) {
    *out << c.name;
}

class Runs : public testing::TestWithParam<Case> {
  protected:
    std::string expand(std::string text) const {
        for (const auto& [token, value] :
             {std::pair<std::string, std::string>{"%P", device.persistFile("")},
              {"%R", device.root()},
              {"%B", OPTOQUILL_BINARY}}) {
            for (size_t at; (at = text.find(token)) != std::string::npos;) {
                text.replace(at, token.size(), value);
            }
        }
        return text;
    }

    std::string pathOf(const std::string& name) const {
        return expand(name.rfind("%R", 0) == 0 ? name : "%P" + name);
    }

    void plant(const std::string& name, const std::string& content) const {
        const std::string path = pathOf(name);
        if (content == kDirectory || content == kAbsent || content == kFifo) {
            remove(path.c_str());
            if (content == kDirectory) mkdir(path.c_str(), 0755);
            if (content == kFifo) mkfifo(path.c_str(), 0644);
        } else if (content.rfind(kLinkTo, 0) == 0) {
            symlink(expand(content.substr(kLinkTo.size())).c_str(), path.c_str());
        } else {
            writeFile(path, content);
            // Outside the persist directory only the run's inputs and bystanders lie: private.
            if (name.rfind("%R", 0) == 0) chmod(path.c_str(), 0600);
        }
    }

    DeviceFolder device;
};

TEST_P(Runs, GiveExactlyTheirOutputsAndFiles) {
    const Case& c = GetParam();
    if (geteuid() != 0 && c.out.find("Successfully write eeprombin") != std::string::npos) {
        GTEST_SKIP() << "an EEPROM export fails without the right to give files away";
    }
    for (const auto& [name, value] : c.properties) device.setProperty(name, value);
    for (const auto& [name, content] : c.before) plant(name, content);
    SocketListener service(device.socketPrefix() + "com.nurvak.loadCalibrationFiles");
    SocketListener awbLscService(device.socketPrefix() + "com.nurvak.AWB.LSC.loadCalibrationFiles");
    Args args;
    for (const std::string& arg : c.args) args.push_back(expand(arg));

    const RunResult result = device.run(args, c.options);

    const std::string err = withoutOwnershipRefusals(result.err);
    EXPECT_EQ(result.out, expand(c.out));
    EXPECT_EQ(err, expand(c.err));
    EXPECT_EQ(result.signal != 0 ? -result.signal : result.status, c.status);
    Args entries;
    for (const auto& [name, content] : c.after) {
        const std::string path = pathOf(name);
        const bool outside = name.rfind("%R", 0) == 0;
        if (!outside) entries.push_back(name);
        struct stat info;
        ASSERT_EQ(lstat(path.c_str(), &info), 0) << name;
        if (content[0] == kLinkTo[0]) {  // left as it was
            const auto type = content == kDirectory ? S_IFDIR
                              : content == kFifo    ? S_IFIFO
                                                    : S_IFLNK;
            EXPECT_EQ(info.st_mode & S_IFMT, type) << name;
            continue;
        }
        EXPECT_EQ(readFile(path), content) << name;
        auto before = c.before.find(name);
        if (!outside && before != c.before.end() && before->second == content) continue;
        // Every file the run wrote is the camera service's to read; no other file changed hands.
        EXPECT_EQ(info.st_mode, S_IFREG | (outside ? 0600u : 0644u)) << name;
        const bool system = !outside && geteuid() == 0;
        EXPECT_EQ(std::make_pair(info.st_uid, info.st_gid),
                  system ? std::make_pair(1000u, 1000u) : std::make_pair(geteuid(), getegid()))
            << name;
    }
    EXPECT_EQ(device.persistEntries(), entries);
    EXPECT_EQ(fileExists(device.path("sdcard/tmp")), c.after.count("%R/sdcard/tmp") == 1);
    Args sent = service.received();
    for (const std::string& payload : awbLscService.received()) sent.push_back(payload);
    EXPECT_EQ(sent, c.sent);
    const std::string log = device.log();
    struct stat logInfo;
    if (stat(device.path("log").c_str(), &logInfo) == 0) {
        EXPECT_EQ(logInfo.st_mode & 07777, 0644u);
    }
    for (const std::string& text : c.logged) {
        EXPECT_NE(log.find(expand(text)), std::string::npos) << text << "\nnot in\n" << log;
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, Runs, testing::ValuesIn(cases()),
                         [](const testing::TestParamInfo<Case>& info) { return info.param.name; });

}  // namespace
