#include "tests/support/tempdir.h"

#include <ftw.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <vector>

namespace {

int removeEntry(const char* path, const struct stat*, int, FTW*) {
    return remove(path);
}

}  // namespace

TempDir::TempDir() {
    std::string pattern = testing::TempDir() + "optoquill-unit-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (mkdtemp(name.data()) == nullptr) abort();
    root = name.data();
}

TempDir::~TempDir() {
    nftw(root.c_str(), removeEntry, 16, FTW_DEPTH | FTW_PHYS);
}
