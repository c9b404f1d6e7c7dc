#pragma once

#include <string>

// Appends "camera:<camera>,<kind>,result:<1|0>" and a newline to the calibration log (cut to
// 59 characters), then gives the log its attributes, also when it could not be opened. The line
// is on disk when this returns, and so is the log's name when this append created it; an append
// that fails or falls short is cut back, so that the log holds whole lines only, and said on
// standard error.
void appendCalibrationLog(const std::string& camera, const char* kind, bool ok);
