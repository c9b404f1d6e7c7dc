#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "common/cameras.h"

// A fuse-ID property as the camera stack publishes it: 4 characters that are skipped, a
// 4-character decimal length N, then N characters of ID (the rest of the value when N is
// negative or longer than what is left). A plain value: taking one apart never prints, logs or
// aborts, so the audit can look at a malformed one too.
struct FuseIdProperty {
    std::string name;         // the property that was set; empty when none of those asked was
    std::string value;        // its whole value
    bool wellFormed = false;  // 8 characters or more, with a number in the length field
    int length = 0;           // N
    std::string fuseId;

    bool set() const { return !name.empty(); }
};

// The value of a system property; empty when it is unset or empty.
std::string readProperty(std::string_view name);

// Takes a set property's value apart.
FuseIdProperty splitFuseIdProperty(std::string name, std::string value);

// The first of `names` that is set (empty names are skipped), taken apart; an unset result when
// none is.
FuseIdProperty readFuseIdProperty(std::initializer_list<std::string_view> names);

// A camera's fuse-ID property as the AE and AWB/LSC managers and the EEPROM export read it: the
// short-named property first, the role-named one when the first is empty.
FuseIdProperty readSensorFuseIdProperty(const CameraRole& camera);

// A camera's property in `column` as the AF and PD-offset stores read it: the camera's own; when
// that is empty, the first set one of the modules that may stand in for it. Empty (and
// `property` the camera's own name, or empty) when none is set.
std::string readFocusProperty(CameraColumn column, int roleId, std::string* property);

// The fuse-ID property the AF and PD-offset stores go by, taken apart.
FuseIdProperty readFocusFuseIdProperty(int roleId);

// The fuse ID of a set property for the tools that store calibration: a malformed value ends
// the run abnormally, naming the property (see abortOnBadNumber). `length` receives N.
std::string decodeFuseIdProperty(const std::string& value, const std::string& property,
                                 int* length = nullptr);
