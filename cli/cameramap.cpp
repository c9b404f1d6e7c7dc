#include "cli/cameramap.h"

#include <climits>
#include <cstdlib>

const std::map<std::string, std::string> cameraMap = {
    {"0", "w"},    {"1", "f"},    {"20", "t"}, {"21", "u"},    {"22", "m"},
    {"23", "t4x"}, {"24", "m2x"}, {"25", "d"}, {"40", "faux"},
};

int exposureValue(const std::string& text) {
    size_t slash = text.find('/');
    if (slash == std::string::npos) return atoi(text.c_str());
    int numerator = atoi(text.substr(0, slash).c_str());
    int denominator = atoi(text.substr(slash + 1).c_str());
    if (denominator == 0) return 0;
    // The one quotient that does not fit: the device's arm64 division gives INT_MIN, where
    // x86-64 would trap.
    if (numerator == INT_MIN && denominator == -1) return INT_MIN;
    return numerator / denominator;
}
