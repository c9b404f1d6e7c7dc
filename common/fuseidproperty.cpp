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

FuseIdProperty splitFuseIdProperty(std::string name, std::string value) {
    FuseIdProperty property;
    property.name = std::move(name);
    property.value = std::move(value);
    if (property.value.size() < kIdStart) return property;
    std::optional<int> length = leadingDecimal(property.value.substr(kSkipped, kLengthField));
    if (!length) return property;
    property.wellFormed = true;
    property.length = *length;
    property.fuseId = *length < 0 ? property.value.substr(kIdStart)
                                  : property.value.substr(kIdStart, static_cast<size_t>(*length));
    return property;
}

FuseIdProperty readFuseIdProperty(std::initializer_list<const std::string*> names) {
    for (const std::string* name : names) {
        if (name == nullptr) continue;
        std::string value = readProperty(*name);
        if (!value.empty()) return splitFuseIdProperty(*name, std::move(value));
    }
    return {};
}

std::string decodeFuseIdProperty(const std::string& value, const std::string& property,
                                 int* length) {
    FuseIdProperty parsed = splitFuseIdProperty(property, value);
    if (!parsed.wellFormed) {
        const std::string what = "fuse-ID length of " + property;
        if (value.size() < kIdStart) abortOnBadNumber(what + " (value too short)", value);
        abortOnBadNumber(what, value.substr(kSkipped, kLengthField));
    }
    if (length != nullptr) *length = parsed.length;
    return parsed.fuseId;
}
