#include "tests/support/testfiles.h"

#include <dirent.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
}

bool fileExists(const std::string& path) {
    struct stat info;
    return lstat(path.c_str(), &info) == 0;
}

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (int value : values) text += static_cast<char>(value);
    return text;
}

std::string readToEnd(int fd) {
    std::string text;
    char buffer[4096];
    for (ssize_t count; (count = read(fd, buffer, sizeof buffer)) > 0;) text.append(buffer, count);
    close(fd);
    return text;
}

std::vector<std::string> directoryEntries(const std::string& directory) {
    std::vector<std::string> names;
    DIR* dir = opendir(directory.c_str());
    if (dir == nullptr) return names;
    while (dirent* entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

std::string makeScratchDirectory() {
    const char* tmp = getenv("TMPDIR");
    std::string path = std::string(tmp != nullptr && *tmp ? tmp : "/tmp") + "/optoquill-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) abort();
    return path;
}

void removeTree(const std::string& path) {
    auto removeEntry = [](const char* entry, const struct stat*, int, FTW*) {
        return remove(entry);
    };
    nftw(path.c_str(), removeEntry, 16, FTW_DEPTH | FTW_PHYS);
}
