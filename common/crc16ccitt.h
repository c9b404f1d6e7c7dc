#pragma once

#include <cstdint>

// CRC-16/KERMIT (polynomial 0x1021, reflected, initial value 0) over a caller's buffer; it
// protects the AE, AF and PD-offset records. The buffer must outlive process().
class CRC16CCITT {
  public:
    CRC16CCITT(unsigned char const* data, int length) : data(data), length(length) {}

    // The checksum; 0 for a null buffer or a length of 0 or less.
    uint16_t process() const;

  private:
    unsigned char const* data;
    int length;
};
