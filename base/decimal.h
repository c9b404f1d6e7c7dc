#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// White space as the C locale classifies it: " \t\n\v\f\r".
inline bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// A decimal number at the start of a text, read as the C library's conversions read one: white
// space (" \t\n\v\f\r"), an optional sign, digits; whatever follows is ignored. The one scanner
// under every decimal reading of a stored or typed value; linear and bounded whatever the text.
struct DecimalPrefix {
    static constexpr unsigned long long kLimit = 1ULL << 63;

    bool found = false;     // at least one digit
    bool negative = false;  // the sign was '-'
    bool beyond = false;    // the magnitude exceeds kLimit (and then stops at it)
    unsigned long long magnitude = 0;

    static DecimalPrefix scan(std::string_view text);
};

// The number as the standard string-to-int conversion reads it; empty when the text does not
// start with a number or the number does not fit an int.
std::optional<int> leadingDecimal(std::string_view text);

// The number as strtoll reads it (saturating at its limits), kept to its low 16 bits; 0 when no
// number starts the text.
uint16_t leadingDecimalLow16(std::string_view text);

// The same as leadingDecimal for a value that must be a number: otherwise the run ends
// abnormally (see abortOnBadNumber).
int leadingDecimalOrAbort(const std::string& text, const std::string& what);

// Ends the run abnormally on a malformed number: standard output is flushed, one line on
// standard error names the bad value, and the process aborts before writing anything more.
[[noreturn]] void abortOnBadNumber(const std::string& what, const std::string& text);
