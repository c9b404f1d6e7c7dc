#pragma once

#include "common/persistlock.h"

// Takes the persist lock for a stage that changes the persist directory. True when the stage may
// write: the lock is held, or none can be had (the write then reports the directory as it always
// does). False, after saying that another station keeps the directory, when it stayed busy.
[[nodiscard]] bool lockForStage(PersistLock& lock);
