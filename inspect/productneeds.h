#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/cameras.h"

// What a product needs stored for one of its cameras, as a final station states it:
// `--expect w=ae,af`.
// The kinds of calibration a camera can need, in the order the report gives them.
enum class NeedKind { ae, awblsc, af, pdoffset, eeprom };
// Their names, by NeedKind.
inline constexpr std::string_view kNeedKinds[] = {"ae", "awblsc", "af", "pdoffset", "eeprom"};

inline std::string_view needKindName(NeedKind kind) {
    return kNeedKinds[static_cast<size_t>(kind)];
}

struct ProductNeed {
    const CameraRole* camera;  // a row of the camera map
    NeedKind kind;
};

// Adds the needs of one "CAMERA=KIND[,KIND...]" to `needs`, each once. Returns why the text is
// not one (a sentence without its final dot), or empty.
std::string parseProductNeeds(std::string_view text, std::vector<ProductNeed>* needs);

// The short names of the camera map whose `column` is set, "w, f, ...".
std::string cameraNames(CameraColumn column);
