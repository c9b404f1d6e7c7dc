#include <cutils/properties.h>
#include <gtest/gtest.h>

#include "platform/host/hostsockets.h"
#include "platform/host/propertystore.h"

namespace {

TEST(PropertyStore, ReadsBuildPropAndGetpropLinesAsADeviceHoldsThem) {
    PropertyStore& store = PropertyStore::process();
    store.clear();
    std::vector<PropertyStore::Warning> warnings;
    store.loadText(
        "# comment=ignored\n\nvendor.a=xxxx0004AB12\n[vendor.b]: [value with ]: [inside]\n"
        "vendor.c=a=b \r\n[vendor.history]: [reboot,1\r\nkernel_panic,2\n]\n"
        "vendor.a=later wins\nvendor.empty=\n[vendor.d]: []\n"
        "not a property line\n=no name\nvendor.long=" +
            std::string(100, 'v') +
            "\nvendor.last=last\n[vendor.open]: [never closed\nvendor.swallowed=1",
        &warnings);
    ASSERT_EQ(warnings.size(), 3u);
    EXPECT_EQ(std::make_tuple(warnings[0].line, warnings[1].line, warnings[2].line),
              std::make_tuple(12, 13, 16));
    EXPECT_STREQ(warnings[2].what,
                 "opens a [name]: [value that no later line closes with ], skipped to the end");
    // name, property_get's result and value (with a default of "default")
    // clang-format off
    const std::tuple<const char*, int, std::string> cases[] = {
        {"vendor.a", 10, "later wins"}, {"vendor.b", 21, "value with ]: [inside"},
        {"vendor.c", 4, "a=b "}, {"vendor.empty", 7, "default"}, {"vendor.d", 7, "default"},
        {"vendor.long", PROPERTY_VALUE_MAX - 1, std::string(PROPERTY_VALUE_MAX - 1, 'v')},
        {"vendor.last", 4, "last"}, {"# comment", 7, "default"},
        {"not a property line", 7, "default"}, {"vendor.history", 24, "reboot,1\nkernel_panic,2\n"},
        {"vendor.open", 7, "default"}, {"vendor.swallowed", 7, "default"}};
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

// Android's address: one NUL, then the name, the length covering exactly those; no longer name fits.
TEST(HostSockets, AbstractAddressIsANulAndTheName) {
    sockaddr_un address;
    socklen_t length = 0;
    const std::string longest(sizeof address.sun_path - 1, 'n');
    ASSERT_TRUE(makeAbstractAddress(longest, &address, &length));
    EXPECT_EQ(std::string(address.sun_path, sizeof address.sun_path), '\0' + longest);
    EXPECT_EQ(length, offsetof(sockaddr_un, sun_path) + 1 + longest.size());
    EXPECT_FALSE(makeAbstractAddress(longest + "n", &address, &length));
}

}  // namespace
