#include "af/calibrationlines.h"

#include <android/log.h>

#include <cstdio>

#include "base/filereader.h"
#include "common/fileattribute.h"
#include "common/recordfile.h"

bool CalibrationLines::appendFile(const std::string& file, std::string_view* added) {
    FileRead read = loadRecordFile(file);
    if (read.status == FileRead::Status::absent || read.status == FileRead::Status::link) {
        return false;
    }
    if (!read.ok()) {
        __android_log_print(ANDROID_LOG_ERROR, tag, "cannot load %s: %s", file.c_str(),
                            read.reason().c_str());
        loaded = false;
        return false;
    }
    // Records address the text with 32-bit offsets: the read cap keeps it far below 4 GiB.
    const size_t from = loadedText.size();
    if (loadedText.empty()) {
        loadedText = std::move(read.bytes);
    } else {
        loadedText.append(read.bytes);
    }
    *added = std::string_view(loadedText).substr(from);
    return true;
}

// The fields before the CRC as they will be written: the line itself when they are separated by
// bare commas, so that a file this store wrote is taken without a copy; otherwise the fields
// joined again, in the added text.
void CalibrationLines::keepFields(const DecodedLine& line) {
    const size_t count = line.fields.size() - 1;
    const char* begin = line.fields.front().data();
    Record record = {0, 0, static_cast<uint32_t>(line.valueCount), line.storedCrc, false};
    if (line.bareCommas) {
        record.start = static_cast<uint32_t>(begin - loadedText.data());
        record.size = static_cast<uint32_t>(line.fields[count].data() - begin);
    } else {
        record.added = true;
        record.start = static_cast<uint32_t>(addedText.size());
        for (size_t i = 0; i < count; ++i) addedText.append(line.fields[i]).push_back(',');
        record.size = static_cast<uint32_t>(addedText.size() - record.start);
    }
    records.push_back(record);
}

size_t CalibrationLines::decimalDigits(uint16_t value) {
    return value >= 10000 ? 5 : value >= 1000 ? 4 : value >= 100 ? 3 : value >= 10 ? 2 : 1;
}

std::string_view CalibrationLines::textOf(std::string_view stored, size_t index) {
    for (; index > 0; --index) {
        const size_t comma = stored.find(',');
        if (comma == std::string_view::npos) return {};
        stored.remove_prefix(comma + 1);
    }
    return stored.substr(0, stored.find(','));
}

std::string_view CalibrationLines::stored(const Record& record) const {
    return std::string_view(record.added ? addedText : loadedText).substr(record.start, record.size);
}

std::vector<std::string_view> CalibrationLines::texts(const Record& record) const {
    std::vector<std::string_view> texts;
    std::string_view rest = stored(record);
    for (size_t comma; (comma = rest.find(',')) != std::string_view::npos;) {
        texts.push_back(rest.substr(0, comma));
        rest.remove_prefix(comma + 1);
    }
    return texts;
}

void CalibrationLines::put(int index, const std::vector<std::string_view>& texts, uint16_t crc,
                           uint32_t valueCount) {
    // The texts may lie in the added text already: joined first, then added.
    std::string joined;
    for (std::string_view text : texts) joined.append(text).push_back(',');
    const Record record = {static_cast<uint32_t>(addedText.size()),
                           static_cast<uint32_t>(joined.size()), valueCount, crc, true};
    addedText.append(joined);
    if (index >= 0) {
        records[static_cast<size_t>(index)] = record;
    } else {
        records.push_back(record);
    }
}

bool CalibrationLines::flush(const std::string& file) const {
    if (!loaded) {
        __android_log_print(ANDROID_LOG_ERROR, tag, "flush:kept %s, which could not be loaded\n",
                            file.c_str());
        return false;
    }
    // The next run's reader would refuse a file past its cap, and every later store with it.
    size_t size = 0;
    for (const Record& record : records) size += record.size + decimalDigits(record.crc) + 1;
    if (size > kMaxFileSize) {
        fprintf(stderr,
                "Error:cannot store %s: it would hold %zu bytes, more than the 16 MiB a "
                "calibration file may hold\n",
                file.c_str(), size);
        return false;
    }
    const auto produce = [this](SafeFileWriter::Sink& sink) {
        std::string line;
        for (const Record& record : records) {
            line.clear();
            appendStoredLine(&line, stored(record), record.crc);
            __android_log_print(ANDROID_LOG_INFO, tag, "write record: %.*s",
                                static_cast<int>(line.size()), line.data());
            sink.append(line);
        }
    };
    const WriteResult result = storeRecordFile(file, produce, tag, "flush:", 0);
    if (!result.stored()) return false;
    reportFileAttribute(file.c_str(), 0, result.ownerError);
    return true;
}
