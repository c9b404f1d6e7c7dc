#pragma once

#include <string_view>

// Every camera position the tool knows, one row each: adding a camera is adding a row. The
// managers', the AF store's and the EEPROM export's tables are all read from here. An empty
// column means the camera is not in that table.
struct CameraRole {
    int roleId;
    std::string_view roleIdText;  // as -n gives it
    std::string_view shortName;   // what the AE and AWB/LSC file and property names are made of
    int backupOf;  // a module that may be fitted in another position's place; -1 for none
    std::string_view fuseIdProperty;       // short-named: the managers' first choice
    std::string_view roleFuseIdProperty;   // role-named: their second
    std::string_view focusFuseIdProperty;  // the AF and PD-offset stores' own name
    std::string_view afInfoProperty;       // the module's EEPROM AF points
    std::string_view aeFile;               // in the persist directory
    std::string_view awbLscFile;           // front cameras only
};

// clang-format off
inline constexpr CameraRole kCameraRoles[] = {
    {0, "0", "w", -1, "vendor.camera.sensor.w.fuseID",
     "vendor.camera.sensor.rearMain.fuseID", "vendor.camera.sensor.w.fuseID",
     "persist.vendor.camera.sensor.w.afInfo", "com.nurvak.aecal.w.bin", ""},
    {1, "1", "f", -1, "vendor.camera.sensor.f.fuseID",
     "vendor.camera.sensor.frontMain.fuseID", "vendor.camera.sensor.f.fuseID",
     "persist.vendor.camera.sensor.f.afInfo", "com.nurvak.aecal.f.bin",
     "com.nurvak.awblsccal.f.bin"},
    {20, "20", "t", -1, "vendor.camera.sensor.t.fuseID",
     "vendor.camera.sensor.rearTele.fuseID", "vendor.camera.sensor.t.fuseID",
     "persist.vendor.camera.sensor.t.afInfo", "com.nurvak.aecal.t.bin", ""},
    {21, "21", "u", -1, "vendor.camera.sensor.u.fuseID",
     "vendor.camera.sensor.rearUltra.fuseID", "vendor.camera.sensor.u.fuseID",
     "persist.vendor.camera.sensor.u.afInfo", "com.nurvak.aecal.u.bin", ""},
    {22, "22", "m", -1, "vendor.camera.sensor.m.fuseID",
     "vendor.camera.sensor.rearMacro.fuseID", "vendor.camera.sensor.m.fuseID",
     "persist.vendor.camera.sensor.m.afInfo", "com.nurvak.aecal.m.bin", ""},
    {23, "23", "t4x", -1, "vendor.camera.sensor.t4x.fuseID",
     "vendor.camera.sensor.rearTele4x.fuseID", "vendor.camera.sensor.t4.fuseID",
     "persist.vendor.camera.sensor.t4x.afInfo", "com.nurvak.aecal.t4x.bin", ""},
    {24, "24", "m2x", -1, "vendor.camera.sensor.m2x.fuseID",
     "vendor.camera.sensor.rearMacro2x.fuseID", "vendor.camera.sensor.m2.fuseID",
     "persist.vendor.camera.sensor.m2x.afInfo", "com.nurvak.aecal.m2x.bin", ""},
    {25, "25", "d", -1, "vendor.camera.sensor.d.fuseID",
     "vendor.camera.sensor.rearDepth.fuseID", "vendor.camera.sensor.d.fuseID",
     "persist.vendor.camera.sensor.d.afInfo", "com.nurvak.aecal.d.bin", ""},
    // Tele modules that may stand in for 20 and 23, tried in this order.
    {26, "26", "", 20, "", "", "vendor.camera.sensor.t2.fuseID", "", "", ""},
    {27, "27", "", 20, "", "", "vendor.camera.sensor.t3.fuseID", "", "", ""},
    {28, "28", "", 23, "", "", "vendor.camera.sensor.t5.fuseID", "", "", ""},
    {29, "29", "", 23, "", "", "vendor.camera.sensor.ta.fuseID", "", "", ""},
    {40, "40", "faux", -1, "vendor.camera.sensor.faux.fuseID",
     "vendor.camera.sensor.frontAux.fuseID", "vendor.camera.sensor.fd.fuseID",
     "persist.vendor.camera.sensor.faux.afInfo", "com.nurvak.aecal.faux.bin",
     "com.nurvak.awblsccal.faux.bin"},
};
// clang-format on

// The files in the persist directory that all cameras share: the AF points, the PD offsets, and
// the log of AE and AWB/LSC results ("nurak", not "nurvak": the camera service reads it so).
inline constexpr std::string_view kAfFileName = "com.nurvak.afc.bin";
inline constexpr std::string_view kPdOffsetFileName = "com.nurvak.pdoffset.bin";
inline constexpr std::string_view kCalibrationLogName = "com.nurak.camera.checksum.bin";

// A column of the table: &CameraRole::aeFile, say.
using CameraColumn = std::string_view CameraRole::*;

// The row of a role id, or null.
const CameraRole* cameraByRoleId(int roleId);

// The row of a camera-map position (one with a short name) by its -n text or its short name,
// or null.
const CameraRole* cameraByRoleIdText(std::string_view roleIdText);
const CameraRole* cameraByShortName(std::string_view shortName);
