#include "common/calibrationlog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/paths.h"
#include "base/uniquefd.h"
#include "common/devicepaths.h"
#include "common/fileattribute.h"

namespace {

// Never appended to through a link planted at its name; `created` says whether this open made
// the file, whose name then still has to reach the disk.
UniqueFd openLog(const std::string& log, bool* created) {
    constexpr int kFlags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    for (;;) {
        UniqueFd fd(open(log.c_str(), kFlags));
        *created = false;
        if (fd.valid() || errno != ENOENT) return fd;
        fd.reset(open(log.c_str(), kFlags | O_CREAT | O_EXCL, kCalibrationFileMode));
        *created = true;
        if (fd.valid() || errno != EEXIST) return fd;
    }
}

void reportAppend(const std::string& log, const std::string& reason) {
    fprintf(stderr, "Error:failed to append to log file %s: %s\n", log.c_str(), reason.c_str());
}

}  // namespace

void appendCalibrationLog(const std::string& camera, const char* kind, bool ok) {
    const std::string& log = calibrationLogPath();
    bool created = false;
    UniqueFd fd = openLog(log, &created);
    if (!fd.valid()) {
        fprintf(stdout, "Error:failed to open log file %s\n", log.c_str());
        changeFileAttribute(log.c_str());
        return;
    }
    // Before the sync, so that the mode and owner reach the disk with the line.
    applyFileAttribute(fd.get(), log.c_str());
    char line[60];
    snprintf(line, sizeof line, "camera:%s,%s,result:%d\n", camera.c_str(), kind, ok ? 1 : 0);
    // One write on an append-mode descriptor: the line lands whole after what is there.
    const size_t size = strlen(line);
    const ssize_t written = write(fd.get(), line, size);
    if (written < 0) {
        reportAppend(log, strerror(errno));
    } else if (static_cast<size_t>(written) != size) {
        reportAppend(log,
                     "wrote " + std::to_string(written) + " of " + std::to_string(size) + " bytes");
    } else if (fsync(fd.get()) != 0) {
        reportAppend(log, strerror(errno));
    } else if (created) {
        UniqueFd directory(open(directoryOf(log).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!directory.valid() || fsync(directory.get()) != 0) reportAppend(log, strerror(errno));
    }
}
