#include "cli/stagelock.h"

#include <cstdio>

bool lockForStage(PersistLock& lock) {
    if (lock.acquire() != PersistLock::Outcome::busy) return true;
    fprintf(stdout,
            "Error:persist directory %s is in use by another optoquill, gave up after %d ms\n",
            lock.path().c_str(), lock.timeoutMs());
    return false;
}
