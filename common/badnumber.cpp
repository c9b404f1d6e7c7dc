#include "common/badnumber.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "base/parseint.h"
#include "base/text.h"

void abortOnBadNumber(const std::string& what, std::string_view text) {
    fflush(stdout);
    fprintf(stderr, "Error:%s is not a valid number: %s\n", what.c_str(), quoted(text).c_str());
    abort();
}

int leadingIntOrAbort(std::string_view text, const std::string& what) {
    const std::optional<int> value = leadingInt(text);
    if (!value) abortOnBadNumber(what, text);
    return *value;
}
