#pragma once

#include "common/devicepaths.h"
#include "common/persistlock.h"

// Loads a persist file and changes it while holding the persist lock, so that no other station's
// update is lost in between. The load also runs when another instance kept the lock (it only
// reads, and gives the stage its file's path); the change then does not, and the result is false.
template <typename Load, typename Change>
bool loadAndChangeUnderPersistLock(Load load, Change change) {
    PersistLock lock(persistDirectory());
    const bool locked = lock.acquireToWrite();
    load();
    return locked && change();
}
