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
    std::string error;
    if (environment.hasPropertiesFile && !store.loadFile(environment.propertiesFile, &error)) {
        fprintf(stderr, "optoquill: cannot read properties file %s: %s\n",
                environment.propertiesFile.c_str(), error.c_str());
        exit(2);
    }
    return store;
}

}  // namespace

bool PropertyStore::loadFile(const std::string& file, std::string* error) {
    std::string text;
    int code = 0;
    if (!readFile(file, &text, &code)) {
        *error = strerror(code);
        return false;
    }
    values.clear();
    loadText(text);
    return true;
}

void PropertyStore::loadText(const std::string& text) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        addLine(text.substr(start, end - start));
        start = end + 1;
    }
}

void PropertyStore::addLine(std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') return;

    // getprop prints "[name]: [value]".
    static const std::string kBetween = "]: [";
    size_t between = line.find(kBetween);
    if (line[0] == '[' && between != std::string::npos && line.back() == ']') {
        size_t valueStart = between + kBetween.size();
        set(line.substr(1, between - 1), line.substr(valueStart, line.size() - 1 - valueStart));
        return;
    }
    size_t equals = line.find('=');
    if (equals != std::string::npos) set(line.substr(0, equals), line.substr(equals + 1));
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
