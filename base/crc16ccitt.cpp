#include "base/crc16ccitt.h"

#include <array>

namespace {

// One entry per byte value: the reflected polynomial 0x8408 shifted through eight rounds.
constexpr std::array<uint16_t, 256> makeTable() {
    std::array<uint16_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned crc = i;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0x8408 : crc >> 1;
        table[i] = static_cast<uint16_t>(crc);
    }
    return table;
}

constexpr std::array<uint16_t, 256> kTable = makeTable();

}  // namespace

uint16_t CRC16CCITT::update(uint16_t crc, std::string_view bytes) {
    for (char c : bytes) {
        crc = static_cast<uint16_t>((crc >> 8) ^
                                    kTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF]);
    }
    return crc;
}

uint16_t CRC16CCITT::process() const {
    if (data == nullptr || length <= 0) return 0;
    return update(
        0, std::string_view(reinterpret_cast<const char*>(data), static_cast<size_t>(length)));
}
