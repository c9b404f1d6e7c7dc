#include "af/calibrationlines.h"

#include <android/log.h>

#include <cstdio>

#include "base/filereader.h"
#include "base/parseint.h"
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

bool CalibrationLines::holds(std::string_view line, size_t index, std::string_view text) {
    // The texts before it are short: a byte at a time beats a library call per comma.
    size_t at = 0;
    for (; index > 0 && at < line.size(); ++at) {
        if (line[at] == ',') --index;
    }
    return index == 0 && line.size() - at > text.size() && line[at + text.size()] == ',' &&
           line.compare(at, text.size(), text) == 0;
}

std::vector<std::string_view> CalibrationLines::texts(const Record& record) const {
    std::vector<std::string_view> texts;
    std::string_view rest = line(record);
    for (size_t comma; (comma = rest.find(',')) != std::string_view::npos;) {
        texts.push_back(rest.substr(0, comma));
        rest.remove_prefix(comma + 1);
    }
    return texts;
}

uint16_t CalibrationLines::crc(const Record& record) const {
    // Every held line ends with its CRC in decimal after the last comma, then "\n".
    const std::string_view text = line(record);
    return static_cast<uint16_t>(leadingInt(text.substr(text.rfind(',') + 1)).value_or(0));
}

void CalibrationLines::put(int index, const std::vector<std::string_view>& texts, uint16_t crc) {
    // The texts may lie in the added text already: joined first, then added.
    std::string joined;
    for (std::string_view text : texts) joined.append(text).push_back(',');
    const size_t start = addedText.size();
    appendStoredLine(&addedText, joined, crc);
    const Record record = {static_cast<uint32_t>(start),
                           static_cast<uint32_t>(addedText.size() - start), true};
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
    for (const Record& record : records) size += record.size;
    if (size > kMaxFileSize) {
        fprintf(stderr,
                "Error:cannot store %s: it would hold %zu bytes, more than the 16 MiB a "
                "calibration file may hold\n",
                file.c_str(), size);
        return false;
    }
    const bool traced = tracesLines();
    const auto produce = [this, traced](SafeFileWriter::Sink& sink) {
        // Lines that follow each other in the held text are written as one span.
        std::string_view span;
        for (const Record& record : records) {
            const std::string_view line = this->line(record);
            if (span.data() + span.size() == line.data()) {
                span = std::string_view(span.data(), span.size() + line.size());
            } else {
                sink.append(span);
                span = line;
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
