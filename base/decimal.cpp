#include "base/decimal.h"

#include <climits>
#include <cstdio>
#include <cstdlib>

DecimalPrefix DecimalPrefix::scan(std::string_view text) {
    DecimalPrefix number;
    size_t i = 0;
    while (i < text.size() && isBlank(text[i])) ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        number.negative = text[i] == '-';
        ++i;
    }
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        number.found = true;
        const unsigned digit = static_cast<unsigned>(text[i] - '0');
        // Past the limit only the digits are walked: no more arithmetic, no overflow.
        if (number.beyond || number.magnitude > (kLimit - digit) / 10) {
            number.beyond = true;
            number.magnitude = kLimit;
        } else {
            number.magnitude = number.magnitude * 10 + digit;
        }
    }
    if (!number.found) number.negative = false;
    return number;
}

std::optional<int> leadingDecimal(std::string_view text) {
    const DecimalPrefix number = DecimalPrefix::scan(text);
    const unsigned long long largest =
        number.negative ? static_cast<unsigned long long>(INT_MAX) + 1 : INT_MAX;
    if (!number.found || number.beyond || number.magnitude > largest) return {};
    const long long value = static_cast<long long>(number.magnitude);
    return static_cast<int>(number.negative ? -value : value);
}

uint16_t leadingDecimalLow16(std::string_view text) {
    const DecimalPrefix number = DecimalPrefix::scan(text);
    // strtoll gives LLONG_MIN or LLONG_MAX past its range: low 16 bits 0x0000 and 0xFFFF.
    if (number.negative) return number.beyond ? 0 : static_cast<uint16_t>(0ULL - number.magnitude);
    if (number.beyond || number.magnitude == DecimalPrefix::kLimit) return 0xFFFF;
    return static_cast<uint16_t>(number.magnitude);
}

int leadingDecimalOrAbort(const std::string& text, const std::string& what) {
    std::optional<int> value = leadingDecimal(text);
    if (!value) abortOnBadNumber(what, text);
    return *value;
}

void abortOnBadNumber(const std::string& what, const std::string& text) {
    fflush(stdout);
    fprintf(stderr, "Error:%s is not a valid number: \"%s\"\n", what.c_str(), text.c_str());
    abort();
}
