#pragma once

#include <initializer_list>
#include <string>

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
std::string readProperty(const std::string& name);

// Takes a set property's value apart.
FuseIdProperty splitFuseIdProperty(std::string name, std::string value);

// The first of `names` that is set (unset names are skipped), taken apart; an unset result when
// none is.
FuseIdProperty readFuseIdProperty(std::initializer_list<const std::string*> names);

// The fuse ID of a set property for the tools that store calibration: a malformed value ends
// the run abnormally, naming the property (see abortOnBadNumber). `length` receives N.
std::string decodeFuseIdProperty(const std::string& value, const std::string& property,
                                 int* length = nullptr);
