#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What the EEPROM blob export judges about a blob, as plain functions of its name, its bytes
// and property values: nothing is read, printed or logged here.
struct EepromBinRecord {
    static constexpr size_t checksumOffset = 8099;

    bool hasChecksum = false;  // the blob reaches the checksum byte
    unsigned checksum = 0;

    static EepromBinRecord decode(std::string_view bytes);

    // The fuse ID a path names: after the last '/' up to the path's first ".bin", lower-cased.
    static std::string fuseIdOfPath(const std::string& path);

    // Whether a fitted sensor's property value contains the name's fuse ID (upper-cased): the
    // name may carry it in any case, and only a part of it.
    static bool belongsTo(const std::string& pathFuseId, const std::string& propertyValue);

    // Whether the checksum byte, as two upper-case hexadecimal digits, equals the published
    // value in any letter case.
    bool checksumAgrees(const std::string& publishedChecksum) const;

    static std::string upperCase(std::string text);
};
