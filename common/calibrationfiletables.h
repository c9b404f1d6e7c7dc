#pragma once

#include <map>
#include <string>

// The four constant tables of a calibration files manager, each keyed as the camera service
// names them. Each manager owns its own maps; this only gathers references to them.
struct CalibrationFileTables {
    const std::map<std::string, std::string>& filePath;    // short name -> calibration file
    const std::map<std::string, int>& cameraRoleId;        // short name -> camera role id
    const std::map<int, std::string>& fuseIdProperty;      // role id -> short-named property
    const std::map<int, std::string>& roleFuseIdProperty;  // role id -> role-named property
};
