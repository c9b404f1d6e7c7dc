#include "base/text.h"

#include <algorithm>

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

void appendHex(std::string* out, unsigned char byte) {
    out->push_back(kDigits[byte >> 4]);
    out->push_back(kDigits[byte & 0x0F]);
}

}  // namespace

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
