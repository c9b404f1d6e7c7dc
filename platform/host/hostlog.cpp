#include "platform/host/hostlog.h"

#include <android/log.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/host/hostenvironment.h"

namespace {

char priorityLetter(int priority) {
    static const char kLetters[] = "VDIWEF";
    if (priority < ANDROID_LOG_VERBOSE || priority > ANDROID_LOG_FATAL) return '?';
    return kLetters[priority - ANDROID_LOG_VERBOSE];
}

int openLog() {
    const std::string& file = HostEnvironment::process().logFile;
    if (file.empty()) return -1;
    // Non-blocking, and only a regular file: a FIFO must not hold the run until someone reads it.
    const int fd =
        open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0644);
    struct stat info;
    const char* reason = nullptr;
    if (fd < 0 && errno == ENXIO) {
        reason = "not a regular file";  // a FIFO no one reads, or a device with none behind it
    } else if (fd < 0 || fstat(fd, &info) != 0) {
        reason = strerror(errno);
    } else if (!S_ISREG(info.st_mode)) {
        reason = "not a regular file";
    }
    if (reason != nullptr) {
        fprintf(stderr, "optoquill: cannot use log file %s: %s\n", file.c_str(), reason);
        exit(2);
    }
    // Writes block again: a line is never cut short by a busy disk.
    fcntl(fd, F_SETFL, O_APPEND);
    return fd;
}

}  // namespace

// Opened once, in append mode, so that every line lands whole even when the run ends abnormally.
int openHostLog() {
    static const int fd = openLog();
    return fd;
}

std::string formatLogLine(int priority, const char* tag, const std::string& message) {
    size_t end = message.find_last_not_of('\n');
    std::string line(1, priorityLetter(priority));
    line += '/';
    line += tag != nullptr ? tag : "";
    line += ": ";
    line.append(message, 0, end == std::string::npos ? 0 : end + 1);
    line += '\n';
    return line;
}

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    int fd = openHostLog();
    if (fd < 0) return 1;

    va_list arguments;
    va_start(arguments, fmt);
    va_list measuring;
    va_copy(measuring, arguments);
    int length = vsnprintf(nullptr, 0, fmt, measuring);
    va_end(measuring);
    std::vector<char> message(length > 0 ? static_cast<size_t>(length) + 1 : 1, '\0');
    if (length > 0) vsnprintf(message.data(), message.size(), fmt, arguments);
    va_end(arguments);

    std::string line = formatLogLine(prio, tag, message.data());
    if (write(fd, line.data(), line.size()) < 0) return -errno;
    return 1;
}

int __android_log_is_loggable(int, const char*, int) {
    return openHostLog() >= 0 ? 1 : 0;
}
