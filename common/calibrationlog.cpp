#include "common/calibrationlog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/paths.h"
#include "base/uniquefd.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/persistlock.h"

namespace {

// Never appended to through a link planted at its name; `created` says whether this open made
// the file, whose name then still has to reach the disk.
UniqueFd openLog(const FileAt& log, bool* created) {
    constexpr int kFlags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    *created = false;
    if (log.holdsSpecialFile()) return UniqueFd();
    for (;;) {
        UniqueFd fd(openat(log.directory, log.name.c_str(), kFlags));
        *created = false;
        if (fd.valid() || errno != ENOENT) return fd;
        fd.reset(openat(log.directory, log.name.c_str(), kFlags | O_CREAT | O_EXCL,
                        kCalibrationFileMode));
        *created = true;
        if (fd.valid() || errno != EEXIST) return fd;
    }
}

// Appends `line` in one write on the append-mode descriptor and syncs it; an empty text, or why
// it did not reach the disk. What a failed or short append left is cut off again, so that the
// next line starts on a line of its own (the persist lock keeps other writers out meanwhile).
std::string append(int fd, std::string_view line) {
    struct stat before;
    if (fstat(fd, &before) != 0) return strerror(errno);
    const ssize_t written = write(fd, line.data(), line.size());
    std::string failure;
    if (written < 0) {
        failure = strerror(errno);
    } else if (static_cast<size_t>(written) != line.size()) {
        failure =
            "wrote " + std::to_string(written) + " of " + std::to_string(line.size()) + " bytes";
    } else if (fsync(fd) != 0) {
        failure = strerror(errno);
    }
    if (!failure.empty() && written > 0 && ftruncate(fd, before.st_size) != 0) {
        failure += ", and the part written stays: " + std::string(strerror(errno));
    }
    return failure;
}

// The log's folder on disk once this append created its name there.
std::string syncFolder(const FileAt& log) {
    UniqueFd opened;
    int folder = log.directory;
    if (log.lock == nullptr) {
        opened.reset(open(directoryOf(log.name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!opened.valid()) return strerror(errno);
        folder = opened.get();
    }
    return fsync(folder) == 0 ? "" : strerror(errno);
}

}  // namespace

void appendCalibrationLog(const std::string& camera, const char* kind, bool ok) {
    const std::string& path = calibrationLogPath();
    const FileAt log = FileAt::of(path);
    // A directory put in the persist directory's place gets no line of this run.
    if (log.lock != nullptr && !log.lock->stillNamesItsDirectory()) return;
    bool created = false;
    UniqueFd fd = openLog(log, &created);
    if (!fd.valid()) {
        fprintf(stdout, "Error:failed to open log file %s\n", path.c_str());
        changeFileAttribute(path.c_str());
        return;
    }
    // Before the sync, so that the mode and owner reach the disk with the line.
    applyFileAttribute(fd.get(), path.c_str());
    char line[60];
    snprintf(line, sizeof line, "camera:%s,%s,result:%d\n", camera.c_str(), kind, ok ? 1 : 0);
    std::string failure = append(fd.get(), line);
    if (failure.empty() && created) failure = syncFolder(log);
    if (!failure.empty()) {
        fprintf(stderr, "Error:failed to append to log file %s: %s\n", path.c_str(),
                failure.c_str());
    }
}
