#include "af/afcalibrationdata.h"

#include <gtest/gtest.h>

#include "platform/host/propertystore.h"

namespace {

class AfCalibrationDataTest : public testing::Test {
  protected:
    void SetUp() override { PropertyStore::process().clear(); }
    void TearDown() override { PropertyStore::process().clear(); }

    // What `call` printed, then what it returned.
    template <typename Call>
    std::string printed(Call call) {
        testing::internal::CaptureStdout();
        const std::string result = call();
        return testing::internal::GetCapturedStdout() + result;
    }

    AfCalibrationData store;
};

TEST_F(AfCalibrationDataTest, FuseIdOfACameraOrOfItsBackupModules) {
    // Properties set one after the other, the camera asked for, and the fuse ID.
    // clang-format off
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"w", "abcd0010ABCDEFGHIJKL", "0", "ABCDEFGHIJ"}, {"w", "abcd0020ABCDE", "0", "ABCDE"},
        {"w", "abcd-001ABCDEFGH", " 0x", "ABCDEFGH"}, {"w", "abcd0000", "0", ""},
        {"t4", "abcd0002T4", "23", "T4"}, {"fd", "abcd0002FD", "40", "FD"},
        {"t3", "abcd0002T3", "20", "T3"}, {"t2", "abcd0002T2", "20", "T2"},
        {"t", "abcd0001T", "20", "T"}, {"ta", "abcd0002TA", "23", "T4"},
        {"t5", "abcd0002T5", "30", "can't find camera[30] fuseid\n0"},
        {"w", "", "0", "can't find camera[0] fuseid\n0"}};
    // clang-format on
    for (const auto& c : cases) {
        PropertyStore::process().set(
            std::string("vendor.camera.sensor.") + std::get<0>(c) + ".fuseID", std::get<1>(c));
        EXPECT_EQ(printed([&] { return store.getFuseId(std::get<2>(c)); }), std::get<3>(c))
            << std::get<0>(c);
    }
    PropertyStore::process().clear();
    PropertyStore::process().set("vendor.camera.sensor.ta.fuseID", "abcd0002TA");
    EXPECT_EQ(printed([&] { return store.getFuseId("23"); }), "TA");
}

TEST_F(AfCalibrationDataTest, UsedPointsNeedTemperatureDacAndAnEepromPointWithinTolerance) {
    PropertyStore::process().set("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");

    // AF information, distance, DAC, temperature, use flag, and what write() printed and gave.
    const std::tuple<const char*, int, int, int, int, std::string> cases[] = {
        {"", 50, -5, 99, 0, "1"},
        {"", 50, 420, 0, 1, "Error:temperature 0 is not within the usable range\n0"},
        {"", 50, 420, 51, 1, "Error:temperature 51 is not within the usable range\n0"},
        {"", 50, -1, 1, 1, "Error:dac -1 is not allowed to be less than 0\n0"},
        {"", 50, 420, 50, 1,
         "Error:writing distance:50 is not matched with EEPROM distance value\n0"},
        {"10:300,50:420", 50, 500, 30, 1, "1"},
        {"10:300,50:420", 50, 600, 30, 1, "Error:abs(writingDac - eepromDac) is over 120\n0"},
        {"10:300,50:420", 30, 420, 30, 1,
         "Error:writing distance:30 is not matched with EEPROM distance value\n0"},
        {"10:300,10:700,50", 10, 690, 30, 1, "1"},
        {"10:300,10:700,50", 50, 0, 30, 1,
         "Error:writing distance:50 is not matched with EEPROM distance value\n0"},
        {"010:300", 10, 300, 30, 1,
         "Error:writing distance:10 is not matched with EEPROM distance value\n0"},
        {"10:1023", 10, 903, 1, 1, "1"},
        {"10:1023", 10, 1144, 1, 1, "Error:abs(writingDac - eepromDac) is over 120\n0"},
        {"10:1024", 10, 544, 1, 1, "1"},
        {"10:4095", 10, 4576, 1, 1, "Error:abs(writingDac - eepromDac) is over 480\n0"},
        {"10:4096", 10, 2176, 1, 1, "1"},
        {"10:16383", 10, 18304, 1, 1, "Error:abs(writingDac - eepromDac) is over 1920\n0"},
        {"10:16384", 10, 16384, 1, 1, "1"},
        {"10:16384", 10, 16385, 1, 1, "Error:abs(writingDac - eepromDac) is over 0\n0"}};
    for (const auto& [info, dist, dac, temp, useFlag, result] : cases) {
        PropertyStore::process().set("persist.vendor.camera.sensor.w.afInfo", info);
        // Copies: a lambda takes no structured binding before C++20.
        const int point[] = {dist, dac, temp, useFlag};
        EXPECT_EQ(
            printed([&] {
                return std::to_string(store.write("0", point[0], point[1], point[2], point[3]));
            }),
            result)
            << info << " " << dist << " " << dac;
    }
    std::string fuseId = "ABC123";
    EXPECT_EQ(store.getDac(fuseId, 50), 500);
    EXPECT_EQ(store.getDac(fuseId, 20), -1);
}

}  // namespace
