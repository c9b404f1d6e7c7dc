#include "common/fileattribute.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr int kSystemId = 1000;

}  // namespace

bool applyFileAttribute(char const* file) {
    bool ok = true;
    if (chmod(file, 0644) < 0) {
        fprintf(stdout, "Error: fail to change permissions of %s to 0644: %s", file,
                strerror(errno));
        ok = false;
    }
    if (chown(file, kSystemId, kSystemId) < 0) {
        fprintf(stderr, "Error changing group ownership of %s to %d: %s", file, kSystemId,
                strerror(errno));
        ok = false;
    }
    return ok;
}

void changeFileAttribute(char const* file) {
    applyFileAttribute(file);
}
