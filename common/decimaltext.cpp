#include "common/decimaltext.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

std::optional<int> leadingDecimal(const std::string& text) {
    const char* start = text.c_str();
    char* end = nullptr;
    errno = 0;
    long value = strtol(start, &end, 10);
    if (end == start || errno == ERANGE || value < INT_MIN || value > INT_MAX) return {};
    return static_cast<int>(value);
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
