#include "eeprom/eeprombinrecord.h"

#include <gtest/gtest.h>

namespace {

TEST(EepromBinRecord, FuseIdOfThePathAndTheSensorItBelongsTo) {
    // clang-format off
    const std::pair<const char*, const char*> paths[] = {
        {"/sdcard/ABC123.bin", "abc123"}, {"ABC123", "abc123"}, {"/data/x.bin.bak", "x"},
        {"/data/old.bin/ABC.bin", "abc.bin"}, {"/data/", ""}};
    // clang-format on
    for (const auto& [path, fuseId] : paths) EXPECT_EQ(EepromBinRecord::fuseIdOfPath(path), fuseId);
    const std::tuple<const char*, const char*, bool> fitted[] = {
        {"abc", "XABCY", true}, {"ABC", "ZZZ", false}, {"abd", "XABCY", false}};
    for (const auto& [name, value, belongs] : fitted) {
        EXPECT_EQ(EepromBinRecord::belongsTo(EepromBinRecord::upperCase(name), value), belongs);
    }
}

TEST(EepromBinRecord, ChecksumByteAgainstThePublishedValueAsAnUnsignedByte) {
    const std::tuple<size_t, int, const char*, bool> cases[] = {
        {9000, 0x0A, "0a", true},  {9000, 0x0A, "0A", true},    {9000, 0x0A, "A", false},
        {9000, 0x0A, "10", false}, {9000, 0x0A, "0x0A", false}, {9000, 0x0A, "0A ", false},
        {9000, 0x0A, "", false},   {8100, 0xAB, "ab", true},    {8100, 0x80, "80", true},
        {8100, 0xFF, "FF", true},  {8100, 0xC3, "FF", false},   {8099, 0x5A, "5A", false}};
    for (const auto& [size, byte, published, agrees] : cases) {
        std::vector<unsigned char> blob(size, 0x5A);
        if (size > EepromBinRecord::checksumOffset) blob[EepromBinRecord::checksumOffset] = byte;
        const EepromBinRecord record = EepromBinRecord::decode(blob);
        EXPECT_EQ(record.hasChecksum && record.checksumAgrees(published), agrees) << published;
    }
}

}  // namespace
