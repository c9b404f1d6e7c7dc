#include "platform/host/propertystore.h"

#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

std::string valueOf(const PropertyStore& store, const std::string& name) {
    const std::string* value = store.find(name);
    return value != nullptr ? *value : "<unset>";
}

TEST(PropertyStore, ReadsBuildPropAndGetpropLines) {
    PropertyStore store;
    std::vector<int> skipped;
    store.loadText(
        "# comment=ignored\n"
        "\n"
        "vendor.a=xxxx0004AB12\n"
        "[vendor.b]: [value with ]: [inside]\n"
        "vendor.c=a=b \r\n"
        "vendor.a=later wins\n"
        "vendor.empty=\n"
        "[vendor.d]: []\n"
        "not a property line\n"
        "=no name\n"
        "vendor.last=no newline",
        &skipped);
    EXPECT_EQ(skipped, (std::vector<int>{9, 10}));
    EXPECT_EQ(valueOf(store, "vendor.a"), "later wins");
    EXPECT_EQ(valueOf(store, "vendor.b"), "value with ]: [inside");
    EXPECT_EQ(valueOf(store, "vendor.c"), "a=b ");
    EXPECT_EQ(valueOf(store, "vendor.empty"), "");
    EXPECT_EQ(valueOf(store, "vendor.d"), "");
    EXPECT_EQ(valueOf(store, "vendor.last"), "no newline");
    EXPECT_EQ(valueOf(store, "# comment"), "<unset>");
    EXPECT_EQ(valueOf(store, "not a property line"), "<unset>");
}

TEST(PropertyStore, CutsValuesToWhatADeviceHolds) {
    PropertyStore store;
    store.set("long", std::string(100, 'v'));
    EXPECT_EQ(valueOf(store, "long"), std::string(91, 'v'));
}

TEST(PropertyStore, UnreadableFileIsAnErrorAndKeepsTheStore) {
    PropertyStore store;
    store.set("kept", "1");
    std::string error;
    EXPECT_FALSE(store.loadFile("/nonexistent/properties", &error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_FALSE(store.loadFile("/", &error));
    EXPECT_EQ(error, "Is a directory");
    EXPECT_EQ(valueOf(store, "kept"), "1");

    std::string file = testing::TempDir() + "optoquill-properties";
    std::ofstream(file) << "[from.file]: [yes]\n";
    EXPECT_TRUE(store.loadFile(file, &error));
    EXPECT_EQ(valueOf(store, "from.file"), "yes");
    EXPECT_EQ(valueOf(store, "kept"), "<unset>");
}

TEST(PropertyGet, EmptyOrUnsetValuesGiveTheDefaultOrNothing) {
    PropertyStore& store = PropertyStore::process();
    store.clear();
    store.set("vendor.set", "value");
    store.set("vendor.empty", "");
    char value[PROPERTY_VALUE_MAX];
    EXPECT_EQ(property_get("vendor.set", value, "default"), 5);
    EXPECT_STREQ(value, "value");
    EXPECT_EQ(property_get("vendor.empty", value, nullptr), 0);
    EXPECT_STREQ(value, "");
    EXPECT_EQ(property_get("vendor.unset", value, "default"), 7);
    EXPECT_STREQ(value, "default");
    store.set("vendor.long", std::string(200, 'x'));
    EXPECT_EQ(property_get("vendor.long", value, nullptr), PROPERTY_VALUE_MAX - 1);
    store.clear();
}

}  // namespace
