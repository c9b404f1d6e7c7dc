#pragma once

#include <map>
#include <string>

// The value of a camera's property in `properties` (one of AfCalibrationData's tables); when it
// is empty, that of the first of the camera's backup modules that has one. `property` receives
// the name of the property read. Empty when none is set or the camera is in no table.
std::string readCameraProperty(const std::map<int, std::string>& properties, int cameraId,
                               std::string* property);
