#pragma once

// Tells the camera service that calibration files were rewritten: the bare payload is sent
// over the abstract local socket `socketName`. Fire and forget; failures are only printed.
void loadCaliFiles(char const* socketName, char const* payload);
