#include "common/persistlock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

#include "common/safefilewriter.h"

PersistLock::PersistLock(std::string directory, int timeoutMs)
    : directory(std::move(directory)), timeoutMs(timeoutMs) {}

PersistLock::Outcome PersistLock::acquire() {
    if (fd.valid()) return Outcome::held;
    fd.reset(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd.valid()) return Outcome::unavailable;

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        if (flock(fd.get(), LOCK_EX | LOCK_NB) == 0) {
            // No writer can be at work now: any temporary file left is a killed run's.
            SafeFileWriter::removeStaleTemporaries(fd);
            return Outcome::held;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            fd.reset();
            return Outcome::unavailable;
        }
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    fd.reset();
    fprintf(stdout,
            "Error:persist directory %s is in use by another optoquill, gave up after %d ms\n",
            directory.c_str(), timeoutMs);
    return Outcome::busy;
}
