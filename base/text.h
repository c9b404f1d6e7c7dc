#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The text vocabulary every folder shares: lines, separated pieces, hexadecimal and quoted texts
// (the calibration files' field split is in fieldlines.h). Nothing here prints or allocates per
// line; views point into the text they were cut from.

// White space as the C locale classifies it: " \t\n\v\f\r".
inline bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Calls `visit(line)` for each line of `text` as getline gives them: cut at '\n', which no line
// holds; a last line without one is a line too; an empty text has none.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const size_t end = text.find('\n');
        visit(text.substr(0, end));
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

// Every piece of `text` between `separator`s, empty ones included: n separators give n + 1
// pieces.
std::vector<std::string_view> splitAt(std::string_view text, char separator);

// Two upper-case hexadecimal digits per byte, no separators: "0AFF".
std::string hexText(std::string_view bytes);

// The same for up to `count` bytes from `from`; bytes past the end are left out.
std::string hexText(std::string_view bytes, size_t from, size_t count);

// One byte as two upper-case hexadecimal digits ("0A"), and a 16-bit value as "0x1A2B".
std::string hexByte(unsigned byte);
std::string hex4(unsigned value);

// `text` in double quotes, on one line whatever it holds: '"' and '\' are escaped with '\', and
// control characters are written as \n, \r, \t or \xHH.
std::string quoted(std::string_view text);
