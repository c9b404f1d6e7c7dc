#include "common/crc16ccitt.h"

namespace {

unsigned reflect(unsigned value, int bits) {
    unsigned reflected = 0;
    for (int bit = 0; bit < bits; ++bit) {
        if (value & (1u << bit)) reflected |= 1u << (bits - 1 - bit);
    }
    return reflected;
}

}  // namespace

uint16_t CRC16CCITT::process() const {
    if (data == nullptr || length <= 0) return 0;
    unsigned crc = 0;
    for (int i = 0; i < length; ++i) {
        crc ^= reflect(data[i], 8) << 8;
        for (int round = 0; round < 8; ++round) {
            crc = (crc & 0x8000) ? ((crc << 1) ^ 0x1021) : (crc << 1);
            crc &= 0xFFFF;
        }
    }
    return static_cast<uint16_t>(reflect(crc, 16));
}
