#include "base/filelock.h"

#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>

LockOutcome lockWithin(int fd, LockMode mode, int timeoutMs) {
    const int operation = (mode == LockMode::exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        if (flock(fd, operation) == 0) return LockOutcome::held;
        if (errno != EWOULDBLOCK && errno != EINTR) return LockOutcome::unavailable;
        if (std::chrono::steady_clock::now() >= deadline) return LockOutcome::busy;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}
