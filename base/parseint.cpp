#include "base/parseint.h"

#include "base/text.h"

namespace {

// The number at the start of a text, its magnitude saturated at 2^63 (one past LLONG_MAX).
struct Scanned {
    static constexpr unsigned long long kLimit = 1ULL << 63;

    bool found = false;  // at least one digit
    bool negative = false;
    bool beyond = false;               // the magnitude exceeds kLimit, and stopped there
    unsigned long long magnitude = 0;  // at most kLimit
    size_t end = 0;                    // where the digits end
};

int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 99;
}

Scanned scan(std::string_view text, int base) {
    Scanned number;
    // Most numbers are a few plain decimal digits: fewer than 19 cannot pass the limit.
    if (base == 10) {
        size_t i = 0;
        unsigned long long magnitude = 0;
        for (unsigned digit; i < text.size() && i < 18 && (digit = text[i] - '0') < 10u; ++i) {
            magnitude = magnitude * 10 + digit;
        }
        if (i > 0 && (i == text.size() || static_cast<unsigned>(text[i] - '0') >= 10u)) {
            number.found = true;
            number.magnitude = magnitude;
            number.end = i;
            return number;
        }
    }
    size_t i = 0;
    while (i < text.size() && isBlank(text[i])) ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) number.negative = text[i++] == '-';
    const bool hexPrefix = base == 16 && i + 2 < text.size() && text[i] == '0' &&
                           (text[i + 1] == 'x' || text[i + 1] == 'X') &&
                           digitValue(text[i + 2]) < 16;
    if (hexPrefix) i += 2;
    const unsigned long long radix = static_cast<unsigned long long>(base);
    // magnitude * radix + value passes kLimit exactly when one of these says so.
    const unsigned long long cutoff = Scanned::kLimit / radix;
    const unsigned long long cutoffDigit = Scanned::kLimit % radix;
    for (; i < text.size(); ++i) {
        const int digit = digitValue(text[i]);
        if (digit >= base) break;
        number.found = true;
        const unsigned long long value = static_cast<unsigned long long>(digit);
        // Past the limit only the digits are walked: no more arithmetic, no overflow.
        if (number.beyond || number.magnitude > cutoff ||
            (number.magnitude == cutoff && value > cutoffDigit)) {
            number.beyond = true;
            number.magnitude = Scanned::kLimit;
        } else {
            number.magnitude = number.magnitude * radix + value;
        }
    }
    number.end = i;
    return number;
}

}  // namespace

std::optional<long long> parseInt(std::string_view text, long long min, long long max, Rest rest,
                                  int base) {
    const Scanned number = scan(text, base);
    if (!number.found || (rest == Rest::refuse && number.end != text.size())) return {};
    if (number.beyond) return {};
    if (number.negative) {
        // -2^63 is the one magnitude that only a negative number can have.
        if (number.magnitude == Scanned::kLimit) {
            return min == INT64_MIN ? std::optional<long long>(min) : std::nullopt;
        }
        const long long value = -static_cast<long long>(number.magnitude);
        return value < min ? std::nullopt : std::optional(value);
    }
    if (number.magnitude == Scanned::kLimit) return {};
    const long long value = static_cast<long long>(number.magnitude);
    return value > max ? std::nullopt : std::optional(value);
}

int atoiOnDevice(std::string_view text) {
    const Scanned number = scan(text, 10);
    // strtol gives LONG_MIN or LONG_MAX past its range; the int keeps the low 32 bits.
    unsigned long long value = number.magnitude;
    if (!number.negative && value == Scanned::kLimit) value = Scanned::kLimit - 1;
    if (number.negative) value = 0ULL - value;
    return static_cast<int>(static_cast<uint32_t>(value));
}
