#include "ae/aecalibrationfilesmanager.h"

#include <gtest/gtest.h>

#include "platform/host/propertystore.h"
#include "tests/support/tempdir.h"
#include "tests/support/testfiles.h"

namespace {

class AeFilesManagerTest : public testing::Test {
  protected:
    void SetUp() override { PropertyStore::process().clear(); }
    void TearDown() override { PropertyStore::process().clear(); }
    static void setProperty(const std::string& name, const std::string& value) {
        PropertyStore::process().set(name, value);
    }
};

TEST_F(AeFilesManagerTest, FuseIdPropertyDecoding) {
    AeCalibrationFilesManager manager("w", "unused");
    EXPECT_EQ(manager.propertyFuseId(0), "");
    setProperty("vendor.camera.sensor.rearMain.fuseID", "xxxx0004CAFE");
    EXPECT_EQ(manager.propertyFuseId(0), "CAFE");  // the role-named fallback
    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0010ABCD");
    EXPECT_EQ(manager.propertyFuseId(0), "ABCD");  // the short-named one first; a long length
                                                   // takes the rest
    EXPECT_EQ(manager.propertyFuseId(99), "");
}

TEST_F(AeFilesManagerTest, UnknownCameraIsRefusedByMakeFileAndParse) {
    TempDir dir;
    testing::internal::CaptureStdout();
    AeCalibrationFilesManager::makeFile("x", dir.file("tmp"), 1, 2, 3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "failed to find camera x's valid cameraRoldId\n");
    EXPECT_FALSE(fileExists(dir.file("tmp")));

    AeCalibrationFilesManager::makeFile("w", dir.file("tmp"), 1, 2, 3);
    AeCalibrationFilesManager manager("x", dir.file("tmp"));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(manager.parse());
    EXPECT_FALSE(manager.write());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "failed to find camera x's valid cameraRoldId\n");
}

TEST_F(AeFilesManagerTest, FirstMatchReturnsFalseAndTheSecondCallTrueWithoutReading) {
    TempDir dir;
    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0004ab12");
    AeCalibrationFilesManager::makeFile("w", dir.file("tmp"), 100, 200, 300);
    EXPECT_EQ(readFile(dir.file("tmp")).substr(0, 3), bytes({0x02, 0xAB, 0x12}));

    AeCalibrationFilesManager mismatched("w", dir.file("tmp"));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(mismatched.parse());  // the record's text is upper-case
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error:mismatch efuseId\n");

    setProperty("vendor.camera.sensor.w.fuseID", "xxxx0004AB12");
    AeCalibrationFilesManager manager("w", dir.file("tmp"));
    EXPECT_FALSE(manager.parse());
    remove(dir.file("tmp").c_str());
    EXPECT_TRUE(manager.parse());
}

}  // namespace
