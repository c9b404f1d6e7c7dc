#include "cli/cameramap.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(ExposureValue, DividesInIntegersAndNeverTraps) {
    EXPECT_EQ(exposureValue("1/30"), 0);
    EXPECT_EQ(exposureValue("30000/1"), 30000);
    EXPECT_EQ(exposureValue("100/3"), 33);
    EXPECT_EQ(exposureValue("-100/-1"), 100);
    EXPECT_EQ(exposureValue("-7/2"), -3);
    EXPECT_EQ(exposureValue("1/0"), 0);
    EXPECT_EQ(exposureValue("1/x"), 0);
    EXPECT_EQ(exposureValue("-2147483648/-1"), INT_MIN);
    EXPECT_EQ(exposureValue("300"), 300);
    EXPECT_EQ(exposureValue(""), 0);
    EXPECT_EQ(exposureValue("60/2/3"), 30);  // split at the first '/'
}

}  // namespace
