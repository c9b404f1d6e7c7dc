#include <gtest/gtest.h>

#include "common/crc16ccitt.h"
#include "common/decimaltext.h"

namespace {

TEST(CRC16CCITT, GivesTheKermitValuesAndReadsNothingOutsideItsBuffer) {
    // A byte with the top bit set catches a sign-extended byte on the host's signed char.
    const std::pair<std::string, int> cases[] = {
        {"123456789", 0x2189},     {"A", 0x538D},
        {"\xFF", 0x0F78},          {std::string(2, '\0') + "A", 0x538D},
        {std::string(3, '\0'), 0}, {"", 0}};
    for (const auto& [text, crc] : cases) {
        const auto* data = reinterpret_cast<const unsigned char*>(text.data());
        EXPECT_EQ(CRC16CCITT(data, static_cast<int>(text.size())).process(), crc) << text;
    }
    EXPECT_EQ(CRC16CCITT(nullptr, 9).process(), 0);
    EXPECT_EQ(CRC16CCITT(reinterpret_cast<const unsigned char*>("1"), -1).process(), 0);
}

TEST(LeadingDecimal, ReadsLikeTheStandardConversion) {
    const std::pair<std::string, std::optional<int>> cases[] = {
        {"0004", 4},  {" \t-001", -1}, {"+12ab", 12},      {"2147483647", 2147483647}, {"", {}},
        {"xx12", {}}, {"- 1", {}},     {"2147483648", {}}, {"-2147483649", {}}};
    for (const auto& [text, value] : cases) EXPECT_EQ(leadingDecimal(text), value) << text;
}

}  // namespace
