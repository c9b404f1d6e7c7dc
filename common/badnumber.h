#pragma once

#include <string>
#include <string_view>

// Where the system lets a malformed number end the run abnormally (a non-numeric camera id, a
// malformed fuse-ID property, a non-numeric stored value), it still does, but first standard
// output is flushed and one line on standard error names the bad value; nothing more is written.
[[noreturn]] void abortOnBadNumber(const std::string& what, std::string_view text);

// A leading decimal int as std::stoi reads it, for a value that must be a number: otherwise the
// run ends here, naming `what`.
int leadingIntOrAbort(std::string_view text, const std::string& what);
