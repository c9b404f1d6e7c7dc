#include "ae/aerecord.h"

#include "base/crc16ccitt.h"
#include "base/text.h"

AeRecord AeRecord::decode(std::string_view bytes) {
    auto byteAt = [&bytes](size_t offset) -> unsigned {
        return offset < bytes.size() ? static_cast<unsigned char>(bytes[offset]) : 0;
    };
    auto shortAt = [&byteAt](size_t offset) { return byteAt(offset) | byteAt(offset + 1) << 8; };

    AeRecord record;
    record.size = bytes.size();
    record.fuseLength = static_cast<int>(byteAt(0));
    record.fuseIdHex = hexText(bytes, 1, static_cast<size_t>(record.fuseLength));
    // Each value is 2 bytes at a fixed offset, whatever its length byte says.
    const size_t base = 1 + static_cast<size_t>(record.fuseLength);
    record.lengthSum =
        record.fuseLength + static_cast<int>(byteAt(base) + byteAt(base + 3) + byteAt(base + 6));
    record.luma = static_cast<int>(shortAt(base + 1));
    record.gain = static_cast<int>(shortAt(base + 4));
    record.exposure = static_cast<int>(shortAt(base + 7));

    size_t covered = 0;
    if (record.size == base + 11) {
        record.form = Form::maintain;
        covered = record.size - 2;
        record.storedCrc = static_cast<uint16_t>(byteAt(covered) << 8 | byteAt(covered + 1));
    } else if (record.size == base + 9) {
        record.form = Form::factory;
        covered = record.size;
    } else {
        return record;
    }
    record.computedCrc =
        CRC16CCITT(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(covered))
            .process();
    return record;
}
