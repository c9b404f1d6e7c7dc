#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Numbers in texts, read without undefined behaviour whatever the text holds, and never fatally:
// what a malformed number means is the caller's to decide.

// Whether text may follow the digits.
enum class Rest {
    refuse,  // the whole text is the number, as android-base's ParseInt takes it
    ignore,  // a number starts the text, as the standard string-to-int conversion reads one
};

// An integer in `base` (10 or 16): white space (" \t\n\v\f\r"), an optional sign, digits (for
// base 16 after an optional "0x"). Empty when no digit comes, when the value lies outside
// [min, max], or when something follows the digits and `rest` refuses it. Linear in the text.
std::optional<long long> parseInt(std::string_view text, long long min, long long max,
                                  Rest rest = Rest::refuse, int base = 10);

// A leading decimal int as std::stoi reads it: empty where std::stoi would throw.
inline std::optional<int> leadingInt(std::string_view text) {
    // Nothing but a few digits, as the writers write a count, is read here without a call: a
    // PD-offset file holds one on every line.
    if (!text.empty() && text.size() <= 9) {
        int value = 0;
        size_t at = 0;
        for (unsigned digit; at < text.size() && (digit = text[at] - '0') < 10u; ++at) {
            value = value * 10 + static_cast<int>(digit);
        }
        if (at == text.size()) return value;
    }
    const std::optional<long long> value = parseInt(text, INT32_MIN, INT32_MAX, Rest::ignore);
    if (!value) return {};
    return static_cast<int>(*value);
}

// A typed number as the C library's atoi reads it on the device: strtol's 64-bit value, which
// saturates at its limits, kept to its low 32 bits; 0 when no number starts the text. Defined for
// every text, so an option out of range reads as it would on the device.
int atoiOnDevice(std::string_view text);
