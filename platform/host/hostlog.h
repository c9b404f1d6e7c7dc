#pragma once

#include <string>

// One line of the host's Android log: the priority letter, '/', the tag, ": ", the message
// without its trailing newlines, and a newline. Example: "D/AeCalibrationData: data file size 14".
std::string formatLogLine(int priority, const char* tag, const std::string& message);

// The descriptor of OPTOQUILL_LOG, opened on first use in append mode; -1 when it is unset. A
// log that is not a regular file (a FIFO would hold the run) or cannot be opened ends the run
// with status 2.
int openHostLog();
