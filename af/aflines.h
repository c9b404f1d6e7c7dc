#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/fieldlines.h"

// The line layer of the AF and PD-offset files: splitting, decoding, encoding and summing one
// line. Nothing here reads or writes a file, prints, logs or aborts, so the store and the
// read-only audit decode a line with the same code, and a hostile line costs linear time.
//
// Both files hold comma-separated texts, each followed by ",", and end the line with a CRC-16 in
// decimal and "\n":
//   AF:         use flag, camera id, fuse ID, distance, DAC, temperature, CRC
//   PD-offset:  use flag, camera id, fuse ID, N, N values, [8 SFR texts], CRC

// What a loader does with a line.
enum class LineStatus {
    ok,
    columnCount,       // dropped for its field count (columnCount)
    lengthNotANumber,  // a PD-offset line whose N field is no decimal int: the load must abort
};

// One decoded line of either file.
struct DecodedLine {
    LineStatus status = LineStatus::ok;
    int columnCount = 0;
    FieldLines::Fields fields;  // every field as split, the CRC text last
    int valueCount = 0;         // PD-offset: N
    bool hasSfrData = false;    // PD-offset: 8 SFR texts follow the values
    uint16_t storedCrc = 0;     // the last field as atoi reads it, kept to 16 bits
    uint16_t computedCrc = 0;   // the CRC of the texts, as the writers and the read-back sum them
    bool bareCommas = true;     // the fields lie in the line as they would be written again
    bool asWritten = false;     // the line is what appendStoredLine writes for its texts and CRC
};

// An AF line: ok with exactly 7 fields.
DecodedLine decodeAfLine(std::string_view line);

// A PD-offset line: ok with N+5 or N+13 fields. Fewer than 6 fields, a negative N or another
// count is columnCount (a loader skips fewer than 6 silently); an N that is no int stops there.
DecodedLine decodePdOffsetLine(std::string_view line);

// The same for a line already split into `decoded->fields` and `decoded->bareCommas`, whose room
// is reused from line to line. A loader, which keeps the stored CRC unchecked, passes sumTexts
// false and gets computedCrc 0.
using Decode = void (*)(std::string_view line, DecodedLine* decoded, bool sumTexts);
void decodeSplitAfLine(std::string_view line, DecodedLine* decoded, bool sumTexts);
void decodeSplitPdOffsetLine(std::string_view line, DecodedLine* decoded, bool sumTexts);

// Calls `visit(line, decoded)` for each line of `text` as the loaders see them (cut as
// forEachLine cuts), cut, split and decoded in one pass over the bytes.
template <typename Visit>
void forEachDecodedLine(std::string_view text, Decode decode, bool sumTexts, Visit visit) {
    DecodedLine decoded;
    FieldLines::forEach(text, &decoded.fields,
                        [&](std::string_view line, const FieldLines::Fields&, bool bare) {
                            decoded.bareCommas = bare;
                            decode(line, &decoded, sumTexts);
                            visit(line, decoded);
                        });
}

// Why `text`, stored as one field of a line, would not read back as itself, or null: the loader
// cuts lines at '\n' and fields at commas, dropping the white space on either side of each comma.
const char* unstorableTextReason(std::string_view text);

// The CRC of an AF record: its six texts concatenated.
uint16_t afRecordCrc(const std::vector<std::string_view>& texts);

// The CRC of a PD-offset record: its first four texts and its values concatenated bare, then
// every SFR text followed by "," (stored files rely on exactly this asymmetry).
uint16_t pdOffsetRecordCrc(const std::vector<std::string_view>& head,
                           const std::vector<std::string_view>& values,
                           const std::vector<std::string_view>& sfrData);

// Appends a stored line: `texts`, each already followed by ",", the CRC in decimal, "\n".
void appendStoredLine(std::string* out, std::string_view texts, uint16_t crc);
