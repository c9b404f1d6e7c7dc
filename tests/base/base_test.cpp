#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/crc16ccitt.h"
#include "base/filereader.h"
#include "base/parseint.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/uniquefd.h"
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

// Each text read as std::stoi (empty where it throws), as atoi on the device (strtol's 64 bits,
// saturated, then the low 32), and whole, as ParseInt takes it.
TEST(ParseInt, ReadsAsTheStandardConversionsDoWithoutUndefinedBehaviour) {
    const std::tuple<std::string, std::optional<int>, int, std::optional<long long>> cases[] = {
        {"0004", 4, 4, 4},
        {" \t-001", -1, -1, -1},
        {"+12ab", 12, 12, {}},
        {"7:", 7, 7, {}},
        {"2147483647", 2147483647, 2147483647, 2147483647},
        {"2147483648", {}, INT32_MIN, 2147483648LL},
        {"-2147483649", {}, 2147483647, -2147483649LL},
        {"4294967296", {}, 0, 4294967296LL},
        {"9223372036854775807", {}, -1, INT64_MAX},
        {"99999999999999999999", {}, -1, {}},
        {"-9223372036854775808", {}, 0, INT64_MIN},
        {"-99999999999999999999", {}, 0, {}},
        {"", {}, 0, {}},
        {"xx12", {}, 0, {}},
        {"- 1", {}, 0, {}}};
    for (const auto& [text, stoi, atoi, whole] : cases) {
        EXPECT_EQ(leadingInt(text), stoi) << text;
        EXPECT_EQ(atoiOnDevice(text), atoi) << text;
        EXPECT_EQ(parseInt(text, INT64_MIN, INT64_MAX), whole) << text;
    }
    EXPECT_EQ(parseInt("300", 0, 299), std::nullopt);
    EXPECT_EQ(parseInt("-1", 0, 299), std::nullopt);
    const std::pair<std::string, std::optional<long long>> hex[] = {
        {"ab", 0xAB}, {" -F", -15}, {"0x1f", 0x1F}, {"0x", 0}, {"0xg", 0}, {"g", {}}};
    for (const auto& [text, value] : hex) {
        EXPECT_EQ(parseInt(text, INT64_MIN, INT64_MAX, Rest::ignore, 16), value) << text;
    }
}

TEST(Text, CutsQuotesAndWritesHex) {
    EXPECT_EQ(splitAt("ae,,af,", ','), (std::vector<std::string_view>{"ae", "", "af", ""}));
    EXPECT_EQ(splitAt("", ','), (std::vector<std::string_view>{""}));
    std::vector<std::string_view> lines;
    forEachLine("a\n\nb\r\nc", [&lines](std::string_view line) { lines.push_back(line); });
    EXPECT_EQ(lines, (std::vector<std::string_view>{"a", "", "b\r", "c"}));
    EXPECT_EQ(quoted("A,\"\\\n\r\t\x01\x7F\xC3\xA9"), "\"A,\\\"\\\\\\n\\r\\t\\x01\\x7F\xC3\xA9\"");
    EXPECT_EQ(hexText(std::string("\x0A\xBC\xFF", 3), 1, 9), "BCFF");
    EXPECT_EQ(hexByte(0x0A) + " " + hex4(0xBEEF), "0A 0xBEEF");
    const std::tuple<const char*, const char*, const char*> paths[] = {
        {"a", ".", "a"}, {"/a", "/", "a"}, {"/a/b", "/a", "b"}, {"a/b/", "a/b", ""}};
    for (const auto& [path, directory, base] : paths) {
        EXPECT_EQ(directoryOf(path) + "|" + baseName(path), std::string(directory) + "|" + base);
    }
}

TEST(UniqueFd, MovesItsDescriptorAndKeepsItOnASelfMove) {
    UniqueFd from(open("/dev/null", O_RDONLY | O_CLOEXEC));
    const int fd = from.get();
    UniqueFd to;
    to = std::move(from);
    UniqueFd& same = to;
    to = std::move(same);
    EXPECT_EQ(std::make_pair(from.get(), to.get()), std::make_pair(-1, fd));
}

TEST(FileReader, TakesOnlyRegularFilesUpToTheCapAndSaysWhy) {
    const std::string dir = testing::TempDir() + "/reader." + std::to_string(getpid());
    ASSERT_EQ(mkdir(dir.c_str(), 0700), 0);
    writeFile(dir + "/file", "abc");
    writeFile(dir + "/empty", "");
    ASSERT_EQ(symlink((dir + "/file").c_str(), (dir + "/link").c_str()), 0);
    writeFile(dir + "/large", "");
    ASSERT_EQ(truncate((dir + "/large").c_str(), kMaxFileSize + 1), 0);
    // name, links, and what the read gives: its bytes or why it gave none (FIFOs and devices are
    // the runs table's)
    // clang-format off
    const std::tuple<std::string, Links, std::string> cases[] = {
        {"/file", Links::refuse, "abc"}, {"/empty", Links::refuse, ""}, {"/link", Links::follow, "abc"},
        {"/link", Links::refuse, "a symbolic link"}, {"/missing", Links::follow,
        "No such file or directory"}, {"", Links::follow, "Is a directory"},
        {"/large", Links::follow, "larger than 16 MiB"}};
    // clang-format on
    for (const auto& [name, links, expected] : cases) {
        const FileRead read = readFile(dir + name, links);
        EXPECT_EQ(read.ok() ? read.bytes : read.reason(), expected) << name;
    }
    for (const char* name : {"/file", "/empty", "/link", "/large"}) unlink((dir + name).c_str());
    rmdir(dir.c_str());
}

}  // namespace
