#include "common/fuseidproperty.h"

#include <cutils/properties.h>

#include "common/decimaltext.h"

namespace {

constexpr size_t kSkipped = 4;
constexpr size_t kLengthField = 4;
constexpr size_t kIdStart = kSkipped + kLengthField;

}  // namespace

std::string readProperty(const std::string& name) {
    char value[PROPERTY_VALUE_MAX] = {};
    int length = property_get(name.c_str(), value, nullptr);
    return length > 0 ? std::string(value, static_cast<size_t>(length)) : std::string();
}

std::string decodeFuseIdProperty(const std::string& value, const std::string& property,
                                 int* length) {
    const std::string what = "fuse-ID length of " + property;
    if (value.size() < kIdStart) abortOnBadNumber(what + " (value too short)", value);
    int idLength = leadingDecimalOrAbort(value.substr(kSkipped, kLengthField), what);
    if (length != nullptr) *length = idLength;
    if (idLength < 0) return value.substr(kIdStart);
    return value.substr(kIdStart, static_cast<size_t>(idLength));
}
