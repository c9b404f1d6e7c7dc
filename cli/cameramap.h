#pragma once

#include <string>
#include <string_view>

// Camera role id (-n) to the short name that AE and AWB/LSC file and property names are made of,
// by exact comparison; empty for an id the camera map does not hold. Read from the camera table.
std::string_view cameraMap(std::string_view roleId);

// The exposure value of an -e text: "a/b" in 32-bit integer division (0 for a zero
// denominator), otherwise the text as a number; 0 for an empty text.
int exposureValue(const std::string& text);
