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
    loadedEnd = loadedText.data() + loadedText.size();
    *added = std::string_view(loadedText).substr(from);
    return true;
}

void CalibrationLines::keepJoined(const DecodedLine& decoded) {
    const size_t count = decoded.fields.size() - 1;
    Record record = {static_cast<uint32_t>(addedText.size()),
                     0,
                     static_cast<uint32_t>(decoded.valueCount),
                     decoded.storedCrc,
                     true,
                     false};
    for (size_t i = 0; i < count; ++i) addedText.append(decoded.fields[i]).push_back(',');
    record.size = static_cast<uint32_t>(addedText.size() - record.start);
    records.push_back(record);
}

size_t CalibrationLines::decimalDigits(uint16_t value) {
    return value >= 10000 ? 5 : value >= 1000 ? 4 : value >= 100 ? 3 : value >= 10 ? 2 : 1;
}

bool CalibrationLines::holds(std::string_view stored, size_t index, std::string_view text) {
    // The texts before it are short: a byte at a time beats a library call per comma.
    size_t at = 0;
    for (; index > 0 && at < stored.size(); ++at) {
        if (stored[at] == ',') --index;
    }
    return index == 0 && stored.size() - at > text.size() && stored[at + text.size()] == ',' &&
           stored.compare(at, text.size(), text) == 0;
}

std::string_view CalibrationLines::stored(const Record& record) const {
    return std::string_view((record.added ? addedText : loadedText).data() + record.start,
                            record.size);
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
                           static_cast<uint32_t>(joined.size()),
                           valueCount,
                           crc,
                           true,
                           false};
    addedText.append(joined);
    if (index >= 0) {
        records[static_cast<size_t>(index)] = record;
    } else {
        records.push_back(record);
    }
}

bool CalibrationLines::tracesLines() const {
    return __android_log_is_loggable(ANDROID_LOG_INFO, tag, ANDROID_LOG_VERBOSE) != 0;
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
    const bool traced = tracesLines();
    const auto produce = [this, traced](SafeFileWriter::Sink& sink) {
        // Verbatim lines that follow each other in the loaded text are written as one span.
        std::string_view span;
        std::string rebuilt;
        for (const Record& record : records) {
            std::string_view line;
            if (record.verbatim) {
                line = std::string_view(loadedText.data() + record.start,
                                        record.size + decimalDigits(record.crc) + 1);
                if (span.data() + span.size() == line.data()) {
                    span = std::string_view(span.data(), span.size() + line.size());
                } else {
                    sink.append(span);
                    span = line;
                }
            } else {
                sink.append(span);
                span = {};
                rebuilt.clear();
                appendStoredLine(&rebuilt, stored(record), record.crc);
                sink.append(rebuilt);
                line = rebuilt;
            }
            if (traced) {
                __android_log_print(ANDROID_LOG_INFO, tag, "write record: %.*s",
                                    static_cast<int>(line.size()), line.data());
            }
        }
        sink.append(span);
    };
    const WriteResult result = storeRecordFile(file, produce, tag, "flush:", 0);
    if (!result.stored()) return false;
    reportFileAttribute(file.c_str(), 0, result.ownerError);
    return true;
}
