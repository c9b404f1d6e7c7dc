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
    UniqueFd fd(open(log.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644));
    if (!fd.valid()) {
        fprintf(stdout, "Error:failed to open log file %s\n", log.c_str());
    } else {
        char line[60];
        snprintf(line, sizeof line, "camera:%s,%s,result:%d\n", camera.c_str(), kind, ok ? 1 : 0);
        // One write on an append-mode descriptor: the line lands whole after what is there.
        if (write(fd.get(), line, strlen(line)) >= 0) fsync(fd.get());
    }
    changeFileAttribute(log.c_str());
}
