#include "af/afcalibrationdata.h"

#include <android/log.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "af/aflines.h"
#include "base/filereader.h"
#include "base/text.h"
#include "common/badnumber.h"
#include "common/cameras.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/fuseidproperty.h"
#include "common/recordfile.h"

namespace {

const char kTag[] = "AfCalibrationData";

// Adds a persist file's bytes to the text of the loaded records (read straight into it the first
// time). A link at the name counts as no file. False, with the reason logged, when something
// else stands there or it cannot be read: the store then keeps it as it is.
bool appendText(const std::string& file, std::string* text, bool* exists) {
    FileRead read = loadRecordFile(file);
    *exists = read.ok();
    if (read.status == FileRead::Status::absent || read.status == FileRead::Status::link) {
        return true;
    }
    if (!read.ok()) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "cannot load %s: %s", file.c_str(),
                            read.reason().c_str());
        return false;
    }
    // Records address the text with 32-bit offsets: the read cap keeps it far below 4 GiB.
    if (text->empty()) {
        *text = std::move(read.bytes);
    } else {
        text->append(read.bytes);
    }
    return true;
}

// The texts of a record as stored, each followed by ",".
std::vector<std::string_view> textsOf(std::string_view stored) {
    std::vector<std::string_view> texts;
    size_t start = 0;
    for (size_t comma; (comma = stored.find(',', start)) != std::string_view::npos;
         start = comma + 1) {
        texts.push_back(stored.substr(start, comma - start));
    }
    return texts;
}

// The `index`-th text of a record as stored, without splitting the others out.
std::string_view storedText(std::string_view stored, size_t index) {
    for (; index > 0; --index) {
        const size_t comma = stored.find(',');
        if (comma == std::string_view::npos) return {};
        stored.remove_prefix(comma + 1);
    }
    return stored.substr(0, stored.find(','));
}

// The first `count` fields of a decoded line as they will be written: the line itself when its
// fields are separated by bare commas, so that a file this store wrote is taken without a copy;
// otherwise the fields joined again, added to `added`. Gives the record's place.
template <typename Record>
void storeFields(const DecodedLine& line, size_t count, std::string_view loaded, std::string* added,
                 Record* record) {
    const char* begin = line.fields.front().data();
    size_t joined = 0;
    for (size_t i = 0; i < count; ++i) joined += line.fields[i].size() + 1;
    if (static_cast<size_t>(line.fields[count].data() - begin) == joined) {
        record->start = static_cast<uint32_t>(begin - loaded.data());
        record->size = static_cast<uint32_t>(joined);
        return;
    }
    record->added = true;
    record->start = static_cast<uint32_t>(added->size());
    record->size = static_cast<uint32_t>(joined);
    for (size_t i = 0; i < count; ++i) {
        added->append(line.fields[i]);
        added->push_back(',');
    }
}

// Stores a record's new texts in `added`, each followed by ",". They may lie in `added` already.
template <typename Record>
void storeTexts(const std::vector<std::string_view>& texts, std::string* added, Record* record) {
    std::string joined;
    for (std::string_view text : texts) joined.append(text).push_back(',');
    record->added = true;
    record->start = static_cast<uint32_t>(added->size());
    record->size = static_cast<uint32_t>(joined.size());
    added->append(joined);
}

// The number of lines of a text, to size the record lists once.
size_t lineCount(std::string_view text) {
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
}

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

const char* afField(size_t i) {
    static constexpr const char* kNames[] = {"use flag", "camera id",   "fuse ID",    "distance",
                                             "DAC",      "temperature", "value count"};
    return kNames[i];
}

// Replaces a whole calibration text file with the lines that `build` appends to one buffer
// (logging each as it goes) in one write; false (and the old file kept) when it could not be
// written, or when the file could not be loaded and so cannot be rewritten without losing it.
template <typename Build>
bool rewriteFile(const std::string& file, bool loaded, Build build) {
    if (!loaded) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "flush:kept %s, which could not be loaded\n",
                            file.c_str());
        return false;
    }
    std::string content;
    build(&content);
    // The next run's reader would refuse the file, and every later store with it.
    if (content.size() > kMaxFileSize) {
        fprintf(stderr,
                "Error:cannot store %s: it would hold %zu bytes, more than the 16 MiB a "
                "calibration file may hold\n",
                file.c_str(), content.size());
        return false;
    }
    const WriteResult result = storeRecordFile(file, content, kTag, "flush:", 0);
    if (!result.stored()) return false;
    reportFileAttribute(file.c_str(), 0, result.ownerError);
    return true;
}

// Appends a record's line, its stored texts ended by its CRC and "\n", with the line layer's one
// encoder; then logs it.
void appendLine(std::string* content, std::string_view texts, uint16_t crc) {
    const size_t from = content->size();
    appendStoredLine(content, texts, crc);
    __android_log_print(ANDROID_LOG_INFO, kTag, "write record: %.*s",
                        static_cast<int>(content->size() - from), content->data() + from);
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
    const size_t from = loadedText.size();
    bool exists = false;
    loaded = appendText(path, &loadedText, &exists) && loaded;
    if (!exists) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "Filed not Exist %s", path.c_str());
        return true;
    }
    afCalDataList.reserve(afCalDataList.size() +
                          lineCount(std::string_view(loadedText).substr(from)));
    DecodedLine decoded;
    forEachLine(std::string_view(loadedText).substr(from), [&](std::string_view line) {
        decodeAfLine(line, &decoded, false);
        if (decoded.status != LineStatus::ok) {
            __android_log_print(ANDROID_LOG_ERROR, kTag,
                                "Not expected file format, colum number: %d", decoded.columnCount);
            return;
        }
        const std::vector<std::string_view>& f = decoded.fields;
        // The stored CRC is kept as it is: only write() re-sums a record it changes.
        afCalData record;
        record.crc = decoded.storedCrc;
        storeFields(decoded, 6, loadedText, &addedText, &record);
        const auto s = [](std::string_view text) { return static_cast<int>(text.size()); };
        __android_log_print(ANDROID_LOG_INFO, kTag,
                            "exist calibration info: %.*s, %.*s, %.*s, %.*s, %.*s, %.*s, %u\n",
                            s(f[0]), f[0].data(), s(f[1]), f[1].data(), s(f[2]), f[2].data(),
                            s(f[3]), f[3].data(), s(f[4]), f[4].data(), s(f[5]), f[5].data(),
                            static_cast<unsigned>(record.crc));
        afCalDataList.push_back(record);
    });
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
    for (size_t i = 0; i < afCalDataList.size(); ++i) {
        const std::string_view texts = stored(afCalDataList[i]);
        if (storedText(texts, 2) == fuseId && storedText(texts, 3) == dist) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int AfCalibrationData::getDac(std::string& fuseId, int dist) {
    const int index = find(fuseId, std::to_string(dist));
    if (index < 0) return -1;
    const std::string dac(afTexts(afCalDataList[index])[4]);
    return leadingIntOrAbort(dac,
                             "stored DAC of " + fuseId + " at distance " + std::to_string(dist));
}

bool AfCalibrationData::flush() {
    return rewriteFile(path, loaded, [this](std::string* content) {
        content->reserve(loadedText.size() + addedText.size() + 6 * afCalDataList.size());
        for (const afCalData& record : afCalDataList) {
            appendLine(content, stored(record), record.crc);
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
    // A point is the sensor's at a distance: an existing one keeps its fuse ID and distance texts.
    const std::string useFlagText = useFlag != 0 ? "1" : "0";
    const std::string dacText = std::to_string(dac);
    const std::string tempText = std::to_string(temp);
    std::vector<std::string_view> texts = {useFlagText, camera,  fuseId,
                                           distText,    dacText, tempText};
    afCalData record;
    if (index >= 0) {
        const std::vector<std::string_view> old = afTexts(afCalDataList[index]);
        texts[2] = old[2];
        texts[3] = old[3];
    }
    if (!readsBack(path, texts, afField)) return false;
    // Summed from the texts themselves, whatever they hold.
    record.crc = afRecordCrc(texts);
    storeTexts(texts, &addedText, &record);
    if (index >= 0) {
        afCalDataList[index] = record;
    } else {
        afCalDataList.push_back(record);
    }
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
    const size_t from = loadedText.size();
    bool exists = false;
    pdOffsetLoaded = appendText(pdOffsetPath, &loadedText, &exists) && pdOffsetLoaded;
    if (!exists) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "Filed not Exist %s", pdOffsetPath.c_str());
        return;
    }
    pdOffsetCalDataList.reserve(pdOffsetCalDataList.size() +
                                lineCount(std::string_view(loadedText).substr(from)));
    DecodedLine decoded;
    forEachLine(std::string_view(loadedText).substr(from), [&](std::string_view line) {
        decodePdOffsetLine(line, &decoded, false);
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
        record.valueCount = static_cast<uint32_t>(decoded.valueCount);
        // The stored CRC is kept as it is: only the read-back checks it.
        record.crc = decoded.storedCrc;
        storeFields(decoded, fields.size() - 1, loadedText, &addedText, &record);
        __android_log_print(ANDROID_LOG_INFO, kTag, "exist pdaf offset info : %.*s",
                            static_cast<int>(line.size()), line.data());
        pdOffsetCalDataList.push_back(record);
    });
}

int AfCalibrationData::pdOffsetFind(std::string fuseId) {
    for (size_t i = 0; i < pdOffsetCalDataList.size(); ++i) {
        if (storedText(stored(pdOffsetCalDataList[i]), 2) == fuseId) return static_cast<int>(i);
    }
    return -1;
}

int AfCalibrationData::pdOffsetCheck(const pdOffsetCalData* record) {
    if (record == nullptr) return 0;
    const std::vector<std::string_view> texts = pdOffsetTexts(*record);
    const auto values = texts.begin() + 4;
    const auto sfrData = values + record->valueCount;
    return pdOffsetRecordCrc({texts.begin(), values}, {values, sfrData}, {sfrData, texts.end()});
}

bool AfCalibrationData::pdOffsetFlush() {
    return rewriteFile(pdOffsetPath, pdOffsetLoaded, [this](std::string* content) {
        content->reserve(loadedText.size() + addedText.size() + 6 * pdOffsetCalDataList.size());
        for (const pdOffsetCalData& record : pdOffsetCalDataList) {
            appendLine(content, stored(record), record.crc);
        }
    });
}

bool AfCalibrationData::pdOffsetWrite(const std::string& camera, int pdOffsetLength,
                                      std::string pdOffset, int useFlag) {
    std::vector<std::string_view> values;
    splitFields(pdOffset, &values);
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
    const auto field = [](size_t i) { return i < 4 ? afField(i == 3 ? 6 : i) : "PD-offset value"; };
    std::vector<std::string_view> texts = head;
    texts.insert(texts.end(), values.begin(), values.end());
    if (!readsBack(pdOffsetPath, texts, field)) return false;
    std::vector<std::string_view> sfrData;
    if (index >= 0) {
        const pdOffsetCalData& old = pdOffsetCalDataList[index];
        const std::vector<std::string_view> texts = pdOffsetTexts(old);
        sfrData.assign(texts.begin() + 4 + old.valueCount, texts.end());
    }
    pdOffsetCalData record;
    record.valueCount = static_cast<uint32_t>(values.size());
    record.crc = pdOffsetRecordCrc(head, values, sfrData);
    texts.insert(texts.end(), sfrData.begin(), sfrData.end());
    storeTexts(texts, &addedText, &record);
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
    if (!readsBack(pdOffsetPath, {values.begin(), values.end()},
                   [](size_t) { return "SFR value"; })) {
        return false;
    }
    for (pdOffsetCalData& record : pdOffsetCalDataList) {
        std::vector<std::string_view> texts = pdOffsetTexts(record);
        if (texts.size() < 2 || texts[1] != camera) continue;
        // An earlier set is dropped.
        texts.resize(4 + record.valueCount);
        texts.insert(texts.end(), values.begin(), values.end());
        const auto head = texts.begin() + 4;
        const auto sfr = head + record.valueCount;
        record.crc = pdOffsetRecordCrc({texts.begin(), head}, {head, sfr}, {sfr, texts.end()});
        storeTexts(texts, &addedText, &record);
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
    const pdOffsetCalData record = pdOffsetCalDataList[index];
    const int computed = pdOffsetCheck(&record) & 0xFFFF;
    if (computed != record.crc) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "pdOffsetCalData crc check error %d,%d",
                            computed, static_cast<int>(record.crc));
        return -1;
    }
    const std::vector<std::string_view> texts = pdOffsetTexts(record);
    const auto sfr = texts.begin() + 4 + record.valueCount;
    for (auto value = texts.begin() + 4; value != sfr; ++value) {
        pdOffset.push_back(toFloat(std::string(*value)));
    }
    for (auto value = sfr; value != texts.end(); ++value) {
        sfrData.push_back(toFloat(std::string(*value)));
    }
    return static_cast<int>(pdOffset.size());
}

std::vector<std::string_view> AfCalibrationData::afTexts(const afCalData& record) const {
    return textsOf(stored(record));
}

std::vector<std::string_view> AfCalibrationData::pdOffsetTexts(const pdOffsetCalData& record) const {
    return textsOf(stored(record));
}
