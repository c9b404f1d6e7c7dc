#pragma once

#include <string>

// One line of the host's Android log: the priority letter, '/', the tag, ": ", the message
// without its trailing newlines, and a newline. Example: "D/AeCalibrationData: data file size 14".
std::string formatLogLine(int priority, const char* tag, const std::string& message);
