#pragma once

// An advisory lock (flock) on an open file or directory, waited for a bounded time: the lock
// idiom of every program that shares the persist directory.
enum class LockMode { exclusive, shared };

enum class LockOutcome {
    held,        // the lock is this descriptor's until it is closed
    busy,        // another holder kept it for the whole wait
    unavailable  // the descriptor takes no lock (errno set)
};

[[nodiscard]] LockOutcome lockWithin(int fd, LockMode mode, int timeoutMs);
