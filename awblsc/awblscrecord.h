#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// An AWB/LSC file's bytes taken apart, with nothing printed or logged: both checksums are
// computed whatever the other gives, and the record class reports from this.
struct AwbLscRecord {
    // One block's byte checksum (sum of the covered bytes mod 255, plus 1) and the stored byte.
    struct Block {
        bool present = false;  // the file reaches the stored checksum byte
        int computed = 0;
        int stored = 0;

        bool ok() const { return present && computed == stored; }
    };

    size_t size = 0;
    int fuseLength = 0;     // L, the first byte
    std::string fuseIdHex;  // upper-case, two digits per fuse ID byte present
    Block awb;
    Block lsc;

    static AwbLscRecord decode(std::string_view bytes);
};
