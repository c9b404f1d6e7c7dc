#pragma once

#include <map>
#include <string>

// Camera role id (-n) to the short name that AE and AWB/LSC file and property names are made of.
extern const std::map<std::string, std::string> cameraMap;

// The exposure value of an -e text: "a/b" in 32-bit integer division (0 for a zero
// denominator), otherwise the text as a number; 0 for an empty text.
int exposureValue(const std::string& text);
