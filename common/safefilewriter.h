#pragma once

#include <string>

#include "common/uniquefd.h"

// Replaces a file so that a crash, a kill or a power cut at any instant leaves either the old
// file or the new one: the bytes go to a temporary file beside the target, which is flushed to
// disk, renamed over the target, and the directory is synced. Until commit() succeeds the
// target is untouched, and the temporary file never outlives the writer. The new file already has
// the calibration files' mode and owner when it appears under its name.
class SafeFileWriter {
  public:
    explicit SafeFileWriter(std::string target);
    ~SafeFileWriter();
    SafeFileWriter(const SafeFileWriter&) = delete;
    SafeFileWriter& operator=(const SafeFileWriter&) = delete;

    // Creates the temporary file; false when it cannot ("could not open").
    bool open();

    // Appends bytes; a failure is remembered and reported by commit().
    void write(const void* bytes, size_t size);
    void write(const std::string& text) { write(text.data(), text.size()); }

    // Puts the new content in place; false when any byte did not reach the disk or the rename
    // failed ("could not write"). The old file then stays as it was.
    bool commit();

    // Removes what writers killed before commit() left in `directoryFd`: regular files named as
    // open() names its temporaries for a ".bin" target, nothing else. Only for a caller holding
    // the persist lock, under which every writer runs, so that no live writer's file goes.
    static void removeStaleTemporaries(int directoryFd);

  private:
    void discard();

    std::string target;
    std::string temporary;
    UniqueFd fd;
    bool failed = false;
};
