#include "platform/host/propertystore.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/filereader.h"
#include "platform/host/hostenvironment.h"

namespace {

PropertyStore loadProcessStore() {
    PropertyStore store;
    const HostEnvironment& environment = HostEnvironment::process();
    if (environment.propertiesFile.empty()) return store;
    std::string error;
    std::vector<PropertyStore::Warning> warnings;
    if (!store.loadFile(environment.propertiesFile, &error, &warnings)) {
        fprintf(stderr, "optoquill: cannot read properties file %s: %s\n",
                environment.propertiesFile.c_str(), error.c_str());
        exit(2);
    }
    // A typo must not leave a property unset unnoticed; the run goes on.
    for (const PropertyStore::Warning& warning : warnings) {
        fprintf(stderr, "optoquill: properties file %s, line %d %s\n",
                environment.propertiesFile.c_str(), warning.line, warning.what);
    }
    return store;
}

}  // namespace

bool PropertyStore::loadFile(const std::string& file, std::string* error,
                             std::vector<Warning>* warnings) {
    const FileRead read = readFile(file, Links::follow);
    if (!read.ok()) {
        *error = read.reason();
        return false;
    }
    values.clear();
    loadText(read.bytes, warnings);
    return true;
}

void PropertyStore::loadText(std::string_view text, std::vector<Warning>* warnings) {
    auto warn = [warnings](int line, const char* what) {
        if (warnings != nullptr) warnings->push_back({line, what});
    };
    static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
        warn(1, "starts with a byte-order mark, which is skipped");
    }
    size_t start = 0;
    for (int number = 1; start < text.size(); ++number) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        const std::string_view line = text.substr(start, end - start);
        if (line.find('\0') != std::string_view::npos) {
            warn(number, "holds a NUL byte, the value is cut there");
        }
        if (!addLine(line)) warn(number, "is neither name=value nor [name]: [value], skipped");
        start = end + 1;
    }
}

bool PropertyStore::addLine(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty() || line[0] == '#') return true;

    // getprop prints "[name]: [value]".
    static constexpr std::string_view kBetween = "]: [";
    const size_t between = line.find(kBetween);
    if (line[0] == '[' && between != std::string_view::npos && line.back() == ']') {
        const size_t valueStart = between + kBetween.size();
        set(std::string(line.substr(1, between - 1)),
            std::string(line.substr(valueStart, line.size() - 1 - valueStart)));
        return true;
    }
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0) return false;
    set(std::string(line.substr(0, equals)), std::string(line.substr(equals + 1)));
    return true;
}

void PropertyStore::set(const std::string& name, const std::string& value) {
    // A device's property ends at its first NUL and holds at most 91 bytes.
    values[name] = value.substr(0, std::min(value.find('\0'), size_t{PROPERTY_VALUE_MAX - 1}));
}

const std::string* PropertyStore::find(const std::string& name) const {
    auto found = values.find(name);
    return found == values.end() ? nullptr : &found->second;
}

PropertyStore& PropertyStore::process() {
    static PropertyStore store = loadProcessStore();
    return store;
}
