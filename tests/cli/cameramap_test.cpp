#include "cli/cameramap.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(ExposureValue, DividesInIntegersAndNeverTraps) {
    // clang-format off
    const std::pair<const char*, int> cases[] = {
        {"1/30", 0}, {"30000/1", 30000}, {"100/3", 33}, {"-100/-1", 100}, {"-7/2", -3}, {"1/0", 0},
        {"1/x", 0}, {"300", 300}, {"", 0}, {"60/2/3", 30}, {"-2147483648/-1", INT_MIN}};
    // clang-format on
    for (const auto& [text, value] : cases) EXPECT_EQ(exposureValue(text), value) << text;
}

}  // namespace
