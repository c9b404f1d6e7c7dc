#include "common/calibrationlog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "common/devicepaths.h"
#include "common/fileattribute.h"
#include "common/uniquefd.h"

void appendCalibrationLog(const std::string& camera, const char* kind, bool ok) {
    const std::string& log = calibrationLogPath();
    // Never appended to through a link planted at its name.
    UniqueFd fd(open(log.c_str(),
                     O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                     kCalibrationFileMode));
    if (!fd.valid()) {
        fprintf(stdout, "Error:failed to open log file %s\n", log.c_str());
        changeFileAttribute(log.c_str());
        return;
    }
    char line[60];
    snprintf(line, sizeof line, "camera:%s,%s,result:%d\n", camera.c_str(), kind, ok ? 1 : 0);
    // One write on an append-mode descriptor: the line lands whole after what is there.
    if (write(fd.get(), line, strlen(line)) >= 0) fsync(fd.get());
    applyFileAttribute(fd.get(), log.c_str());
}
