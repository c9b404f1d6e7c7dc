#pragma once

#include <optional>
#include <string>

// Reads a decimal int as the standard string-to-int conversion does: leading white space, an
// optional sign, digits, and anything after the digits ignored. Empty when the text does not
// start with a number or the number does not fit an int.
std::optional<int> leadingDecimal(const std::string& text);

// The same for a value that must be a number: otherwise the run ends abnormally (see
// abortOnBadNumber).
int leadingDecimalOrAbort(const std::string& text, const std::string& what);

// Ends the run abnormally on a malformed number: standard output is flushed, one line on
// standard error names the bad value, and the process aborts before writing anything more.
[[noreturn]] void abortOnBadNumber(const std::string& what, const std::string& text);
