#pragma once

#include <string>

#include "base/filelock.h"
#include "base/uniquefd.h"

// Serialises every load-change-rewrite of the persist directory between tool instances, so that
// two stations working on one device lose nothing: an exclusive advisory lock on the directory
// itself (no lock file is left behind), released when the PersistLock goes away. The audit takes
// it shared, to see the directory between two stores.
//
// While a lock is held, it is the persist directory of this process: every persist file is read,
// created, renamed and appended to through the locked directory's descriptor (see FileAt), and
// nothing is renamed into it once its path names another directory.
class PersistLock {
  public:
    static constexpr int kDefaultTimeoutMs = 5000;

    enum class Outcome {
        held,        // this run holds the lock
        busy,        // another instance held it for the whole wait: write nothing
        unavailable  // no lock possible (the directory cannot be opened, or takes no lock): go on,
                     // and let the write that follows report the directory as it always does
    };

    // On the persist directory, or on `directory`.
    explicit PersistLock(LockMode mode = LockMode::exclusive, int timeoutMs = kDefaultTimeoutMs);
    PersistLock(std::string directory, LockMode mode, int timeoutMs);
    ~PersistLock();
    PersistLock(const PersistLock&) = delete;
    PersistLock& operator=(const PersistLock&) = delete;

    // Waits for the lock. Taking it exclusively removes what killed writers left.
    [[nodiscard]] Outcome acquire();

    const std::string& path() const { return directory; }
    int timeoutMs() const { return timeout; }

    // The lock this process holds, or null.
    static const PersistLock* held();

    // The locked directory's descriptor.
    int directoryFd() const { return fd.get(); }

    // Whether the persist path still names the directory this lock holds (it may have been
    // replaced while this run waited). The first time it does not, one line on standard error
    // says that nothing was written.
    [[nodiscard]] bool stillNamesItsDirectory() const;

  private:
    std::string directory;
    LockMode mode;
    int timeout;
    UniqueFd fd;  // holds the lock; closing it releases the lock
    mutable bool replacedSaid = false;
};

// Where a file is opened, created or renamed: the held persist lock's directory and the file's
// name in it when the file lies in the persist directory that a lock is held on; otherwise the
// path as it is, from the working directory.
struct FileAt {
    int directory;
    std::string name;
    const PersistLock* lock;  // the lock whose directory `directory` is, or null

    static FileAt of(const std::string& path);

    // Whether something other than a regular file or a link stands at the name (a FIFO, a
    // socket, a directory): such an entry is refused by its type and never opened, so a FIFO
    // cannot take a line and a device's policy need grant nothing on it.
    bool holdsSpecialFile() const;
};
