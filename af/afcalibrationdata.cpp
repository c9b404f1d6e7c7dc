#include "af/afcalibrationdata.h"

#include <android/log.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "af/aflines.h"
#include "common/decimaltext.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/fuseidproperty.h"
#include "common/safefilewriter.h"
#include "common/uniquefd.h"

const std::map<int, std::string> AfCalibrationData::cameraFuseIdPropertyMap = {
    {0, "vendor.camera.sensor.w.fuseID"},   {1, "vendor.camera.sensor.f.fuseID"},
    {20, "vendor.camera.sensor.t.fuseID"},  {21, "vendor.camera.sensor.u.fuseID"},
    {22, "vendor.camera.sensor.m.fuseID"},  {23, "vendor.camera.sensor.t4.fuseID"},
    {24, "vendor.camera.sensor.m2.fuseID"}, {25, "vendor.camera.sensor.d.fuseID"},
    {26, "vendor.camera.sensor.t2.fuseID"}, {27, "vendor.camera.sensor.t3.fuseID"},
    {28, "vendor.camera.sensor.t5.fuseID"}, {29, "vendor.camera.sensor.ta.fuseID"},
    {40, "vendor.camera.sensor.fd.fuseID"},
};

const std::map<int, std::string> AfCalibrationData::cameraAfInfoPropertyMap = {
    {0, "persist.vendor.camera.sensor.w.afInfo"},
    {1, "persist.vendor.camera.sensor.f.afInfo"},
    {20, "persist.vendor.camera.sensor.t.afInfo"},
    {21, "persist.vendor.camera.sensor.u.afInfo"},
    {22, "persist.vendor.camera.sensor.m.afInfo"},
    {23, "persist.vendor.camera.sensor.t4x.afInfo"},
    {24, "persist.vendor.camera.sensor.m2x.afInfo"},
    {25, "persist.vendor.camera.sensor.d.afInfo"},
    {40, "persist.vendor.camera.sensor.faux.afInfo"},
};

// Tele positions that can be fitted with one of several modules.
const std::map<unsigned, std::vector<unsigned>> AfCalibrationData::cameraBackupIdMap = {
    {20, {26, 27}},
    {23, {28, 29}},
};

const std::map<int, std::string> AfCalibrationData::cameraRoleFuseIdPropertyMap = {
    {0, "vendor.camera.sensor.rearMain.fuseID"},     {1, "vendor.camera.sensor.frontMain.fuseID"},
    {20, "vendor.camera.sensor.rearTele.fuseID"},    {21, "vendor.camera.sensor.rearUltra.fuseID"},
    {22, "vendor.camera.sensor.rearMacro.fuseID"},   {23, "vendor.camera.sensor.rearTele4x.fuseID"},
    {24, "vendor.camera.sensor.rearMacro2x.fuseID"}, {25, "vendor.camera.sensor.rearDepth.fuseID"},
    {40, "vendor.camera.sensor.frontAux.fuseID"},
};

const std::string AfCalibrationData::afCalFilePath = persistFile("com.nurvak.afc.bin");
const std::string AfCalibrationData::pdOffsetCalFilePath = persistFile("com.nurvak.pdoffset.bin");

namespace {

const char kTag[] = "AfCalibrationData";

// The whole of a file in one buffer; false when it cannot be read.
bool readText(const std::string& file, std::string* text) {
    UniqueFd fd(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (!fd.valid() || fstat(fd.get(), &status) != 0) return false;
    // The size is a hint: a file that grows or shrinks meanwhile is still read to its end.
    text->resize(status.st_size > 0 ? static_cast<size_t>(status.st_size) + 1 : 4096);
    size_t used = 0;
    for (;;) {
        if (used == text->size()) text->resize(text->size() * 2);
        const ssize_t count = read(fd.get(), &(*text)[used], text->size() - used);
        if (count > 0) {
            used += static_cast<size_t>(count);
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            return false;
        }
    }
    text->resize(used);
    return true;
}

// Calls `each` with every line of `text` as getline gives them, a last line without "\n"
// included.
template <typename Each>
void forEachLine(std::string_view text, Each each) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        each(text.substr(start, end - start));
        start = end + 1;
    }
}

// The value of a camera's property in `properties`; when it is empty, that of the first backup
// camera that has one. `property` receives the name of the property read.
std::string readWithBackups(const std::map<int, std::string>& properties, int cameraId,
                            std::string* property) {
    auto own = properties.find(cameraId);
    if (own == properties.end()) return "";
    *property = own->second;
    std::string value = readProperty(own->second);
    if (!value.empty()) return value;
    auto backups = AfCalibrationData::cameraBackupIdMap.find(static_cast<unsigned>(cameraId));
    if (backups == AfCalibrationData::cameraBackupIdMap.end()) return "";
    for (unsigned backup : backups->second) {
        auto entry = properties.find(static_cast<int>(backup));
        if (entry == properties.end()) continue;
        value = readProperty(entry->second);
        if (!value.empty()) {
            *property = entry->second;
            return value;
        }
    }
    return "";
}

// The number of PD-offset values a record holds: its length text as a number, within the list.
size_t valueCount(const AfCalibrationData::pdOffsetCalData& record) {
    const int count = leadingDecimalOrAbort(record.pdOffsetLength,
                                            "PD-offset length of fuse ID " + record.fuseId);
    return std::min(static_cast<size_t>(std::max(count, 0)), record.pdOffset.size());
}

std::vector<std::string_view> afTexts(const AfCalibrationData::afCalData& record) {
    return {record.useFlag, record.camera, record.fuseId, record.dist, record.dac, record.temp};
}

std::vector<std::string_view> pdOffsetHead(const AfCalibrationData::pdOffsetCalData& record) {
    return {record.useFlag, record.camera, record.fuseId, record.pdOffsetLength};
}

std::vector<std::string_view> viewsOf(const std::vector<std::string>& texts, size_t count) {
    return std::vector<std::string_view>(texts.begin(), texts.begin() + count);
}

// A value as atof reads it, as a float; out of a float's range it is an infinity.
float toFloat(const std::string& text) {
    const double value = atof(text.c_str());
    if (value > FLT_MAX) return INFINITY;
    if (value < -FLT_MAX) return -INFINITY;
    return static_cast<float>(value);
}

// Replaces a whole calibration text file with the lines that `build` appends to one buffer
// (logging each as it goes) in one write; false (and the old file kept) when it could not be
// written.
template <typename Build>
bool rewriteFile(const std::string& file, Build build) {
    SafeFileWriter out(file);
    if (!out.open()) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "flush:failed to open file %s\n", file.c_str());
        return false;
    }
    std::string content;
    build(&content);
    out.write(content);
    if (!out.commit()) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "flush:failed to write file %s\n",
                            file.c_str());
        return false;
    }
    changeFileAttribute(file.c_str());
    return true;
}

// Logs the line that `content` gained from `from` on.
void logWritten(const std::string& content, size_t from) {
    __android_log_print(ANDROID_LOG_INFO, kTag, "write record: %.*s",
                        static_cast<int>(content.size() - from), content.data() + from);
}

int dacTolerance(int largestDac) {
    // 120/1024 of a 10-, 12- or 14-bit DAC's range; past that only an exact DAC passes.
    if (largestDac < 1024) return 120;
    if (largestDac < 4096) return 480;
    if (largestDac < 16384) return 1920;
    return 0;
}

}  // namespace

bool AfCalibrationData::init() {
    path = afCalFilePath;
    return parse();
}

bool AfCalibrationData::parse() {
    std::string text;
    if (!readText(path, &text)) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "Filed not Exist %s", path.c_str());
        return true;
    }
    forEachLine(text, [this](std::string_view line) {
        const DecodedLine decoded = decodeAfLine(line);
        if (decoded.status != LineStatus::ok) {
            __android_log_print(ANDROID_LOG_ERROR, kTag,
                                "Not expected file format, colum number: %d", decoded.columnCount);
            return;
        }
        const std::vector<std::string_view>& f = decoded.fields;
        // The stored CRC is kept as it is: only write() re-sums a record it changes.
        afCalData record{std::string(f[0]), std::string(f[1]), std::string(f[2]), std::string(f[3]),
                         std::string(f[4]), std::string(f[5]), decoded.storedCrc};
        __android_log_print(ANDROID_LOG_INFO, kTag,
                            "exist calibration info: %s, %s, %s, %s, %s, %s, %s\n",
                            record.useFlag.c_str(), record.camera.c_str(), record.fuseId.c_str(),
                            record.dist.c_str(), record.dac.c_str(), record.temp.c_str(),
                            std::to_string(record.crc).c_str());
        afCalDataList.push_back(std::move(record));
    });
    return true;
}

std::string AfCalibrationData::getFuseId(std::string camera) {
    const int cameraId = leadingDecimalOrAbort(camera, "camera id");
    std::string property;
    const std::string value = readWithBackups(cameraFuseIdPropertyMap, cameraId, &property);
    if (value.empty()) {
        fprintf(stdout, "can't find camera[%d] fuseid\n", cameraId);
        return "0";
    }
    return decodeFuseIdProperty(value, property);
}

int AfCalibrationData::find(std::string fuseId, std::string dist) {
    for (size_t i = 0; i < afCalDataList.size(); ++i) {
        if (afCalDataList[i].fuseId == fuseId && afCalDataList[i].dist == dist) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int AfCalibrationData::check(const afCalData* record) {
    return afRecordCrc(afTexts(*record));
}

int AfCalibrationData::getDac(std::string& fuseId, int dist) {
    const std::string distText = std::to_string(dist);
    for (const afCalData& record : afCalDataList) {
        if (record.fuseId == fuseId && record.dist == distText) {
            return leadingDecimalOrAbort(record.dac,
                                         "stored DAC of " + fuseId + " at distance " + distText);
        }
    }
    return -1;
}

bool AfCalibrationData::flush() {
    return rewriteFile(path, [this](std::string* content) {
        for (const afCalData& record : afCalDataList) {
            const size_t from = content->size();
            appendAfLine(content, afTexts(record), record.crc);
            logWritten(*content, from);
        }
    });
}

bool AfCalibrationData::write(const std::string& camera, int dist, int dac, int temp, int useFlag) {
    const std::string fuseId = getFuseId(camera);
    // Points meant for use are checked; others are stored whatever they hold.
    if (useFlag != 0) {
        if (temp < 1 || temp > 50) {
            fprintf(stdout, "Error:temperature %d is not within the usable range\n", temp);
            return false;
        }
        if (dac < 0) {
            fprintf(stdout, "Error:dac %d is not allowed to be less than 0\n", dac);
            return false;
        }
        if (!checkDacPass(camera, dist, dac)) return false;
    }
    if (fuseId == "0") return false;

    const std::string distText = std::to_string(dist);
    const int index = find(fuseId, distText);
    afCalData record;
    if (index >= 0) {
        record = afCalDataList[index];
    } else {
        record.fuseId = fuseId;
        record.dist = distText;
    }
    record.useFlag = useFlag != 0 ? "1" : "0";
    record.camera = camera;
    record.dac = std::to_string(dac);
    record.temp = std::to_string(temp);
    record.crc = static_cast<uint16_t>(check(&record));
    if (index >= 0) {
        afCalDataList[index] = record;
    } else {
        afCalDataList.push_back(record);
    }
    return true;
}

bool AfCalibrationData::checkDacPass(const std::string& camera, int dist, int dac) {
    const int cameraId = leadingDecimalOrAbort(camera, "camera id");
    std::string property;
    const std::string info = readWithBackups(cameraAfInfoPropertyMap, cameraId, &property);
    if (info.empty()) {
        fprintf(stdout, "Error:writing distance:%d is not matched with EEPROM distance value\n",
                dist);
        return false;
    }
    // "10:300,50:420" gives the items 10, 300, 50, 420: distance and DAC by turns.
    std::vector<std::string> pairs;
    std::vector<std::string> items;
    splitAFInfoString(info, pairs, ",");
    for (const std::string& pair : pairs) splitAFInfoString(pair, items, ":");
    const std::string what = "AF information item of " + property;

    int largestDac = 0;
    for (size_t i = 1; i < items.size(); i += 2) {
        largestDac = std::max(largestDac, leadingDecimalOrAbort(items[i], what));
    }
    const int tolerance = dacTolerance(largestDac);

    const std::string distText = std::to_string(dist);
    bool distanceFound = false;
    // A distance without a DAC at the end of the list is no pair, and never matches.
    for (size_t i = 0; i + 1 < items.size(); i += 2) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "dis %s : dac %s\n", items[i].c_str(),
                            items[i + 1].c_str());
        if (items[i] != distText) continue;
        distanceFound = true;
        const long long difference =
            static_cast<long long>(leadingDecimalOrAbort(items[i + 1], what)) - dac;
        if (std::llabs(difference) <= tolerance) return true;
    }
    if (distanceFound) {
        fprintf(stdout, "Error:abs(writingDac - eepromDac) is over %d\n", tolerance);
    } else {
        fprintf(stdout, "Error:writing distance:%d is not matched with EEPROM distance value\n",
                dist);
    }
    return false;
}

void AfCalibrationData::splitAFInfoString(const std::string& text, std::vector<std::string>& out,
                                          const std::string& sep) {
    size_t start = 0;
    size_t found;
    while (!sep.empty() && (found = text.find(sep, start)) != std::string::npos) {
        out.push_back(text.substr(start, found - start));
        start = found + sep.size();
    }
    if (start != text.size()) out.push_back(text.substr(start));
}

void AfCalibrationData::pdOffsetInit() {
    pdOffsetPath = pdOffsetCalFilePath;
    pdOffsetParse();
}

void AfCalibrationData::pdOffsetParse() {
    std::string text;
    if (!readText(pdOffsetPath, &text)) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "Filed not Exist %s", pdOffsetPath.c_str());
        return;
    }
    forEachLine(text, [this](std::string_view line) {
        const DecodedLine decoded = decodePdOffsetLine(line);
        const std::vector<std::string_view>& fields = decoded.fields;
        if (decoded.status == LineStatus::lengthNotANumber) {
            abortOnBadNumber("PD-offset length of fuse ID " + std::string(fields[2]),
                             std::string(fields[3]));
        }
        if (decoded.status != LineStatus::ok) {
            if (decoded.columnCount >= 6) {
                __android_log_print(ANDROID_LOG_ERROR, kTag,
                                    "Not expected file format, colum number: %d",
                                    decoded.columnCount);
            }
            return;
        }
        pdOffsetCalData record;
        record.useFlag = fields[0];
        record.camera = fields[1];
        record.fuseId = fields[2];
        record.pdOffsetLength = fields[3];
        auto values = fields.begin() + 4;
        record.pdOffset.assign(values, values + decoded.valueCount);
        if (decoded.hasSfrData) {
            record.pdOffsetSfrData.assign(values + decoded.valueCount,
                                          values + decoded.valueCount + 8);
        }
        // The stored CRC is kept as it is: only the read-back checks it.
        record.crc = decoded.storedCrc;
        __android_log_print(ANDROID_LOG_INFO, kTag, "exist pdaf offset info : %.*s",
                            static_cast<int>(line.size()), line.data());
        pdOffsetCalDataList.push_back(std::move(record));
    });
}

int AfCalibrationData::pdOffsetFind(std::string fuseId) {
    for (size_t i = 0; i < pdOffsetCalDataList.size(); ++i) {
        if (pdOffsetCalDataList[i].fuseId == fuseId) return static_cast<int>(i);
    }
    return -1;
}

int AfCalibrationData::pdOffsetCheck(const pdOffsetCalData* record) {
    if (record == nullptr) return 0;
    return pdOffsetRecordCrc(pdOffsetHead(*record), viewsOf(record->pdOffset, valueCount(*record)),
                             viewsOf(record->pdOffsetSfrData, record->pdOffsetSfrData.size()));
}

bool AfCalibrationData::pdOffsetFlush() {
    return rewriteFile(pdOffsetPath, [this](std::string* content) {
        for (const pdOffsetCalData& record : pdOffsetCalDataList) {
            const size_t from = content->size();
            appendPdOffsetLine(
                content, pdOffsetHead(record), viewsOf(record.pdOffset, valueCount(record)),
                viewsOf(record.pdOffsetSfrData, record.pdOffsetSfrData.size()), record.crc);
            logWritten(*content, from);
        }
    });
}

bool AfCalibrationData::pdOffsetWrite(const std::string& camera, int pdOffsetLength,
                                      std::string pdOffset, int useFlag) {
    const std::vector<std::string_view> pieces = splitFields(pdOffset);
    std::vector<std::string> values(pieces.begin(), pieces.end());
    if (static_cast<long long>(values.size()) != pdOffsetLength) {
        // No newline: the stage's failure line completes it.
        fprintf(stdout, "input parse is error, pdoffset length and pdoffset data is mismatch");
        return false;
    }
    const std::string fuseId = getFuseId(camera);
    if (fuseId == "0") return false;

    // Records are the module's: a replaced module gets a record of its own.
    const int index = pdOffsetFind(fuseId);
    pdOffsetCalData record;
    if (index >= 0) {
        record = pdOffsetCalDataList[index];  // keeps the SFR data written earlier
    } else {
        record.fuseId = fuseId;
    }
    record.useFlag = useFlag != 0 ? "1" : "0";
    record.camera = camera;
    record.pdOffsetLength = std::to_string(pdOffsetLength);
    record.pdOffset = std::move(values);
    record.crc = static_cast<uint16_t>(pdOffsetCheck(&record));
    if (index >= 0) {
        pdOffsetCalDataList[index] = record;
    } else {
        pdOffsetCalDataList.push_back(record);
    }
    return true;
}

bool AfCalibrationData::pdOffsetSfrDataWrite(const std::string& camera, const std::string& sfrData) {
    // Cut at bare commas: blanks stay in the values, and a last comma leaves an empty value.
    std::vector<std::string> values;
    if (!sfrData.empty()) splitAFInfoString(sfrData + ",", values, ",");
    if (values.size() != 8) {
        fprintf(stdout, "pdoffsetSfrDataStr parse error: %s\n", sfrData.c_str());
        return false;
    }
    for (pdOffsetCalData& record : pdOffsetCalDataList) {
        if (record.camera != camera) continue;
        record.pdOffsetSfrData = values;
        record.crc = static_cast<uint16_t>(pdOffsetCheck(&record));
        return true;
    }
    return false;
}

int AfCalibrationData::getPdoffset(int camera, std::vector<float>& pdOffset,
                                   std::vector<float>& sfrData) {
    const std::string fuseId = getFuseId(std::to_string(camera));
    const int index = pdOffsetFind(fuseId);
    if (index < 0) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "fuseId check error %s", fuseId.c_str());
        return -1;
    }
    const pdOffsetCalData record = pdOffsetCalDataList[index];
    const int computed = pdOffsetCheck(&record) & 0xFFFF;
    if (computed != record.crc) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "pdOffsetCalData crc check error %d,%d",
                            computed, static_cast<int>(record.crc));
        return -1;
    }
    for (const std::string& value : record.pdOffset) pdOffset.push_back(toFloat(value));
    for (const std::string& value : record.pdOffsetSfrData) sfrData.push_back(toFloat(value));
    return static_cast<int>(pdOffset.size());
}
