#include "inspect/productneeds.h"

namespace {

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

// The short names of the camera map whose `column` is set, "w, f, ...".
std::string cameraNames(CameraColumn column) {
    std::string names;
    for (const CameraRole& role : kCameraRoles) {
        if (role.shortName.empty() || (role.*column).empty()) continue;
        names += (names.empty() ? "" : ", ") + std::string(role.shortName);
    }
    return names;
}

std::string kindNames() {
    std::string names;
    for (std::string_view kind : kNeedKinds)
        names += (names.empty() ? "" : ", ") + std::string(kind);
    return names;
}

}  // namespace

std::string parseProductNeeds(std::string_view text, std::vector<ProductNeed>* needs) {
    const std::string what = "--expect " + quoted(text) + ": ";
    const size_t equals = text.find('=');
    if (equals == std::string_view::npos) return what + "give CAMERA=KIND[,KIND...]";
    const std::string_view name = text.substr(0, equals);
    const CameraRole* camera = cameraByShortName(name);
    if (camera == nullptr) {
        return what + "no camera " + quoted(name) + " (" + cameraNames(&CameraRole::shortName) + ")";
    }
    std::string_view kinds = text.substr(equals + 1);
    for (;;) {
        const size_t comma = kinds.find(',');
        const std::string_view kind = kinds.substr(0, comma);
        const std::string_view* known = nullptr;
        for (const std::string_view& candidate : kNeedKinds) {
            if (candidate == kind) known = &candidate;
        }
        if (known == nullptr) return what + "no kind " + quoted(kind) + " (" + kindNames() + ")";
        if (*known == "awblsc" && camera->awbLscFile.empty()) {
            return what + "camera " + std::string(camera->shortName) +
                   " has no AWB/LSC file (only " + cameraNames(&CameraRole::awbLscFile) + ")";
        }
        bool twice = false;
        for (const ProductNeed& need : *needs) {
            twice |= need.camera == camera && need.kind == *known;
        }
        if (!twice) needs->push_back({camera, *known});
        if (comma == std::string_view::npos) return "";
        kinds.remove_prefix(comma + 1);
    }
}
