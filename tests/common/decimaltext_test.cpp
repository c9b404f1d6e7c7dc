#include "common/decimaltext.h"

#include <gtest/gtest.h>

namespace {

TEST(LeadingDecimal, ReadsLikeTheStandardConversion) {
    EXPECT_EQ(leadingDecimal("0004"), 4);
    EXPECT_EQ(leadingDecimal(" \t-001"), -1);
    EXPECT_EQ(leadingDecimal("+12ab"), 12);
    EXPECT_EQ(leadingDecimal("2147483647"), 2147483647);
    EXPECT_FALSE(leadingDecimal("").has_value());
    EXPECT_FALSE(leadingDecimal("xx12").has_value());
    EXPECT_FALSE(leadingDecimal("- 1").has_value());
    EXPECT_FALSE(leadingDecimal("2147483648").has_value());
}

}  // namespace
