#include "cli/cameramap.h"

#include <climits>

#include "base/parseint.h"
#include "common/cameras.h"

std::string_view cameraMap(std::string_view roleId) {
    const CameraRole* role = cameraByRoleIdText(roleId);
    return role == nullptr ? std::string_view() : role->shortName;
}

int exposureValue(const std::string& text) {
    size_t slash = text.find('/');
    const std::string_view whole = text;
    if (slash == std::string::npos) return atoiOnDevice(whole);
    const int numerator = atoiOnDevice(whole.substr(0, slash));
    const int denominator = atoiOnDevice(whole.substr(slash + 1));
    if (denominator == 0) return 0;
    // The one quotient that does not fit: the device's arm64 division gives INT_MIN, where
    // x86-64 would trap.
    if (numerator == INT_MIN && denominator == -1) return INT_MIN;
    return numerator / denominator;
}
