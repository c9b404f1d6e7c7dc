#include "inspect/productneeds.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace {

std::string kindNames() {
    std::string names;
    for (std::string_view kind : kNeedKinds)
        names += (names.empty() ? "" : ", ") + std::string(kind);
    return names;
}

}  // namespace

std::string cameraNames(CameraColumn column) {
    std::string names;
    for (const CameraRole& role : kCameraRoles) {
        if (role.shortName.empty() || (role.*column).empty()) continue;
        names += (names.empty() ? "" : ", ") + std::string(role.shortName);
    }
    return names;
}

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
        const auto* known = std::find(std::begin(kNeedKinds), std::end(kNeedKinds), kind);
        if (known == std::end(kNeedKinds)) {
            return what + "no kind " + quoted(kind) + " (" + kindNames() + ")";
        }
        const NeedKind need = static_cast<NeedKind>(known - std::begin(kNeedKinds));
        if (need == NeedKind::awblsc && camera->awbLscFile.empty()) {
            return what + "camera " + std::string(camera->shortName) +
                   " has no AWB/LSC file (only " + cameraNames(&CameraRole::awbLscFile) + ")";
        }
        bool twice = false;
        for (const ProductNeed& earlier : *needs) {
            twice |= earlier.camera == camera && earlier.kind == need;
        }
        if (!twice) needs->push_back({camera, need});
        if (comma == std::string_view::npos) return "";
        kinds.remove_prefix(comma + 1);
    }
}
