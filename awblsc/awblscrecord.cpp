#include "awblsc/awblscrecord.h"

#include "base/text.h"

namespace {

// The first 3 bytes of each block lie outside its checksum.
constexpr size_t kAwbCoveredStart = 5;
constexpr size_t kAwbCoveredEnd = 13;
constexpr size_t kLscCoveredStart = 37;
constexpr size_t kLscCoveredEnd = 1808;

AwbLscRecord::Block checkBlock(std::string_view bytes, size_t from, size_t to) {
    AwbLscRecord::Block block;
    const size_t storedAt = to + 1;
    if (storedAt >= bytes.size()) return block;
    unsigned sum = 0;
    for (size_t i = from; i <= to; ++i) sum += static_cast<unsigned char>(bytes[i]);
    block.present = true;
    block.computed = static_cast<int>(sum % 255 + 1);
    block.stored = static_cast<unsigned char>(bytes[storedAt]);
    return block;
}

}  // namespace

AwbLscRecord AwbLscRecord::decode(std::string_view bytes) {
    AwbLscRecord record;
    record.size = bytes.size();
    const size_t fuseLength = bytes.empty() ? 0 : static_cast<unsigned char>(bytes[0]);
    record.fuseLength = static_cast<int>(fuseLength);
    record.fuseIdHex = hexText(bytes, 1, fuseLength);
    record.awb = checkBlock(bytes, fuseLength + kAwbCoveredStart, fuseLength + kAwbCoveredEnd);
    record.lsc = checkBlock(bytes, fuseLength + kLscCoveredStart, fuseLength + kLscCoveredEnd);
    return record;
}
