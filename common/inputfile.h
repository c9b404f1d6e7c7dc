#pragma once

#include <string>

#include "base/filereader.h"

// Reads an input file named on the command line (-f, -E), through a link if it is one. What
// cannot be read, other than an absent file (which each input reports in its own defined words),
// is said on standard error in one line naming the file and why:
// "Error:cannot read /dev/zero: not a regular file".
FileRead readInputFile(const std::string& path);
