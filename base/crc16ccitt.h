#pragma once

#include <cstdint>
#include <string_view>

// CRC-16/KERMIT (polynomial 0x1021, reflected, initial value 0), the checksum of the AE, AF and
// PD-offset records. The buffer must outlive process().
class CRC16CCITT {
  public:
    CRC16CCITT(unsigned char const* data, int length) : data(data), length(length) {}

    // The checksum; 0 for a null buffer or a length of 0 or less.
    uint16_t process() const;

    // Carries `crc` over `bytes`, so that a record's texts can be summed where they lie instead
    // of being copied together first: update(update(0, a), b) is the CRC of a then b.
    static uint16_t update(uint16_t crc, std::string_view bytes);

  private:
    unsigned char const* data;
    int length;
};
