#include "common/crc16ccitt.h"

#include <gtest/gtest.h>

#include <string>

namespace {

uint16_t crcOf(const std::string& text) {
    return CRC16CCITT(reinterpret_cast<const unsigned char*>(text.data()),
                      static_cast<int>(text.size()))
        .process();
}

TEST(CRC16CCITT, GivesTheKermitCheckValues) {
    EXPECT_EQ(crcOf("123456789"), 0x2189);
    EXPECT_EQ(crcOf("A"), 0x538D);
    // Bytes with the top bit set: catches a sign-extended byte on the host's signed char.
    EXPECT_EQ(crcOf("\xFF"), 0x0F78);
}

TEST(CRC16CCITT, LeadingZeroBytesAndEmptyInputGiveZero) {
    EXPECT_EQ(crcOf(std::string(1, '\0')), 0);
    EXPECT_EQ(crcOf(std::string(3, '\0')), 0);
    EXPECT_EQ(crcOf(""), 0);
    EXPECT_EQ(crcOf(std::string(2, '\0') + "A"), crcOf("A"));
}

TEST(CRC16CCITT, NullBufferOrNegativeLengthReadsNothing) {
    EXPECT_EQ(CRC16CCITT(nullptr, 9).process(), 0);
    const unsigned char data[] = {'1'};
    EXPECT_EQ(CRC16CCITT(data, -1).process(), 0);
    CRC16CCITT crc(reinterpret_cast<const unsigned char*>("123456789"), 9);
    EXPECT_EQ(crc.process(), crc.process());
}

}  // namespace
