#pragma once

// Mode and owner (the system user and group) of every calibration and log file, so that the
// camera service can read it.
constexpr int kCalibrationFileMode = 0644;
constexpr int kSystemId = 1000;

// Gives a calibration or log file its mode and owner. Failures are printed and otherwise ignored.
void changeFileAttribute(char const* file);

// The same, telling whether both the mode and the owner were set.
bool applyFileAttribute(char const* file);

// The same through a descriptor of `file`, which the messages name.
bool applyFileAttribute(int fd, char const* file);
