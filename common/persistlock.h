#pragma once

#include <string>

#include "base/uniquefd.h"

// Serialises every load-change-rewrite of the persist directory between tool instances, so that
// two stations working on one device lose nothing. The lock is an exclusive advisory lock on the
// directory itself, so no lock file is left behind; it is released when the PersistLock goes
// away.
class PersistLock {
  public:
    static constexpr int kDefaultTimeoutMs = 5000;

    enum class Outcome {
        held,        // this run holds the lock
        busy,        // another instance held it for the whole wait: write nothing
        unavailable  // no lock possible (the directory cannot be opened, or takes no lock): go on,
                     // and let the write that follows report the directory as it always does
    };

    explicit PersistLock(std::string directory, int timeoutMs = kDefaultTimeoutMs);
    PersistLock(const PersistLock&) = delete;
    PersistLock& operator=(const PersistLock&) = delete;

    // Waits for the lock; says why when it gives up (busy). Taking it removes what killed
    // writers left.
    [[nodiscard]] Outcome acquire();

    // The same, as whether the stage may go on to write (held or unavailable).
    [[nodiscard]] bool acquireToWrite() { return acquire() != Outcome::busy; }

  private:
    std::string directory;
    int timeoutMs;
    UniqueFd fd;  // holds the lock; closing it releases the lock
};
