#include <android/log.h>
#include <cutils/properties.h>
#include <gtest/gtest.h>

#include "platform/host/hostlog.h"
#include "platform/host/propertystore.h"

namespace {

TEST(HostLog, FormatsOneLinePerMessage) {
    // clang-format off
    const std::tuple<int, const char*, const char*> cases[] = {
        {ANDROID_LOG_DEBUG, "data file size 14", "D/T: data file size 14\n"},
        {ANDROID_LOG_INFO, "proertyId:x \n\n", "I/T: proertyId:x \n"},
        {ANDROID_LOG_ERROR, "a\nb\n", "E/T: a\nb\n"}, {ANDROID_LOG_VERBOSE, "", "V/T: \n"},
        {ANDROID_LOG_WARN, "\n", "W/T: \n"}, {ANDROID_LOG_FATAL, "f", "F/T: f\n"}};
    // clang-format on
    for (const auto& [priority, message, line] : cases) {
        EXPECT_EQ(formatLogLine(priority, "T", message), line);
    }
}

TEST(PropertyStore, ReadsBuildPropAndGetpropLinesAsADeviceHoldsThem) {
    PropertyStore& store = PropertyStore::process();
    store.clear();
    std::vector<int> skipped;
    store.loadText(
        "# comment=ignored\n\nvendor.a=xxxx0004AB12\n[vendor.b]: [value with ]: [inside]\n"
        "vendor.c=a=b \r\nvendor.a=later wins\nvendor.empty=\n[vendor.d]: []\n"
        "not a property line\n=no name\nvendor.long=" +
            std::string(100, 'v') + "\nvendor.last=no newline",
        &skipped);
    EXPECT_EQ(skipped, (std::vector<int>{9, 10}));
    // name, property_get's result and value (with a default of "default")
    // clang-format off
    const std::tuple<const char*, int, std::string> cases[] = {
        {"vendor.a", 10, "later wins"}, {"vendor.b", 21, "value with ]: [inside"},
        {"vendor.c", 4, "a=b "}, {"vendor.empty", 7, "default"}, {"vendor.d", 7, "default"},
        {"vendor.long", PROPERTY_VALUE_MAX - 1, std::string(PROPERTY_VALUE_MAX - 1, 'v')},
        {"vendor.last", 10, "no newline"}, {"# comment", 7, "default"},
        {"not a property line", 7, "default"}};
    // clang-format on
    for (const auto& [name, length, text] : cases) {
        char value[PROPERTY_VALUE_MAX];
        EXPECT_EQ(property_get(name, value, "default"), length) << name;
        EXPECT_EQ(value, text) << name;
    }
    char value[PROPERTY_VALUE_MAX];
    EXPECT_EQ(property_get("vendor.empty", value, nullptr), 0);
    EXPECT_STREQ(value, "");
    EXPECT_EQ(property_get("vendor.unset", value, std::string(200, 'd').c_str()), 91);
    store.clear();
}

}  // namespace
