#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/crc16ccitt.h"
#include "base/decimal.h"
#include "base/filereader.h"
#include "tests/support/testfiles.h"

namespace {

TEST(CRC16CCITT, GivesTheKermitValuesAndReadsNothingOutsideItsBuffer) {
    // A byte with the top bit set catches a sign-extended byte on the host's signed char.
    const std::pair<std::string, int> cases[] = {
        {"123456789", 0x2189},     {"A", 0x538D},
        {"\xFF", 0x0F78},          {std::string(2, '\0') + "A", 0x538D},
        {std::string(3, '\0'), 0}, {"", 0}};
    for (const auto& [text, crc] : cases) {
        const auto* data = reinterpret_cast<const unsigned char*>(text.data());
        EXPECT_EQ(CRC16CCITT(data, static_cast<int>(text.size())).process(), crc) << text;
        const size_t half = text.size() / 2;
        EXPECT_EQ(
            CRC16CCITT::update(CRC16CCITT::update(0, text.substr(0, half)), text.substr(half)), crc)
            << text;
    }
    EXPECT_EQ(CRC16CCITT(nullptr, 9).process(), 0);
    EXPECT_EQ(CRC16CCITT(reinterpret_cast<const unsigned char*>("1"), -1).process(), 0);
}

TEST(LeadingDecimal, ReadsLikeTheStandardConversion) {
    const std::pair<std::string, std::optional<int>> cases[] = {
        {"0004", 4},  {" \t-001", -1}, {"+12ab", 12},      {"2147483647", 2147483647}, {"", {}},
        {"xx12", {}}, {"- 1", {}},     {"2147483648", {}}, {"-2147483649", {}}};
    for (const auto& [text, value] : cases) EXPECT_EQ(leadingDecimal(text), value) << text;
}

TEST(FileReader, TakesOnlyRegularFilesUpToTheCapAndSaysWhy) {
    const std::string dir = testing::TempDir() + "/reader." + std::to_string(getpid());
    ASSERT_EQ(mkdir(dir.c_str(), 0700), 0);
    writeFile(dir + "/file", "abc");
    ASSERT_EQ(symlink((dir + "/file").c_str(), (dir + "/link").c_str()), 0);
    writeFile(dir + "/large", "");
    ASSERT_EQ(truncate((dir + "/large").c_str(), kMaxFileSize + 1), 0);
    // name, links, and what the read gives: its bytes or why it gave none (FIFOs and devices are
    // the runs table's)
    // clang-format off
    const std::tuple<std::string, Links, std::string> cases[] = {
        {"/file", Links::refuse, "abc"}, {"/link", Links::follow, "abc"},
        {"/link", Links::refuse, "a symbolic link"}, {"/missing", Links::follow,
        "No such file or directory"}, {"", Links::follow, "Is a directory"},
        {"/large", Links::follow, "larger than 16 MiB"}};
    // clang-format on
    for (const auto& [name, links, expected] : cases) {
        const FileRead read = readFile(dir + name, links);
        EXPECT_EQ(read.ok() ? read.bytes : read.reason(), expected) << name;
    }
    for (const char* name : {"/file", "/link", "/large"}) unlink((dir + name).c_str());
    rmdir(dir.c_str());
}

}  // namespace
