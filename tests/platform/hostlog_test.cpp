#include "platform/host/hostlog.h"

#include <android/log.h>
#include <gtest/gtest.h>

namespace {

TEST(HostLog, FormatsOneLinePerMessage) {
    EXPECT_EQ(formatLogLine(ANDROID_LOG_DEBUG, "AeCalibrationData", "data file size 14"),
              "D/AeCalibrationData: data file size 14\n");
    EXPECT_EQ(formatLogLine(ANDROID_LOG_INFO, "T", "proertyId:x \n\n"), "I/T: proertyId:x \n");
    EXPECT_EQ(formatLogLine(ANDROID_LOG_ERROR, "T", "a\nb\n"), "E/T: a\nb\n");
    EXPECT_EQ(formatLogLine(ANDROID_LOG_VERBOSE, "T", ""), "V/T: \n");
    EXPECT_EQ(formatLogLine(ANDROID_LOG_WARN, "T", "\n"), "W/T: \n");
    EXPECT_EQ(formatLogLine(ANDROID_LOG_FATAL, "T", "f"), "F/T: f\n");
}

}  // namespace
