#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "af/aflines.h"

// One of the two focus calibration files as a store holds it: the bytes as loaded, the lines
// changed or added since, and per record where its line lies. Loading, finding, changing and
// rewriting are the same for both files; what a line means is the caller's (its decoder and what
// it logs of each line).
class CalibrationLines {
  public:
    // A record is its line exactly as it will be written: its texts, each followed by ",", its
    // CRC in decimal and "\n". A loaded line already written so is not copied at all; any other
    // is written once into the added text. Eight bytes, as a large file holds many.
    struct Record {
        uint32_t start;  // of the line in the loaded or the added text
        uint32_t size : 31;
        uint32_t added : 1;  // in the text added this run, not the file's
    };

    explicit CalibrationLines(const char* tag) : tag(tag) {}

    // Adds the records of the file at `file` to those held, each line that `keep(line, decoded)`
    // takes (it logs, and may stop the run). A link at the name counts as no file. Returns whether
    // a file was read; when something else stands there that cannot be read, it is logged and
    // kept, and flush() never replaces it.
    template <typename Keep>
    bool load(const std::string& file, Decode decode, Keep keep) {
        std::string_view text;
        if (!appendFile(file, &text)) return false;
        // A line that makes a record holds seven bytes and its "\n" at least: room for all of
        // them at once, so that the records are never copied while they grow (the pages never
        // written to cost no memory).
        records.reserve(records.size() + text.size() / 8 + 1);
        forEachDecodedLine(text, decode, false,
                           [&](std::string_view line, const DecodedLine& decoded) {
                               if (keep(line, decoded)) keepFields(line, decoded);
                           });
        return true;
    }

    // The first record whose line satisfies `match(line)`, or -1.
    template <typename Match>
    int find(Match match) const {
        for (size_t i = 0; i < records.size(); ++i) {
            if (match(line(records[i]))) return static_cast<int>(i);
        }
        return -1;
    }

    // Whether the `index`-th text of a record's line is `text` (the CRC is no text), without
    // splitting the others out.
    static bool holds(std::string_view line, size_t index, std::string_view text);

    std::string_view line(const Record& record) const {
        return std::string_view((record.added ? addedText : loadedText).data() + record.start,
                                record.size);
    }
    std::vector<std::string_view> texts(const Record& record) const;
    uint16_t crc(const Record& record) const;

    // Gives record `index` (a new one at the end when negative) these texts and CRC.
    void put(int index, const std::vector<std::string_view>& texts, uint16_t crc);

    // Whether the log takes the info line traced per record loaded or written. When it does not
    // (a device whose log.tag property says so, a host run without a log), the line is not
    // formatted at all: in a file of 10,000 records that would cost more than the load itself.
    bool tracesLines() const;

    // Rewrites the whole file from the records, logging each line; false (and the old file kept)
    // when it could not be written, would not fit the reader's cap, or could not be loaded.
    bool flush(const std::string& file) const;

    std::vector<Record> records;

  private:
    bool appendFile(const std::string& file, std::string_view* added);
    // The line as it will be written: the loaded one where it is so already, so that a file this
    // store wrote is taken without a copy; otherwise its fields joined again and its CRC as the
    // writers write it, in the added text. A last line without its "\n" is completed so.
    void keepFields(std::string_view line, const DecodedLine& decoded) {
        if (decoded.asWritten && line.data() + line.size() < loadedEnd) {
            records.push_back({static_cast<uint32_t>(line.data() - loadedText.data()),
                               static_cast<uint32_t>(line.size() + 1), false});
        } else {
            std::vector<std::string_view> texts(decoded.fields.begin(), decoded.fields.end());
            texts.pop_back();
            put(-1, texts, decoded.storedCrc);
        }
    }

    const char* tag;
    bool loaded = true;  // false once something that could not be loaded stood at the name
    std::string loadedText;
    const char* loadedEnd = nullptr;  // of the loaded text
    std::string addedText;
};
