#include "inspect/utf8text.h"

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

// The length of the well-formed sequence at the start of `text`, or 0.
size_t sequenceLength(std::string_view text) {
    const auto byte = [&text](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return 1;
    size_t length = 0;
    unsigned char low = 0x80;  // the range of the byte after the lead
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) low = 0xA0;   // no overlong form
        if (lead == 0xED) high = 0x9F;  // no surrogate
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) low = 0x90;   // no overlong form
        if (lead == 0xF4) high = 0x8F;  // nothing past U+10FFFF
    } else {
        return 0;
    }
    if (text.size() < length || byte(1) < low || byte(1) > high) return 0;
    for (size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return length;
}

std::string cleaned(std::string_view text, bool controls) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const size_t length = sequenceLength(text);
        const unsigned char first = static_cast<unsigned char>(text[0]);
        if (length == 0 || (controls && (first < 0x20 || first == 0x7F))) {
            out += kReplacement;
            text.remove_prefix(1);
        } else {
            out.append(text.substr(0, length));
            text.remove_prefix(length);
        }
    }
    return out;
}

}  // namespace

std::string validUtf8(std::string_view text) {
    return cleaned(text, false);
}

std::string printableUtf8(std::string_view text) {
    return cleaned(text, true);
}
