#pragma once

#include <string>

// A complete AWB/LSC file for the fuse ID bytes given, with varied contents and correct checksums
// computed here, independently of the code under test.
std::string awbLscFile(const std::string& fuseId);

// Offsets within such a file, for a fuse ID of `fuseLength` bytes.
inline size_t awbChecksumAt(size_t fuseLength) {
    return 14 + fuseLength;
}
inline size_t lscChecksumAt(size_t fuseLength) {
    return 1809 + fuseLength;
}
