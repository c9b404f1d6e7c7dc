#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/cameras.h"

// What a product needs stored for one of its cameras, as a final station states it:
// `--expect w=ae,af`.
struct ProductNeed {
    const CameraRole* camera = nullptr;  // a row of the camera map
    std::string_view kind;               // one of kNeedKinds
};

// The kinds of calibration a camera can need, in the order the report gives them.
inline constexpr std::string_view kNeedKinds[] = {"ae", "awblsc", "af", "pdoffset", "eeprom"};

// Adds the needs of one "CAMERA=KIND[,KIND...]" to `needs`, each once. Returns why the text is
// not one (a sentence without its final dot), or empty.
std::string parseProductNeeds(std::string_view text, std::vector<ProductNeed>* needs);
