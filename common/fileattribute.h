#pragma once

// Gives a calibration or log file mode 0644 and owner and group 1000 (system), so that the
// camera service can read it. Failures are printed and otherwise ignored.
void changeFileAttribute(char const* file);

// The same, telling whether both the mode and the owner were set.
bool applyFileAttribute(char const* file);
