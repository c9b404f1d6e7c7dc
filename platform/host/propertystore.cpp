#include "platform/host/propertystore.h"

#include <cutils/properties.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "common/uniquefd.h"
#include "platform/host/hostenvironment.h"

namespace {

bool readFile(const std::string& file, std::string* text, int* error) {
    UniqueFd fd(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid()) {
        *error = errno;
        return false;
    }
    char buffer[4096];
    for (;;) {
        ssize_t count = read(fd.get(), buffer, sizeof buffer);
        if (count > 0) {
            text->append(buffer, static_cast<size_t>(count));
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            *error = errno;
            return false;
        }
    }
    return true;
}

PropertyStore loadProcessStore() {
    PropertyStore store;
    const HostEnvironment& environment = HostEnvironment::process();
    if (environment.propertiesFile.empty()) return store;
    std::string error;
    std::vector<int> skippedLines;
    if (!store.loadFile(environment.propertiesFile, &error, &skippedLines)) {
        fprintf(stderr, "optoquill: cannot read properties file %s: %s\n",
                environment.propertiesFile.c_str(), error.c_str());
        exit(2);
    }
    // A typo must not leave a property unset unnoticed; the run goes on.
    for (int line : skippedLines) {
        fprintf(stderr,
                "optoquill: properties file %s, line %d is neither name=value nor "
                "[name]: [value], skipped\n",
                environment.propertiesFile.c_str(), line);
    }
    return store;
}

}  // namespace

bool PropertyStore::loadFile(const std::string& file, std::string* error,
                             std::vector<int>* skippedLines) {
    std::string text;
    int code = 0;
    if (!readFile(file, &text, &code)) {
        *error = strerror(code);
        return false;
    }
    values.clear();
    loadText(text, skippedLines);
    return true;
}

void PropertyStore::loadText(const std::string& text, std::vector<int>* skippedLines) {
    size_t start = 0;
    for (int number = 1; start < text.size(); ++number) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        if (!addLine(text.substr(start, end - start)) && skippedLines != nullptr) {
            skippedLines->push_back(number);
        }
        start = end + 1;
    }
}

bool PropertyStore::addLine(std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') return true;

    // getprop prints "[name]: [value]".
    static const std::string kBetween = "]: [";
    size_t between = line.find(kBetween);
    if (line[0] == '[' && between != std::string::npos && line.back() == ']') {
        size_t valueStart = between + kBetween.size();
        set(line.substr(1, between - 1), line.substr(valueStart, line.size() - 1 - valueStart));
        return true;
    }
    size_t equals = line.find('=');
    if (equals == std::string::npos || equals == 0) return false;
    set(line.substr(0, equals), line.substr(equals + 1));
    return true;
}

void PropertyStore::set(const std::string& name, const std::string& value) {
    values[name] = value.substr(0, PROPERTY_VALUE_MAX - 1);
}

const std::string* PropertyStore::find(const std::string& name) const {
    auto found = values.find(name);
    return found == values.end() ? nullptr : &found->second;
}

PropertyStore& PropertyStore::process() {
    static PropertyStore store = loadProcessStore();
    return store;
}
