#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

void appendHex(std::string* out, unsigned char byte) {
    out->push_back(kDigits[byte >> 4]);
    out->push_back(kDigits[byte & 0x0F]);
}

}  // namespace

namespace {

constexpr uint64_t kOnes = 0x0101010101010101ULL;
constexpr uint64_t kLow7 = 0x7F7F7F7F7F7F7F7FULL;
constexpr uint64_t kHighs = 0x8080808080808080ULL;

// Eight bytes of `text` from `at` as one word, the first byte lowest; past the end, bytes of 'x'
// (neither a comma nor a blank).
uint64_t wordAt(const char* text, size_t at, size_t size) {
    uint64_t word = kOnes * 'x';
    if (size - at >= 8) {
        memcpy(&word, text + at, 8);
        return word;
    }
    // Byte by byte: a copy of a length known only now would cost a library call.
    for (size_t i = 0; i < size - at; ++i) {
        const unsigned shift = 8 * static_cast<unsigned>(i);
        word = (word & ~(uint64_t{0xFF} << shift)) |
               uint64_t{static_cast<unsigned char>(text[at + i])} << shift;
    }
    return word;
}

// 0x80 in each byte of `word` that is `byte`, 0 in every other.
uint64_t bytesEqual(uint64_t word, unsigned char byte) {
    const uint64_t x = word ^ (kOnes * byte);
    return ~(((x & kLow7) + kLow7) | x | kLow7);
}

// Whether a byte of `word` is below 0x21, as every blank is.
bool holdsLowByte(uint64_t word) {
    return ((word - kOnes * 0x21) & ~word & kHighs) != 0;
}

// The split of a line that holds no byte below 0x21, as the stores write them: every comma is a
// whole separator. Eight bytes at a time; false, with `fields` left to clear, at any such byte.
bool splitPlainFields(std::string_view line, std::vector<std::string_view>* fields) {
    if constexpr (__BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__) return false;
    const char* const text = line.data();
    const size_t size = line.size();
    size_t start = 0;
    for (size_t at = 0; at < size; at += 8) {
        const uint64_t word = wordAt(text, at, size);
        if (holdsLowByte(word)) return false;
        for (uint64_t commas = bytesEqual(word, ','); commas != 0; commas &= commas - 1) {
            const size_t comma = at + static_cast<size_t>(__builtin_ctzll(commas) >> 3);
            fields->emplace_back(text + start, comma - start);
            start = comma + 1;
        }
    }
    if (start < size || fields->empty()) fields->emplace_back(text + start, size - start);
    return true;
}

}  // namespace

bool splitFields(std::string_view line, std::vector<std::string_view>* fields) {
    fields->clear();
    if (splitPlainFields(line, fields)) return true;
    fields->clear();
    const char* text = line.data();
    const size_t size = line.size();
    size_t start = 0;
    bool separated = false;
    bool bare = true;
    for (size_t i = 0; i < size; ++i) {
        if (text[i] != ',') continue;
        // The separator takes the blanks before the comma (back to the field's start) and all
        // the blanks after it.
        size_t end = i;
        while (end > start && isBlank(text[end - 1])) --end;
        fields->push_back(line.substr(start, end - start));
        start = i + 1;
        while (start < size && isBlank(text[start])) ++start;
        bare = bare && end == i && start == i + 1;
        i = start - 1;
        separated = true;
    }
    if (!separated || start < size) fields->push_back(line.substr(start));
    return bare;
}

std::vector<std::string_view> splitAt(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const size_t at = text.find(separator);
        pieces.push_back(text.substr(0, at));
        if (at == std::string_view::npos) return pieces;
        text.remove_prefix(at + 1);
    }
}

std::string hexText(std::string_view bytes) {
    return hexText(bytes, 0, bytes.size());
}

std::string hexText(std::string_view bytes, size_t from, size_t count) {
    const std::string_view part = bytes.substr(std::min(from, bytes.size()), count);
    std::string text;
    text.reserve(2 * part.size());
    for (char byte : part) appendHex(&text, static_cast<unsigned char>(byte));
    return text;
}

std::string hexByte(unsigned byte) {
    std::string text;
    appendHex(&text, static_cast<unsigned char>(byte));
    return text;
}

std::string hex4(unsigned value) {
    std::string text = "0x";
    appendHex(&text, static_cast<unsigned char>(value >> 8));
    appendHex(&text, static_cast<unsigned char>(value));
    return text;
}

std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else if (byte < 0x20 || byte == 0x7F) {
            out += "\\x";
            appendHex(&out, byte);
        } else {
            out += c;
        }
    }
    return out + "\"";
}
