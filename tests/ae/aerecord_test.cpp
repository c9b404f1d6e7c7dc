#include "ae/aerecord.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "ae/aecalibrationfilesmanager.h"
#include "tests/support/testfiles.h"

namespace {

TEST(AeRecord, TakesBothFormsApartAtFixedOffsetsAndRefusesEveryOtherSize) {
    // The factory form for fuse ID AB12, luma 100, gain 200, exposure 300; its CRC is D3A9.
    const std::string factory =
        bytes({0x02, 0xAB, 0x12, 0x02, 0x64, 0x00, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01});
    using Form = AeRecord::Form;
    const struct {
        std::string bytes;
        Form form;
        const char* fuseId;
        int luma, gain, exposure, computed, stored;
    } cases[] = {
        {factory, Form::factory, "AB12", 100, 200, 300, 0xD3A9, 0},
        {factory + bytes({0xD3, 0xA9}), Form::maintain, "AB12", 100, 200, 300, 0xD3A9, 0xD3A9},
        {factory + bytes({0x12, 0x34}), Form::maintain, "AB12", 100, 200, 300, 0xD3A9, 0x1234},
        // Length bytes 7, 0 and 1 instead of 2 change nothing.
        {bytes({0x02, 0x0A, 0xBC, 0x07, 0x34, 0x12, 0x00, 0x01, 0x00, 0x01, 0xFF, 0xFF}),
         Form::factory, "0ABC", 0x1234, 1, 0xFFFF, 0x2171, 0},
        {factory.substr(0, 11), Form::badSize, "AB12", 100, 200, 44, 0, 0},
        {factory + "x", Form::badSize, "AB12", 100, 200, 300, 0, 0},
        {factory + bytes({0xD3, 0xA9}) + "x", Form::badSize, "AB12", 100, 200, 300, 0, 0},
        {"", Form::badSize, "", 0, 0, 0, 0, 0},
        {bytes({0x05}), Form::badSize, "", 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        const AeRecord r = AeRecord::decode(c.bytes);
        EXPECT_EQ(std::make_tuple(r.form, r.fuseIdHex, r.luma, r.gain, r.exposure, r.computedCrc,
                                  r.storedCrc),
                  std::make_tuple(c.form, std::string(c.fuseId), c.luma, c.gain, c.exposure,
                                  c.computed, c.stored))
            << c.bytes.size();
    }
}

TEST(AeCalibrationFilesManager, MakesNoFileForACameraItDoesNotKnow) {
    const std::string file = testing::TempDir() + "optoquill-unknown-camera";
    unlink(file.c_str());  // left by an earlier run that did make it
    testing::internal::CaptureStdout();
    AeCalibrationFilesManager::makeFile("x", file, 1, 2, 3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "failed to find camera x's valid cameraRoldId\n");
    EXPECT_FALSE(fileExists(file));
}

}  // namespace
