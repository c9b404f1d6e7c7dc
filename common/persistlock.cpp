#include "common/persistlock.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>

#include "base/paths.h"
#include "common/devicepaths.h"
#include "common/safefilewriter.h"

namespace {

const PersistLock* heldLock = nullptr;

}  // namespace

PersistLock::PersistLock(LockMode mode, int timeoutMs)
    : PersistLock(persistDirectory(), mode, timeoutMs) {}

PersistLock::PersistLock(std::string directory, LockMode mode, int timeoutMs)
    : directory(std::move(directory)), mode(mode), timeout(timeoutMs) {}

PersistLock::~PersistLock() {
    if (heldLock == this) heldLock = nullptr;
}

PersistLock::Outcome PersistLock::acquire() {
    if (fd.valid()) return Outcome::held;
    fd.reset(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valid()) return Outcome::unavailable;
    switch (lockWithin(fd.get(), mode, timeout)) {
        case LockOutcome::held:
            break;
        case LockOutcome::busy:
            fd.reset();
            return Outcome::busy;
        case LockOutcome::unavailable:
            fd.reset();
            return Outcome::unavailable;
    }
    // No writer can be at work now: any temporary file left is a killed run's.
    if (mode == LockMode::exclusive) SafeFileWriter::removeStaleTemporaries(fd);
    heldLock = this;
    return Outcome::held;
}

const PersistLock* PersistLock::held() {
    return heldLock;
}

bool PersistLock::stillNamesItsDirectory() const {
    struct stat locked;
    struct stat named;
    if (fstat(fd.get(), &locked) == 0 && stat(directory.c_str(), &named) == 0 &&
        locked.st_dev == named.st_dev && locked.st_ino == named.st_ino) {
        return true;
    }
    if (!replacedSaid) {
        fprintf(stderr,
                "Error:persist directory %s was replaced while this run held it; nothing was "
                "written\n",
                directory.c_str());
        replacedSaid = true;
    }
    return false;
}

FileAt FileAt::of(const std::string& path) {
    const PersistLock* lock = PersistLock::held();
    std::string folder = directoryOf(path);
    if (lock != nullptr && folder + "/" == lock->path()) {
        return {lock->directoryFd(), baseName(path), lock};
    }
    return {AT_FDCWD, path, nullptr};
}

bool FileAt::holdsSpecialFile() const {
    struct stat entry;
    if (fstatat(directory, name.c_str(), &entry, AT_SYMLINK_NOFOLLOW) != 0) return false;
    return !S_ISREG(entry.st_mode) && !S_ISLNK(entry.st_mode);
}
