#include "eeprom/eeprombindata.h"

#include <gtest/gtest.h>

#include "platform/host/propertystore.h"
#include "tests/support/tempdir.h"
#include "tests/support/testfiles.h"

namespace {

class EepromBinDataTest : public testing::Test {
  protected:
    void SetUp() override { PropertyStore::process().clear(); }
    void TearDown() override { PropertyStore::process().clear(); }

    static void setProperty(const std::string& name, const std::string& value) {
        PropertyStore::process().set(name, value);
    }

    // A blob of `size` bytes whose checksum byte (when it has one) is `checksum`.
    std::string blob(size_t size, int checksum) {
        std::string content(size, '\x5A');
        if (size > 8099) content[8099] = static_cast<char>(checksum);
        writeFile(dir.file("abc123.bin"), content);
        return dir.file("abc123.bin");
    }

    TempDir dir;
    EepromBinData data;
};

TEST_F(EepromBinDataTest, FuseIdOfThePath) {
    for (const auto& [path, fuseId] :
         std::vector<std::pair<std::string, std::string>>{{"/sdcard/ABC123.bin", "abc123"},
                                                          {"ABC123", "abc123"},
                                                          {"/data/x.bin.bak", "x"},
                                                          {"/data/old.bin/ABC.bin", "abc.bin"},
                                                          {"/data/", ""}}) {
        data.read(path);
        EXPECT_EQ(data.parsePath(), fuseId) << path;
    }
}

TEST_F(EepromBinDataTest, NameMatchesWhenAFittedFuseIdContainsIt) {
    data.read("/sdcard/abc.bin");
    EXPECT_FALSE(data.checkFuseIdPass());  // no fuse-ID property at all
    setProperty("vendor.camera.sensor.rearTele.fuseID", "ZZZ");
    EXPECT_FALSE(data.checkFuseIdPass());
    setProperty("vendor.camera.sensor.w.fuseID", "XABCY");
    EXPECT_TRUE(data.checkFuseIdPass());
    data.read("/sdcard/abd.bin");
    EXPECT_FALSE(data.checkFuseIdPass());
}

TEST_F(EepromBinDataTest, FittedFuseIdsAreSortedWithoutDuplicates) {
    setProperty("vendor.camera.sensor.w.fuseID", "B");
    setProperty("vendor.camera.sensor.rearMain.fuseID", "B");
    setProperty("vendor.camera.sensor.frontAux.fuseID", "A");
    std::vector<std::string> fuseIds = {"C"};
    data.getAllFuseId(fuseIds);
    EXPECT_EQ(fuseIds, (std::vector<std::string>{"A", "B", "C"}));
}

TEST_F(EepromBinDataTest, ChecksumByteAgainstThePublishedValue) {
    ASSERT_TRUE(data.read(blob(9000, 0x0A)));
    EXPECT_FALSE(data.check());  // nothing published
    for (const auto& [published, agrees] :
         std::vector<std::pair<std::string, bool>>{{"0a", true},
                                                   {"0A", true},
                                                   {"A", false},
                                                   {"10", false},
                                                   {"0x0A", false},
                                                   {"0A ", false}}) {
        setProperty("vendor.camera.sensor.qz.dualcal.checksum", published);
        EXPECT_EQ(data.check(), agrees) << published;
    }
}

TEST_F(EepromBinDataTest, HighChecksumBytesAreUnsignedOnEveryPlatform) {
    for (int byte : {0xAB, 0xC3, 0xFF, 0x80}) {
        ASSERT_TRUE(data.read(blob(8100, byte)));
        char text[3];
        snprintf(text, sizeof text, "%02x", byte);
        setProperty("vendor.camera.sensor.qz.dualcal.checksum", text);
        EXPECT_TRUE(data.check()) << text;
        setProperty("vendor.camera.sensor.qz.dualcal.checksum", "FF");
        EXPECT_EQ(data.check(), byte == 0xFF) << text;
    }
}

TEST_F(EepromBinDataTest, BlobWithoutItsChecksumByteIsRefused) {
    setProperty("vendor.camera.sensor.qz.dualcal.checksum", "5A");
    ASSERT_TRUE(data.read(blob(8099, 0)));
    EXPECT_FALSE(data.check());
    EXPECT_FALSE(data.read(dir.file("missing.bin")));
    EXPECT_FALSE(data.check());
    EepromBinData empty;
    EXPECT_FALSE(empty.read(dir.file("missing.bin")));
    EXPECT_FALSE(empty.check());
}

}  // namespace
