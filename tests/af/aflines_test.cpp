#include "af/aflines.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "base/fieldlines.h"
#include "base/text.h"

namespace {

// The split has always been the regex token split on "\s*,\s*" of each line as getline cuts
// them; the one-pass scan of a whole file must give the same lines and fields, wherever lines
// and commas fall in its blocks.
TEST(AfLines, SplitIsTheRegexTokenSplit) {
    const std::regex separator("\\s*,\\s*", std::regex::ECMAScript);
    const auto regexSplit = [&separator](const std::string& line) {
        return std::vector<std::string>(
            std::sregex_token_iterator(line.begin(), line.end(), separator, -1),
            std::sregex_token_iterator());
    };
    const auto bareSplit = [](std::string_view line) {  // no blank beside a comma
        for (size_t i = 0; i < line.size(); ++i) {
            if (line[i] == ',' && ((i > 0 && isBlank(line[i - 1])) ||
                                   (i + 1 < line.size() && isBlank(line[i + 1])))) {
                return false;
            }
        }
        return true;
    };
    // Every other text without blanks but line breaks, as the stores write them; line breaks
    // one byte in four, or in sixty, so that lines span blocks; now and then a text long enough
    // to fill the room kept for the fields' starts.
    const char alphabet[] = {'x', ',', '\xa0', ' ', '\t', '\v', '\f', '\r', '\0', '\x85'};
    std::mt19937 random(12);
    for (int round = 0; round < 30000; ++round) {
        std::string text(random() % (round % 500 == 2 ? 9000 : 200), ' ');
        const unsigned breaks = round % 4 < 2 ? 4 : 60;
        for (char& c : text) {
            c = random() % breaks == 0
                    ? '\n'
                    : alphabet[random() % (round % 2 == 0 ? 3 : sizeof alphabet)];
        }
        FieldLines::Fields fields;
        EXPECT_EQ(FieldLines::split(text, &fields), bareSplit(text)) << testing::PrintToString(text);
        ASSERT_EQ(std::vector<std::string>(fields.begin(), fields.end()), regexSplit(text))
            << testing::PrintToString(text);

        std::vector<std::string_view> lines;
        forEachLine(text, [&lines](std::string_view line) { lines.push_back(line); });
        size_t count = 0;
        FieldLines::forEach(text, &fields,
                            [&](std::string_view line, const FieldLines::Fields&, bool bare) {
                                ASSERT_LT(count, lines.size()) << testing::PrintToString(text);
                                ASSERT_EQ(line, lines[count++]) << testing::PrintToString(text);
                                EXPECT_EQ(bare, bareSplit(line)) << testing::PrintToString(text);
                                ASSERT_EQ(std::vector<std::string>(fields.begin(), fields.end()),
                                          regexSplit(std::string(line)))
                                    << testing::PrintToString(text);
                            });
        EXPECT_EQ(count, lines.size()) << testing::PrintToString(text);
    }
}

// A text the store accepts is exactly one that the loader reads back as itself between two
// other fields.
TEST(AfLines, AStorableTextReadsBackAsItself) {
    const std::regex separator("\\s*,\\s*", std::regex::ECMAScript);
    const char alphabet[] = {'x', ',', ' ', '\t', '\n', '\v', '\f', '\r', '\0', '\xa0'};
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 5, ' ');
        for (char& c : text) c = alphabet[random() % sizeof alphabet];
        const std::string line = "a," + text + ",b";
        const std::vector<std::string> fields(
            std::sregex_token_iterator(line.begin(), line.end(), separator, -1),
            std::sregex_token_iterator());
        const bool readsBack = text.find('\n') == std::string::npos &&
                               fields == std::vector<std::string>{"a", text, "b"};
        ASSERT_EQ(unstorableTextReason(text) == nullptr, readsBack) << testing::PrintToString(text);
    }
}

TEST(AfLines, DecodeAndEncodeAsTheLoaderAndTheWritersDo) {
    struct Case {
        bool pdOffset;
        const char* line;
        LineStatus status;
        int columns, values;
        bool sfr;
        uint16_t stored, computed;
        bool asWritten;  // the line is exactly what a writer writes for it
    };
    const LineStatus ok = LineStatus::ok, count = LineStatus::columnCount,
                     nan = LineStatus::lengthNotANumber;
    for (const Case& c : {
             Case{false, "0 ,0,ABC123,50,300,30, 30010x", ok, 7, 0, false, 30010, 30010, false},
             Case{false, "1,0,A,1,2,3,-1", ok, 7, 0, false, 65535, 18270, false},
             Case{false, "1,0,A,1,2,3,18270", ok, 7, 0, false, 18270, 18270, true},
             Case{false, "1,0,A,1,2,3,0", ok, 7, 0, false, 0, 18270, true},
             Case{false, "1,0,A,1,2,3,018270", ok, 7, 0, false, 18270, 18270, false},
             Case{false, "1,0,A,1,2,3,01", ok, 7, 0, false, 1, 18270, false},
             Case{false, "1,0,A,1,2,3,65536", ok, 7, 0, false, 0, 18270, false},
             Case{false, "1,0,A,1,2,3,18270,", ok, 7, 0, false, 18270, 18270, false},
             Case{false, "1,0,A,1,2,3,99999999999999999999", ok, 7, 0, false, 65535, 18270, false},
             Case{false, "1,0,A,1,2,3,-9223372036854775809", ok, 7, 0, false, 0, 18270, false},
             Case{false, "1,0,A,1,2,3,9223372036854775807", ok, 7, 0, false, 65535, 18270, false},
             Case{false, "1,0,A,1,2,3,-65537", ok, 7, 0, false, 65535, 18270, false},
             Case{false, "1,0,A,1,2,3,", count, 6, 0, false, 0, 0, false},
             Case{true, "1,0,ABC123,2,1.5,-2,41386", ok, 7, 2, false, 41386, 41386, true},
             Case{true, "1,0,ABC123, +2x,1.5,-2,1,2,3,4,5,6,7,8,x", ok, 15, 2, true, 0, 15195, false},
             Case{true, "1,0,F,2,0.5", count, 5, 0, false, 0, 0, false},
             Case{true, "1,0,F,-1,a,b,c,d", count, 8, 0, false, 0, 0, false},
             Case{true, "1,0,F,2147483648,a,b", nan, 6, 0, false, 0, 0, false},
             Case{true, "1,0,F,x1,a,b", nan, 6, 0, false, 0, 0, false},
         }) {
        const DecodedLine d = c.pdOffset ? decodePdOffsetLine(c.line) : decodeAfLine(c.line);
        EXPECT_EQ(testing::PrintToString(std::make_tuple(d.status, d.columnCount, d.valueCount,
                                                         d.hasSfrData, d.storedCrc, d.computedCrc,
                                                         d.asWritten)),
                  testing::PrintToString(std::make_tuple(c.status, c.columns, c.values, c.sfr,
                                                         c.stored, c.computed, c.asWritten)))
            << c.line;
    }
    std::string lines;
    appendStoredLine(&lines, "1,0,A,1,2,3,", 18270);
    appendStoredLine(&lines, "1,0,F,1,0.5,a,,", 0);
    EXPECT_EQ(lines, "1,0,A,1,2,3,18270\n1,0,F,1,0.5,a,,0\n");
}

}  // namespace
