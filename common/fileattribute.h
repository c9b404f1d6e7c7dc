#pragma once

// Mode and owner (the system user and group) of every calibration and log file, so that the
// camera service can read it. The safe writer sets them on each new file before it appears; the
// calibration log, appended to in place, gets them here.
constexpr int kCalibrationFileMode = 0644;
constexpr int kSystemId = 1000;

// Gives a file its mode and owner through a descriptor of `file`, which the messages name;
// failures are printed. True when both were set.
bool applyFileAttribute(int fd, char const* file);

// The same by name, never through a link standing there. Failures are printed and otherwise
// ignored.
void changeFileAttribute(char const* file);

// Prints what could not be set, each message in its stream ("Error: fail to change permissions
// …" on standard output, "Error changing group ownership …" on standard error, neither ending
// its line); an error of 0 is no failure. True when neither failed.
bool reportFileAttribute(char const* file, int chmodError, int chownError);
