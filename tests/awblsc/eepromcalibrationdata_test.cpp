#include "awblsc/eepromcalibrationdata.h"

#include <gtest/gtest.h>

#include "tests/support/awblscfile.h"
#include "tests/support/tempdir.h"
#include "tests/support/testfiles.h"

namespace {

class EepromCalibrationDataTest : public testing::Test {
  protected:
    // Parses `content`; the standard output it printed goes to `out`.
    bool parse(const std::string& content, std::string* out = nullptr) {
        writeFile(file, content);
        testing::internal::CaptureStdout();
        bool ok = record.parse(file.c_str());
        std::string printed = testing::internal::GetCapturedStdout();
        if (out != nullptr) *out = printed;
        return ok;
    }

    TempDir dir;
    const std::string file = dir.file("awblsc.bin");
    EepromCalibrationData record;
};

TEST_F(EepromCalibrationDataTest, ValidFileIsCopiedByteForByteTrailingBytesIncluded) {
    const std::string content = awbLscFile(bytes({0xF0, 0x0D})) + "trailing";
    ASSERT_TRUE(parse(content));
    EXPECT_EQ(record.fuseId(), "F00D");
    ASSERT_TRUE(record.write(dir.file("copy").c_str()));
    EXPECT_EQ(readFile(dir.file("copy")), content);
}

TEST_F(EepromCalibrationDataTest, ChecksumIsSumModulo255PlusOne) {
    std::string zeros(1810, '\0');
    EXPECT_FALSE(parse(zeros));  // an all-zero block needs a stored 1
    zeros[awbChecksumAt(0)] = 1;
    zeros[lscChecksumAt(0)] = 1;
    EXPECT_TRUE(parse(zeros));

    std::string sums = zeros;
    sums[5] = static_cast<char>(200);  // AWB block sums to 255: stored 1
    sums[13] = 55;
    sums[40] = static_cast<char>(254);  // LSC block sums to 254: stored 255
    sums[lscChecksumAt(0)] = static_cast<char>(255);
    EXPECT_TRUE(parse(sums));
}

TEST_F(EepromCalibrationDataTest, BytesOutsideTheCoveredRangesDoNotCount) {
    std::string content = awbLscFile(bytes({0xAB}));
    for (size_t offset : {2u, 3u, 4u, 5u, 16u, 34u, 35u, 36u, 37u}) content[offset] ^= 0x5A;
    EXPECT_TRUE(parse(content));
}

TEST_F(EepromCalibrationDataTest, AwbIsCheckedFirstAndHidesTheLscCheck) {
    std::string content = awbLscFile("");
    content[lscChecksumAt(0)] ^= 1;
    std::string out;
    EXPECT_FALSE(parse(content, &out));
    const int lscStored = static_cast<unsigned char>(content[lscChecksumAt(0)]);
    EXPECT_EQ(out, "LSC information checksum is " + std::to_string(lscStored ^ 1) +
                       ", checksum in file is " + std::to_string(lscStored) + ", file " + file +
                       " is invalid!");

    content[awbChecksumAt(0)] ^= 1;
    EXPECT_FALSE(parse(content, &out));
    EXPECT_EQ(out.rfind("AWB information checksum is ", 0), 0u) << out;
    EXPECT_EQ(out.find("LSC"), std::string::npos);
    EXPECT_FALSE(record.valid());
}

TEST_F(EepromCalibrationDataTest, ShortFilesFailWithoutReadingPastTheEnd) {
    const std::string full = awbLscFile(bytes({1, 2, 3}));
    for (size_t size : {0u, 1u, 17u, 18u, 1812u}) {
        std::string out;
        EXPECT_FALSE(parse(full.substr(0, size), &out)) << size;
        EXPECT_NE(out.find("is cut short (file size " + std::to_string(size) + ")"), std::string::npos)
            << out;
    }
    EXPECT_TRUE(parse(full.substr(0, 1813)));
}

TEST_F(EepromCalibrationDataTest, DumpPrintsTheLayoutAndTheBytes) {
    std::string zeros(1810, '\0');
    zeros[awbChecksumAt(0)] = 1;
    zeros[lscChecksumAt(0)] = 1;
    ASSERT_TRUE(parse(zeros));
    testing::internal::CaptureStdout();
    record.dump();
    std::string hex(2 * 1810, '0');
    hex[2 * 14 + 1] = '1';
    hex[2 * 1809 + 1] = '1';
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        file +
            ":\nmaintain format:\n"
            "|1 byte |len byte|1 byte  |12 byte   |1 byte| |19 byte |1775 byte |1 byte      |\n"
            "|fuselen|fuseId  |reserved|awb info |awb checksum |reserved|lsc info  |lsc "
            "checksum|\n"
            "contents:\n" +
            hex + "\n");
}

}  // namespace
