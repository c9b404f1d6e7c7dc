#include "common/cameras.h"

namespace {

template <typename Match>
const CameraRole* findRole(Match match) {
    for (const CameraRole& role : kCameraRoles) {
        if (match(role)) return &role;
    }
    return nullptr;
}

}  // namespace

const CameraRole* cameraByRoleId(int roleId) {
    return findRole([roleId](const CameraRole& role) { return role.roleId == roleId; });
}

const CameraRole* cameraByRoleIdText(std::string_view roleIdText) {
    return findRole([roleIdText](const CameraRole& role) {
        return !role.shortName.empty() && role.roleIdText == roleIdText;
    });
}

const CameraRole* cameraByShortName(std::string_view shortName) {
    return findRole([shortName](const CameraRole& role) {
        return !role.shortName.empty() && role.shortName == shortName;
    });
}
