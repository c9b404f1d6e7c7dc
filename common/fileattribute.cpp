#include "common/fileattribute.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/uniquefd.h"
#include "common/persistlock.h"

bool reportFileAttribute(char const* file, int chmodError, int chownError) {
    if (chmodError != 0) {
        fprintf(stdout, "Error: fail to change permissions of %s to 0644: %s", file,
                strerror(chmodError));
    }
    if (chownError != 0) {
        fprintf(stderr, "Error changing group ownership of %s to %d: %s", file, kSystemId,
                strerror(chownError));
    }
    return chmodError == 0 && chownError == 0;
}

bool applyFileAttribute(int fd, char const* file) {
    const int chmodError = fchmod(fd, kCalibrationFileMode) < 0 ? errno : 0;
    const int chownError = fchown(fd, kSystemId, kSystemId) < 0 ? errno : 0;
    return reportFileAttribute(file, chmodError, chownError);
}

void changeFileAttribute(char const* file) {
    // Whoever can write the persist directory could put a link at the name: the attributes go
    // to what stands there, never through it. Non-blocking, so that a FIFO cannot hold us.
    const FileAt at = FileAt::of(file);
    if (at.holdsSpecialFile()) {
        reportFileAttribute(file, EINVAL, EINVAL);
        return;
    }
    UniqueFd fd(
        openat(at.directory, at.name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!fd.valid()) {
        const int error = errno;
        reportFileAttribute(file, error, error);
        return;
    }
    applyFileAttribute(fd.get(), file);
}
