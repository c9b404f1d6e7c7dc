#pragma once

#include <string>

// Appends "camera:<camera>,<kind>,result:<1|0>" and a newline to the calibration log (cut to
// 59 characters), then gives the log its attributes, also when it could not be opened.
void appendCalibrationLog(const std::string& camera, const char* kind, bool ok);
