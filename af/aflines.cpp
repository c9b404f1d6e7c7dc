#include "af/aflines.h"

#include <array>
#include <climits>
#include <optional>

namespace {

// White space as the C locale classifies it.
bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// CRC-16/KERMIT, the sum of common/crc16ccitt, carried across pieces so that a record's texts are
// summed where they lie instead of being copied together first.
constexpr std::array<uint16_t, 256> makeCrcTable() {
    std::array<uint16_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned crc = i;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0x8408 : crc >> 1;
        table[i] = static_cast<uint16_t>(crc);
    }
    return table;
}

constexpr std::array<uint16_t, 256> kCrcTable = makeCrcTable();

uint16_t crcAdd(uint16_t crc, std::string_view text) {
    for (char c : text) {
        crc = static_cast<uint16_t>((crc >> 8) ^
                                    kCrcTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF]);
    }
    return crc;
}

// Leading blanks and an optional sign, as the C library's conversions skip them; `negative` says
// whether the sign was "-". Gives the offset of the first digit (or whatever follows).
size_t skipBlanksAndSign(std::string_view text, bool* negative) {
    size_t i = 0;
    while (i < text.size() && isBlank(text[i])) ++i;
    *negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        *negative = text[i] == '-';
        ++i;
    }
    return i;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// A stored CRC column as the loader has always read it: strtoll (saturating), kept to 16 bits;
// 0 when no number starts the text.
uint16_t storedCrcOf(std::string_view text) {
    bool negative;
    size_t i = skipBlanksAndSign(text, &negative);
    const unsigned long long limit = 1ULL << 63;
    unsigned long long magnitude = 0;
    bool beyond = false;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        const unsigned digit = static_cast<unsigned>(text[i] - '0');
        if (beyond || magnitude > (limit - digit) / 10) {
            beyond = true;
        } else {
            magnitude = magnitude * 10 + digit;
        }
    }
    if (negative) return beyond ? 0 : static_cast<uint16_t>(0ULL - magnitude);
    return (beyond || magnitude == limit) ? 0xFFFF : static_cast<uint16_t>(magnitude);
}

// A decimal int as the standard string-to-int conversion reads it (blanks, sign, digits, any
// tail); empty when no number starts the text or it does not fit an int.
std::optional<int> leadingInt(std::string_view text) {
    bool negative;
    size_t i = skipBlanksAndSign(text, &negative);
    if (i == text.size() || !isDigit(text[i])) return {};
    long long magnitude = 0;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        magnitude = magnitude * 10 + (text[i] - '0');
        if (magnitude > static_cast<long long>(INT_MAX) + 1) return {};
    }
    const long long value = negative ? -magnitude : magnitude;
    if (value > INT_MAX) return {};
    return static_cast<int>(value);
}

void appendTexts(std::string* out, const std::vector<std::string_view>& texts) {
    for (std::string_view text : texts) {
        out->append(text);
        out->push_back(',');
    }
}

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

}  // namespace

std::vector<std::string_view> splitFields(std::string_view line) {
    std::vector<std::string_view> fields;
    size_t start = 0;
    bool separated = false;
    for (;;) {
        const size_t comma = line.find(',', start);
        if (comma == std::string_view::npos) {
            if (!separated || start < line.size()) fields.push_back(line.substr(start));
            return fields;
        }
        // The separator takes the blanks before the comma (back to the field's start) and all
        // the blanks after it.
        size_t end = comma;
        while (end > start && isBlank(line[end - 1])) --end;
        fields.push_back(line.substr(start, end - start));
        start = comma + 1;
        while (start < line.size() && isBlank(line[start])) ++start;
        separated = true;
    }
}

DecodedLine decodeAfLine(std::string_view line) {
    DecodedLine decoded;
    decoded.fields = splitFields(line);
    decoded.columnCount = static_cast<int>(decoded.fields.size());
    if (decoded.fields.size() != 7) {
        decoded.status = LineStatus::columnCount;
        return decoded;
    }
    decoded.storedCrc = storedCrcOf(decoded.fields[6]);
    decoded.computedCrc =
        afRecordCrc(std::vector<std::string_view>(decoded.fields.begin(), decoded.fields.end() - 1));
    return decoded;
}

DecodedLine decodePdOffsetLine(std::string_view line) {
    DecodedLine decoded;
    decoded.fields = splitFields(line);
    const std::vector<std::string_view>& fields = decoded.fields;
    const long long count = static_cast<long long>(fields.size());
    decoded.columnCount = static_cast<int>(count);
    if (count < 6) {
        decoded.status = LineStatus::columnCount;
        return decoded;
    }
    const std::optional<int> n = leadingInt(fields[3]);
    if (!n) {
        decoded.status = LineStatus::lengthNotANumber;
        return decoded;
    }
    // With a negative N the SFR data would overlap the record's head: no writer makes one.
    if (*n < 0 || (count != *n + 5LL && count != *n + 13LL)) {
        decoded.status = LineStatus::columnCount;
        return decoded;
    }
    decoded.valueCount = *n;
    decoded.hasSfrData = count == *n + 13LL;
    decoded.storedCrc = storedCrcOf(fields.back());
    auto values = fields.begin() + 4;
    auto sfrEnd = fields.end() - 1;
    decoded.computedCrc = pdOffsetRecordCrc(
        std::vector<std::string_view>(fields.begin(), values),
        std::vector<std::string_view>(values, values + *n),
        std::vector<std::string_view>(values + *n, decoded.hasSfrData ? sfrEnd : values + *n));
    return decoded;
}

uint16_t afRecordCrc(const std::vector<std::string_view>& texts) {
    uint16_t crc = 0;
    for (std::string_view text : texts) crc = crcAdd(crc, text);
    return crc;
}

uint16_t pdOffsetRecordCrc(const std::vector<std::string_view>& head,
                           const std::vector<std::string_view>& values,
                           const std::vector<std::string_view>& sfrData) {
    uint16_t crc = 0;
    for (std::string_view text : head) crc = crcAdd(crc, text);
    for (std::string_view text : values) crc = crcAdd(crc, text);
    for (std::string_view text : sfrData) crc = crcAdd(crcAdd(crc, text), ",");
    return crc;
}

void appendAfLine(std::string* out, const std::vector<std::string_view>& texts, uint16_t crc) {
    appendTexts(out, texts);
    appendCrcAndEnd(out, crc);
}

void appendPdOffsetLine(std::string* out, const std::vector<std::string_view>& head,
                        const std::vector<std::string_view>& values,
                        const std::vector<std::string_view>& sfrData, uint16_t crc) {
    appendTexts(out, head);
    appendTexts(out, values);
    appendTexts(out, sfrData);
    appendCrcAndEnd(out, crc);
}
