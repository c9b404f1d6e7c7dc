#pragma once

#include <string>

#include "common/uniquefd.h"

// Serialises every load-change-rewrite of the persist directory between tool instances, so that
// two stations working on one device lose nothing. The lock is an exclusive advisory lock on the
// directory itself, so no lock file is left behind; it is released when the
// PersistLock goes away.
class PersistLock {
  public:
    static constexpr int kDefaultTimeoutMs = 5000;

    explicit PersistLock(std::string directory, int timeoutMs = kDefaultTimeoutMs);
    ~PersistLock();
    PersistLock(const PersistLock&) = delete;
    PersistLock& operator=(const PersistLock&) = delete;

    // Waits for the lock. False, after printing why, only when another instance held it for the
    // whole wait: the stage must then write nothing. A directory that cannot be opened is no
    // reason to refuse here; the write that follows reports it as it always does.
    bool acquire();

  private:
    std::string directory;
    int timeoutMs;
    UniqueFd fd;  // holds the lock; closing it releases the lock
};
