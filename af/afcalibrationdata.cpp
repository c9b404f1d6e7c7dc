#include "af/afcalibrationdata.h"

#include <android/log.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "af/aflines.h"
#include "af/calibrationlines.h"
#include "base/fieldlines.h"
#include "base/filereader.h"
#include "base/parseint.h"
#include "base/text.h"
#include "common/badnumber.h"
#include "common/cameras.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/fuseidproperty.h"
#include "common/recordfile.h"

namespace {

const char kTag[] = "AfCalibrationData";

// A value as atof reads it, rounded to the nearest float. Past the largest float, values below
// the midpoint between it and 2^128 still round to it; from there on they are an infinity. The
// cast is left to the values a float can hold, where it is defined.
float toFloat(const std::string& text) {
    constexpr double kRoundsToInfinity = 0x1.ffffffp+127;  // FLT_MAX plus half its last step
    const double value = atof(text.c_str());
    if (std::fabs(value) > FLT_MAX) {
        const float largest = std::fabs(value) < kRoundsToInfinity ? FLT_MAX : INFINITY;
        return value < 0 ? -largest : largest;
    }
    return static_cast<float>(value);
}

// Whether every new text of a record reads back as itself from the stored line; otherwise one
// line on standard error names the first that would not, and nothing is stored. `fieldOf(i)`
// names the i-th text.
template <typename FieldName>
bool readsBack(const std::string& file, const std::vector<std::string_view>& texts,
               FieldName fieldOf) {
    for (size_t i = 0; i < texts.size(); ++i) {
        if (const char* reason = unstorableTextReason(texts[i])) {
            fprintf(stderr, "Error:cannot store %s: the %s %s %s\n", file.c_str(), fieldOf(i),
                    quoted(texts[i]).c_str(), reason);
            return false;
        }
    }
    return true;
}

// What the store calls each text of a record, for the line that refuses one.
const char* afField(size_t i) {
    static constexpr const char* kNames[] = {"use flag", "camera id", "fuse ID",
                                             "distance", "DAC",       "temperature"};
    return kNames[i];
}

const char* pdOffsetField(size_t i) {
    static constexpr const char* kHead[] = {"use flag", "camera id", "fuse ID", "value count"};
    return i < 4 ? kHead[i] : "PD-offset value";
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
    path = afCalFilePath();
    return parse();
}

bool AfCalibrationData::parse() {
    const bool traced = points.tracesLines();
    const auto keep = [traced](std::string_view, const DecodedLine& decoded) {
        if (decoded.status != LineStatus::ok) {
            __android_log_print(ANDROID_LOG_ERROR, kTag,
                                "Not expected file format, colum number: %d", decoded.columnCount);
            return false;
        }
        // The stored CRC is kept as it is: only write() re-sums a record it changes.
        if (!traced) return true;
        const FieldLines::Fields& f = decoded.fields;
        const auto s = [](std::string_view text) { return static_cast<int>(text.size()); };
        __android_log_print(ANDROID_LOG_INFO, kTag,
                            "exist calibration info: %.*s, %.*s, %.*s, %.*s, %.*s, %.*s, %u\n",
                            s(f[0]), f[0].data(), s(f[1]), f[1].data(), s(f[2]), f[2].data(),
                            s(f[3]), f[3].data(), s(f[4]), f[4].data(), s(f[5]), f[5].data(),
                            static_cast<unsigned>(decoded.storedCrc));
        return true;
    };
    if (!points.load(path, decodeSplitAfLine, keep)) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "Filed not Exist %s", path.c_str());
    }
    return true;
}

std::string AfCalibrationData::getFuseId(std::string camera) {
    const int cameraId = leadingIntOrAbort(camera, "camera id");
    std::string property;
    const std::string value =
        readFocusProperty(&CameraRole::focusFuseIdProperty, cameraId, &property);
    if (value.empty()) {
        fprintf(stdout, "can't find camera[%d] fuseid\n", cameraId);
        return "0";
    }
    return decodeFuseIdProperty(value, property);
}

int AfCalibrationData::find(std::string fuseId, std::string dist) {
    return points.find([&](std::string_view line) {
        return CalibrationLines::holds(line, 2, fuseId) && CalibrationLines::holds(line, 3, dist);
    });
}

int AfCalibrationData::getDac(std::string& fuseId, int dist) {
    const int index = find(fuseId, std::to_string(dist));
    if (index < 0) return -1;
    const std::string dac(points.texts(points.records[index])[4]);
    return leadingIntOrAbort(dac,
                             "stored DAC of " + fuseId + " at distance " + std::to_string(dist));
}

bool AfCalibrationData::flush() {
    return points.flush(path);
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
    // A point is the sensor's at a distance: an existing one keeps its fuse ID and distance texts.
    const std::string useFlagText = useFlag != 0 ? "1" : "0";
    const std::string dacText = std::to_string(dac);
    const std::string tempText = std::to_string(temp);
    std::vector<std::string_view> texts = {useFlagText, camera,  fuseId,
                                           distText,    dacText, tempText};
    if (index >= 0) {
        const std::vector<std::string_view> old = points.texts(points.records[index]);
        texts[2] = old[2];
        texts[3] = old[3];
    }
    if (!readsBack(path, texts, afField)) return false;
    // Summed from the texts themselves, whatever they hold.
    points.put(index, texts, afRecordCrc(texts));
    return true;
}

bool AfCalibrationData::checkDacPass(const std::string& camera, int dist, int dac) {
    const int cameraId = leadingIntOrAbort(camera, "camera id");
    std::string property;
    const std::string info = readFocusProperty(&CameraRole::afInfoProperty, cameraId, &property);
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
        largestDac = std::max(largestDac, leadingIntOrAbort(items[i], what));
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
            static_cast<long long>(leadingIntOrAbort(items[i + 1], what)) - dac;
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
    pdOffsetPath = pdOffsetCalFilePath();
    pdOffsetParse();
}

void AfCalibrationData::pdOffsetParse() {
    const bool traced = pdOffsets.tracesLines();
    const auto keep = [traced](std::string_view line, const DecodedLine& decoded) {
        const FieldLines::Fields& fields = decoded.fields;
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
            return false;
        }
        // The stored CRC is kept as it is: only the read-back checks it.
        if (traced) {
            __android_log_print(ANDROID_LOG_INFO, kTag, "exist pdaf offset info : %.*s",
                                static_cast<int>(line.size()), line.data());
        }
        return true;
    };
    if (!pdOffsets.load(pdOffsetPath, decodeSplitPdOffsetLine, keep)) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "Filed not Exist %s", pdOffsetPath.c_str());
    }
}

int AfCalibrationData::pdOffsetFind(std::string fuseId) {
    return pdOffsets.find(
        [&](std::string_view line) { return CalibrationLines::holds(line, 2, fuseId); });
}

int AfCalibrationData::valueCountOf(const std::vector<std::string_view>& texts) {
    // Every held record's N read as its line was taken: a decimal int, at most the values there.
    return leadingInt(texts[3]).value_or(0);
}

int AfCalibrationData::pdOffsetCheck(const pdOffsetCalData* record) {
    if (record == nullptr) return 0;
    const std::vector<std::string_view> texts = pdOffsets.texts(*record);
    const auto values = texts.begin() + 4;
    const auto sfrData = values + valueCountOf(texts);
    return pdOffsetRecordCrc({texts.begin(), values}, {values, sfrData}, {sfrData, texts.end()});
}

bool AfCalibrationData::pdOffsetFlush() {
    return pdOffsets.flush(pdOffsetPath);
}

bool AfCalibrationData::pdOffsetWrite(const std::string& camera, int pdOffsetLength,
                                      std::string pdOffset, int useFlag) {
    FieldLines::Fields split;
    FieldLines::split(pdOffset, &split);
    const std::vector<std::string_view> values(split.begin(), split.end());
    if (static_cast<long long>(values.size()) != pdOffsetLength) {
        // No newline: the stage's failure line completes it.
        fprintf(stdout, "input parse is error, pdoffset length and pdoffset data is mismatch");
        return false;
    }
    const std::string fuseId = getFuseId(camera);
    if (fuseId == "0") return false;

    // Records are the module's: a replaced module gets a record of its own, and a module's
    // record keeps the SFR data written earlier.
    const int index = pdOffsetFind(fuseId);
    const std::string useFlagText = useFlag != 0 ? "1" : "0";
    const std::string lengthText = std::to_string(pdOffsetLength);
    const std::vector<std::string_view> head = {useFlagText, camera, fuseId, lengthText};
    std::vector<std::string_view> texts = head;
    texts.insert(texts.end(), values.begin(), values.end());
    if (!readsBack(pdOffsetPath, texts, pdOffsetField)) return false;
    std::vector<std::string_view> sfrData;
    if (index >= 0) {
        const std::vector<std::string_view> oldTexts = pdOffsets.texts(pdOffsets.records[index]);
        sfrData.assign(oldTexts.begin() + 4 + valueCountOf(oldTexts), oldTexts.end());
    }
    texts.insert(texts.end(), sfrData.begin(), sfrData.end());
    pdOffsets.put(index, texts, pdOffsetRecordCrc(head, values, sfrData));
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
    if (!readsBack(pdOffsetPath, {values.begin(), values.end()},
                   [](size_t) { return "SFR value"; })) {
        return false;
    }
    for (size_t i = 0; i < pdOffsets.records.size(); ++i) {
        std::vector<std::string_view> texts = pdOffsets.texts(pdOffsets.records[i]);
        if (texts.size() < 2 || texts[1] != camera) continue;
        // An earlier set is dropped.
        const int valueCount = valueCountOf(texts);
        texts.resize(4 + valueCount);
        texts.insert(texts.end(), values.begin(), values.end());
        const auto head = texts.begin() + 4;
        const auto sfr = head + valueCount;
        pdOffsets.put(static_cast<int>(i), texts,
                      pdOffsetRecordCrc({texts.begin(), head}, {head, sfr}, {sfr, texts.end()}));
        return true;
    }
    return false;
}

std::string AfCalibrationData::afCalFilePath() {
    return persistFile(kAfFileName);
}

std::string AfCalibrationData::pdOffsetCalFilePath() {
    return persistFile(kPdOffsetFileName);
}

int AfCalibrationData::getPdoffset(int camera, std::vector<float>& pdOffset,
                                   std::vector<float>& sfrData) {
    const std::string fuseId = getFuseId(std::to_string(camera));
    const int index = pdOffsetFind(fuseId);
    if (index < 0) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "fuseId check error %s", fuseId.c_str());
        return -1;
    }
    const pdOffsetCalData record = pdOffsets.records[index];
    const int computed = pdOffsetCheck(&record) & 0xFFFF;
    const int stored = pdOffsets.crc(record);
    if (computed != stored) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "pdOffsetCalData crc check error %d,%d",
                            computed, stored);
        return -1;
    }
    const std::vector<std::string_view> texts = pdOffsets.texts(record);
    const auto sfr = texts.begin() + 4 + valueCountOf(texts);
    for (auto value = texts.begin() + 4; value != sfr; ++value) {
        pdOffset.push_back(toFloat(std::string(*value)));
    }
    for (auto value = sfr; value != texts.end(); ++value) {
        sfrData.push_back(toFloat(std::string(*value)));
    }
    return static_cast<int>(pdOffset.size());
}
