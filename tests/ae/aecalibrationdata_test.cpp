#include "ae/aecalibrationdata.h"

#include <gtest/gtest.h>

#include "tests/support/tempdir.h"
#include "tests/support/testfiles.h"

namespace {

// The factory form for fuse ID AB12, luma 100, gain 200, exposure 300, and its CRC.
const std::string kFactory =
    bytes({0x02, 0xAB, 0x12, 0x02, 0x64, 0x00, 0x02, 0xC8, 0x00, 0x02, 0x2C, 0x01});
const std::string kMaintain = kFactory + bytes({0xD3, 0xA9});

std::string dumpOf(AeCalibrationData& record) {
    testing::internal::CaptureStdout();
    record.dump();
    return testing::internal::GetCapturedStdout();
}

TEST(AeCalibrationData, FactoryFormGainsItsCrcAndRoundTrips) {
    TempDir dir;
    // The record keeps the caller's path text: it must outlive the record.
    const std::string factoryPath = dir.file("factory");
    writeFile(factoryPath, kFactory);
    AeCalibrationData factory;
    ASSERT_TRUE(factory.parse(factoryPath.c_str()));
    EXPECT_EQ(factory.fuseId(), "AB12");
    EXPECT_EQ(dumpOf(factory),
              factoryPath +
                  ":\n"
                  "factor format:\n"
                  "|1 byte |len byte|1 byte |len byte|1 byte |len byte|1 byte     |len byte|\n"
                  "|fuselen|fuseId  |lumalen|luma    |gainlen|gain    |exposurelen|exposure|\n"
                  "contents:\n"
                  "02AB1202640002C800022C01\n");
    ASSERT_TRUE(factory.write(dir.file("maintain").c_str()));
    EXPECT_EQ(readFile(dir.file("maintain")), kMaintain);

    AeCalibrationData maintain;
    ASSERT_TRUE(maintain.parse(dir.file("maintain").c_str()));  // no CRC message: it matches
    ASSERT_TRUE(maintain.write(dir.file("again").c_str()));
    EXPECT_EQ(readFile(dir.file("again")), kMaintain);
}

TEST(AeCalibrationData, WrongCrcIsStillValidAndCopiedUnchanged) {
    TempDir dir;
    std::string altered = kFactory + bytes({0x12, 0x34});
    writeFile(dir.file("altered"), altered);
    AeCalibrationData record;
    EXPECT_TRUE(record.parse(dir.file("altered").c_str()));
    EXPECT_TRUE(record.valid());
    ASSERT_TRUE(record.write(dir.file("copy").c_str()));
    EXPECT_EQ(readFile(dir.file("copy")), altered);
}

TEST(AeCalibrationData, SizeOffByOneEitherWayOrEmptyIsRefused) {
    TempDir dir;
    for (const std::string& content :
         {kFactory.substr(0, 11), kFactory + "x", kMaintain + "x", std::string(), bytes({0x05})}) {
        writeFile(dir.file("bad"), content);
        AeCalibrationData record;
        EXPECT_FALSE(record.parse(dir.file("bad").c_str())) << content.size();
        EXPECT_FALSE(record.valid());
        EXPECT_EQ(dumpOf(record), "");
        EXPECT_FALSE(record.write(dir.file("out").c_str()));
        EXPECT_FALSE(fileExists(dir.file("out")));
    }
    AeCalibrationData missing;
    EXPECT_FALSE(missing.parse(dir.file("missing").c_str()));
}

TEST(AeCalibrationData, FixedOffsetsWhateverTheLengthBytesSay) {
    TempDir dir;
    // Fuse bytes 0A BC; length bytes 7, 0, 1 instead of 2.
    writeFile(dir.file("odd"),
              bytes({0x02, 0x0A, 0xBC, 0x07, 0x34, 0x12, 0x00, 0x01, 0x00, 0x01, 0xFF, 0xFF}));
    AeCalibrationData record;
    ASSERT_TRUE(record.parse(dir.file("odd").c_str()));
    EXPECT_EQ(record.fuseId(), "0ABC");
}

}  // namespace
