#include "awblsc/awblscrecord.h"

#include <gtest/gtest.h>

#include "tests/support/awblscfile.h"
#include "tests/support/testfiles.h"

namespace {

TEST(AwbLscRecord, BlocksFollowTheFuseIdAndAShortFileLacksThem) {
    std::string outside = awbLscFile(bytes({0xAB}));
    for (size_t offset : {2u, 3u, 4u, 5u, 16u, 34u, 35u, 36u, 37u}) outside[offset] ^= 0x5A;
    const std::string full = awbLscFile(bytes({1, 2, 3}));
    const struct {
        std::string bytes;
        bool awbPresent, awbOk, lscPresent, lscOk;
        const char* fuseId;
    } cases[] = {
        {awbLscFile(bytes({0xF0, 0x0D})) + "trailing", true, true, true, true, "F00D"},
        {outside, true, true, true, true, "AB"},
        {full.substr(0, 17), false, false, false, false, "010203"},
        {full.substr(0, 18), true, true, false, false, "010203"},
        {full.substr(0, 1812), true, true, false, false, "010203"},
        {full.substr(0, 1813), true, true, true, true, "010203"},
        {"", false, false, false, false, ""},
    };
    for (const auto& c : cases) {
        const AwbLscRecord r = AwbLscRecord::decode({c.bytes.begin(), c.bytes.end()});
        EXPECT_EQ(
            std::make_tuple(r.awb.present, r.awb.ok(), r.lsc.present, r.lsc.ok(), r.fuseIdHex),
            std::make_tuple(c.awbPresent, c.awbOk, c.lscPresent, c.lscOk, std::string(c.fuseId)))
            << c.bytes.size();
    }
}

}  // namespace
