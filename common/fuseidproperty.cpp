#include "common/fuseidproperty.h"

#include <cutils/properties.h>

#include "base/parseint.h"
#include "common/badnumber.h"

namespace {

constexpr size_t kSkipped = 4;
constexpr size_t kLengthField = 4;
constexpr size_t kIdStart = kSkipped + kLengthField;

}  // namespace

std::string readProperty(std::string_view name) {
    char value[PROPERTY_VALUE_MAX] = {};
    int length = property_get(std::string(name).c_str(), value, nullptr);
    return length > 0 ? std::string(value, static_cast<size_t>(length)) : std::string();
}

FuseIdProperty splitFuseIdProperty(std::string name, std::string value) {
    FuseIdProperty property;
    property.name = std::move(name);
    property.value = std::move(value);
    if (property.value.size() < kIdStart) return property;
    const std::optional<int> length =
        leadingInt(std::string_view(property.value).substr(kSkipped, kLengthField));
    if (!length) return property;
    property.wellFormed = true;
    property.length = *length;
    property.fuseId = *length < 0 ? property.value.substr(kIdStart)
                                  : property.value.substr(kIdStart, static_cast<size_t>(*length));
    return property;
}

FuseIdProperty readFuseIdProperty(std::initializer_list<std::string_view> names) {
    for (std::string_view name : names) {
        if (name.empty()) continue;
        std::string value = readProperty(name);
        if (!value.empty()) return splitFuseIdProperty(std::string(name), std::move(value));
    }
    return {};
}

FuseIdProperty readSensorFuseIdProperty(const CameraRole& camera) {
    return readFuseIdProperty({camera.fuseIdProperty, camera.roleFuseIdProperty});
}

std::string readFocusProperty(CameraColumn column, int roleId, std::string* property) {
    const CameraRole* own = cameraByRoleId(roleId);
    if (own == nullptr || (own->*column).empty()) return "";
    *property = std::string(own->*column);
    std::string value = readProperty(own->*column);
    if (!value.empty()) return value;
    for (const CameraRole& backup : kCameraRoles) {
        if (backup.backupOf != roleId || (backup.*column).empty()) continue;
        value = readProperty(backup.*column);
        if (!value.empty()) {
            *property = std::string(backup.*column);
            return value;
        }
    }
    return "";
}

FuseIdProperty readFocusFuseIdProperty(int roleId) {
    std::string property;
    std::string value = readFocusProperty(&CameraRole::focusFuseIdProperty, roleId, &property);
    if (value.empty()) return {};
    return splitFuseIdProperty(std::move(property), std::move(value));
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
