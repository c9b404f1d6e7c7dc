#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// An AE file's bytes taken apart, with nothing printed or logged: the record class reports
// from this, and so can anything that only looks at a stored file. Bytes missing from a short
// file read as 0.
struct AeRecord {
    enum class Form { factory, maintain, badSize };

    Form form = Form::badSize;
    size_t size = 0;
    int fuseLength = 0;     // L, the first byte
    std::string fuseIdHex;  // upper-case, two digits per fuse ID byte present
    int lengthSum = 0;      // L plus the three value length bytes
    int luma = 0;
    int gain = 0;
    int exposure = 0;
    uint16_t computedCrc = 0;  // of the bytes before the CRC; 0 for a bad size
    uint16_t storedCrc = 0;    // high byte first; maintain form only

    bool crcMatches() const { return form == Form::maintain && storedCrc == computedCrc; }

    static AeRecord decode(std::string_view bytes);
};
