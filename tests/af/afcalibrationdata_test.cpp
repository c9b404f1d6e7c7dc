#include "af/afcalibrationdata.h"

#include <gtest/gtest.h>

#include "platform/host/propertystore.h"

namespace {

class AfCalibrationDataTest : public testing::Test {
  protected:
    void SetUp() override {
        PropertyStore::process().clear();
        store.init();  // no AF file on this machine's real persist path: an empty list
    }
    void TearDown() override { PropertyStore::process().clear(); }

    static void setProperty(const std::string& name, const std::string& value) {
        PropertyStore::process().set(name, value);
    }

    // write(), with what it printed in `out`.
    bool write(const std::string& camera, int dist, int dac, int temp, int useFlag,
               std::string* out) {
        testing::internal::CaptureStdout();
        bool ok = store.write(camera, dist, dac, temp, useFlag);
        *out = testing::internal::GetCapturedStdout();
        return ok;
    }

    std::string fuseIdOf(const std::string& camera) {
        testing::internal::CaptureStdout();
        std::string fuseId = store.getFuseId(camera);
        std::string printed = testing::internal::GetCapturedStdout();
        return printed.empty() ? fuseId : printed + fuseId;
    }

    AfCalibrationData store;
};

TEST_F(AfCalibrationDataTest, FuseIdFromTheCamerasProperty) {
    setProperty("vendor.camera.sensor.w.fuseID", "abcd0010ABCDEFGHIJKL");
    EXPECT_EQ(fuseIdOf("0"), "ABCDEFGHIJ");
    setProperty("vendor.camera.sensor.w.fuseID", "abcd0020ABCDE");
    EXPECT_EQ(fuseIdOf("0"), "ABCDE");
    setProperty("vendor.camera.sensor.w.fuseID", "abcd-001ABCDEFGH");
    EXPECT_EQ(fuseIdOf(" 0x"), "ABCDEFGH");  // the id reads like stoi: blanks and a tail
    setProperty("vendor.camera.sensor.t4.fuseID", "abcd0002T4");
    EXPECT_EQ(fuseIdOf("23"), "T4");
    setProperty("vendor.camera.sensor.fd.fuseID", "abcd0002FD");
    EXPECT_EQ(fuseIdOf("40"), "FD");
    EXPECT_EQ(fuseIdOf("30"), "can't find camera[30] fuseid\n0");
}

TEST_F(AfCalibrationDataTest, BackupModulesOnlyForTheTelePositions) {
    setProperty("vendor.camera.sensor.t3.fuseID", "abcd0002T3");
    EXPECT_EQ(fuseIdOf("20"), "T3");
    setProperty("vendor.camera.sensor.t2.fuseID", "abcd0002T2");
    EXPECT_EQ(fuseIdOf("20"), "T2");
    setProperty("vendor.camera.sensor.t.fuseID", "abcd0001T");
    EXPECT_EQ(fuseIdOf("20"), "T");
    setProperty("vendor.camera.sensor.ta.fuseID", "abcd0002TA");
    EXPECT_EQ(fuseIdOf("23"), "TA");
    EXPECT_EQ(fuseIdOf("0"), "can't find camera[0] fuseid\n0");
}

TEST_F(AfCalibrationDataTest, SplitAfInfoString) {
    std::vector<std::string> out = {"kept"};
    store.splitAFInfoString("10:300,,50:420,", out, ",");
    EXPECT_EQ(out, (std::vector<std::string>{"kept", "10:300", "", "50:420"}));
    out.clear();
    store.splitAFInfoString("", out, ",");
    EXPECT_TRUE(out.empty());
    store.splitAFInfoString("10", out, ":");
    store.splitAFInfoString("a::b", out, "::");
    EXPECT_EQ(out, (std::vector<std::string>{"10", "a", "b"}));
}

TEST_F(AfCalibrationDataTest, UnusedPointsAreStoredUnchecked) {
    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    std::string out;
    ASSERT_TRUE(write("0", 50, -5, 99, 0, &out));
    EXPECT_EQ(out, "");
    std::string fuseId = "ABC123";
    EXPECT_EQ(store.getDac(fuseId, 50), -5);
    EXPECT_EQ(store.getDac(fuseId, 10), -1);
}

TEST_F(AfCalibrationDataTest, UsedPointsNeedTemperatureDacAndEepromAgreement) {
    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    std::string out;
    for (int temp : {0, 51, -3}) {
        EXPECT_FALSE(write("0", 50, 420, temp, 1, &out));
        EXPECT_EQ(
            out, "Error:temperature " + std::to_string(temp) + " is not within the usable range\n");
    }
    EXPECT_FALSE(write("0", 50, -1, 1, 1, &out));
    EXPECT_EQ(out, "Error:dac -1 is not allowed to be less than 0\n");
    // 1 and 50 pass the temperature check; with no AF information the distance is unknown.
    for (int temp : {1, 50}) {
        EXPECT_FALSE(write("0", 50, 420, temp, 1, &out));
        EXPECT_EQ(out, "Error:writing distance:50 is not matched with EEPROM distance value\n");
    }
    setProperty("persist.vendor.camera.sensor.w.afInfo", "10:300,50:420");
    EXPECT_TRUE(write("0", 50, 500, 30, 1, &out));
    EXPECT_FALSE(write("0", 50, 600, 30, 1, &out));
    EXPECT_EQ(out, "Error:abs(writingDac - eepromDac) is over 120\n");
    EXPECT_FALSE(write("0", 30, 420, 30, 1, &out));
    EXPECT_EQ(out, "Error:writing distance:30 is not matched with EEPROM distance value\n");
}

TEST_F(AfCalibrationDataTest, ToleranceFollowsTheLargestDac) {
    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    struct Case {
        const char* info;
        int tolerance;
    };
    for (const Case& c : {Case{"10:1023", 120}, Case{"10:1024", 480}, Case{"10:4095", 480},
                          Case{"10:4096", 1920}, Case{"10:16383", 1920}, Case{"10:16384", 0}}) {
        setProperty("persist.vendor.camera.sensor.w.afInfo", c.info);
        const int eeprom = atoi(c.info + 3);
        std::string out;
        EXPECT_TRUE(write("0", 10, eeprom - c.tolerance, 30, 1, &out)) << c.info;
        EXPECT_FALSE(write("0", 10, eeprom + c.tolerance + 1, 30, 1, &out)) << c.info;
        EXPECT_EQ(
            out, "Error:abs(writingDac - eepromDac) is over " + std::to_string(c.tolerance) + "\n");
    }
}

TEST_F(AfCalibrationDataTest, EveryOccurrenceOfTheDistanceIsTried) {
    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0006ABC123");
    setProperty("persist.vendor.camera.sensor.w.afInfo", "10:300,10:700,50");
    std::string out;
    EXPECT_TRUE(write("0", 10, 690, 30, 1, &out));
    // A distance without its DAC is never a match.
    EXPECT_FALSE(write("0", 50, 0, 30, 1, &out));
    EXPECT_EQ(out, "Error:writing distance:50 is not matched with EEPROM distance value\n");
    setProperty("persist.vendor.camera.sensor.w.afInfo", "010:300");
    EXPECT_FALSE(write("0", 10, 300, 30, 1, &out));
    EXPECT_EQ(out, "Error:writing distance:10 is not matched with EEPROM distance value\n");
}

TEST_F(AfCalibrationDataTest, MissingFuseIdIsReportedFirstAndRefused) {
    std::string out;
    EXPECT_FALSE(write("0", 50, 300, 30, 0, &out));
    EXPECT_EQ(out, "can't find camera[0] fuseid\n");
    EXPECT_FALSE(write("0", 50, 300, 0, 1, &out));
    EXPECT_EQ(out,
              "can't find camera[0] fuseid\nError:temperature 0 is not within the usable range\n");
}

}  // namespace
