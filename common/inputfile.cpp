#include "common/inputfile.h"

#include <cstdio>

FileRead readInputFile(const std::string& path) {
    FileRead read = readFile(path, Links::follow);
    if (!read.ok() && read.status != FileRead::Status::absent) {
        fprintf(stderr, "Error:cannot read %s: %s\n", path.c_str(), read.reason().c_str());
    }
    return read;
}
