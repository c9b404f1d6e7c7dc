#include "platform/host/propertystore.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/filereader.h"
#include "base/text.h"
#include "platform/host/hostenvironment.h"

namespace {

constexpr std::string_view kGetpropBetween = "]: [";

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
    // getprop prints a value that holds line breaks as it is: "[name]: [first line", the
    // further lines, the last one ending in "]". `open` is such a value's first line number.
    int number = 0;
    int open = 0;
    std::string value;
    forEachLine(text, [&](std::string_view line) {
        ++number;
        if (line.find('\0') != std::string_view::npos) {
            warn(number, "holds a NUL byte, the value is cut there");
        }
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (open != 0) {
            value.append("\n").append(line);
            if (!line.empty() && line.back() == ']') {
                addLine(value);
                open = 0;
            }
        } else if (opensMultiLineValue(line)) {
            value.assign(line);
            open = number;
        } else if (!addLine(line)) {
            warn(number, "is neither name=value nor [name]: [value], skipped");
        }
    });
    if (open != 0) {
        warn(open, "opens a [name]: [value that no later line closes with ], skipped to the end");
    }
}

bool PropertyStore::opensMultiLineValue(std::string_view line) {
    return !line.empty() && line[0] == '[' &&
           line.find(kGetpropBetween) != std::string_view::npos && line.back() != ']';
}

bool PropertyStore::addLine(std::string_view line) {
    if (line.empty() || line[0] == '#') return true;

    // getprop prints "[name]: [value]".
    const size_t between = line.find(kGetpropBetween);
    if (line[0] == '[' && between != std::string_view::npos && line.back() == ']') {
        const size_t valueStart = between + kGetpropBetween.size();
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
