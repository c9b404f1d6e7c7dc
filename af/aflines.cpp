#include "af/aflines.h"

#include "base/crc16ccitt.h"
#include "base/parseint.h"
#include "base/text.h"

namespace {

void appendCrcAndEnd(std::string* out, uint16_t crc) {
    char digits[6];
    int at = sizeof digits;
    digits[--at] = '\n';
    do {
        digits[--at] = static_cast<char>('0' + crc % 10);
        crc = static_cast<uint16_t>(crc / 10);
    } while (crc != 0);
    out->append(digits + at, sizeof digits - at);
}

// Clears what the last line's decode set, keeping this line's split.
void startDecode(DecodedLine* decoded) {
    decoded->status = LineStatus::ok;
    decoded->columnCount = static_cast<int>(decoded->fields.size());
    decoded->valueCount = 0;
    decoded->hasSfrData = false;
    decoded->storedCrc = 0;
    decoded->computedCrc = 0;
    decoded->asWritten = false;
}

// Reads the last field as atoi does; a CRC as the writers write it (decimal, at most 65535, no
// sign or leading zero, last on the line) is read directly and makes the line as written.
void readStoredCrc(std::string_view line, DecodedLine* decoded) {
    const std::string_view text = decoded->fields.back();
    const size_t size = text.size();
    size_t digits = 0;
    unsigned value = 0;
    if (size - 1 < 5 && (text[0] != '0' || size == 1)) {
        for (unsigned digit; digits < size && (digit = text[digits] - '0') < 10u; ++digits) {
            value = value * 10 + digit;
        }
    }
    const bool plain = digits != 0 && digits == size && value <= 0xFFFF;
    decoded->storedCrc = static_cast<uint16_t>(plain ? value : atoiOnDevice(text));
    decoded->asWritten =
        plain && decoded->bareCommas && text.data() + size == line.data() + line.size();
}

}  // namespace

void appendStoredLine(std::string* out, std::string_view texts, uint16_t crc) {
    out->append(texts);
    appendCrcAndEnd(out, crc);
}

const char* unstorableTextReason(std::string_view text) {
    if (text.find('\n') != std::string_view::npos) return "holds a line break";
    if (text.find(',') != std::string_view::npos) return "holds a comma";
    if (!text.empty() && (isBlank(text.front()) || isBlank(text.back()))) {
        return "begins or ends with white space";
    }
    return nullptr;
}

DecodedLine decodeAfLine(std::string_view line) {
    DecodedLine decoded;
    decoded.bareCommas = FieldLines::split(line, &decoded.fields);
    decodeSplitAfLine(line, &decoded, true);
    return decoded;
}

DecodedLine decodePdOffsetLine(std::string_view line) {
    DecodedLine decoded;
    decoded.bareCommas = FieldLines::split(line, &decoded.fields);
    decodeSplitPdOffsetLine(line, &decoded, true);
    return decoded;
}

void decodeSplitAfLine(std::string_view line, DecodedLine* decoded, bool sumTexts) {
    startDecode(decoded);
    if (decoded->fields.size() != 7) {
        decoded->status = LineStatus::columnCount;
        return;
    }
    readStoredCrc(line, decoded);
    if (!sumTexts) return;
    for (size_t i = 0; i < 6; ++i) {
        decoded->computedCrc = CRC16CCITT::update(decoded->computedCrc, decoded->fields[i]);
    }
}

void decodeSplitPdOffsetLine(std::string_view line, DecodedLine* decoded, bool sumTexts) {
    startDecode(decoded);
    const FieldLines::Fields& fields = decoded->fields;
    const long long count = static_cast<long long>(fields.size());
    if (count < 6) {
        decoded->status = LineStatus::columnCount;
        return;
    }
    const std::optional<int> n = leadingInt(fields[3]);
    if (!n) {
        decoded->status = LineStatus::lengthNotANumber;
        return;
    }
    // With a negative N the SFR data would overlap the record's head: no writer makes one.
    if (*n < 0 || (count != *n + 5LL && count != *n + 13LL)) {
        decoded->status = LineStatus::columnCount;
        return;
    }
    decoded->valueCount = *n;
    decoded->hasSfrData = count == *n + 13LL;
    readStoredCrc(line, decoded);
    if (!sumTexts) return;
    // As pdOffsetRecordCrc sums them, without copying the fields out.
    uint16_t crc = 0;
    for (long long i = 0; i < 4 + *n; ++i) crc = CRC16CCITT::update(crc, fields[i]);
    for (long long i = 4 + *n; i < count - 1; ++i)
        crc = CRC16CCITT::update(CRC16CCITT::update(crc, fields[i]), ",");
    decoded->computedCrc = crc;
}

uint16_t afRecordCrc(const std::vector<std::string_view>& texts) {
    uint16_t crc = 0;
    for (std::string_view text : texts) crc = CRC16CCITT::update(crc, text);
    return crc;
}

uint16_t pdOffsetRecordCrc(const std::vector<std::string_view>& head,
                           const std::vector<std::string_view>& values,
                           const std::vector<std::string_view>& sfrData) {
    uint16_t crc = 0;
    for (std::string_view text : head) crc = CRC16CCITT::update(crc, text);
    for (std::string_view text : values) crc = CRC16CCITT::update(crc, text);
    for (std::string_view text : sfrData)
        crc = CRC16CCITT::update(CRC16CCITT::update(crc, text), ",");
    return crc;
}
