#pragma once

#include <string>
#include <string_view>

// The persist directory from which the camera service loads calibration files, with its
// trailing '/'. On the host it lies under OPTOQUILL_ROOT.
const std::string& persistDirectory();

// A file in the persist directory.
std::string persistFile(std::string_view name);

// The calibration log that the AE and AWB/LSC stores append their result lines to.
const std::string& calibrationLogPath();

// The factory-form AE file built from the command line's values before it is checked.
const std::string& tempAeFilePath();
