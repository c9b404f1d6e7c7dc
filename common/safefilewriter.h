#pragma once

#include <string>
#include <string_view>

#include "base/uniquefd.h"

// What a replacement did: the first step that failed, with its errno, and whether the owner
// could be set (without root it cannot; the file is stored all the same and the caller says so).
struct WriteResult {
    enum class Step { none, open, write, sync, chmod, rename, syncDirectory };

    Step failed = Step::none;
    int error = 0;
    int ownerError = 0;

    // The new content is in place and durable.
    bool stored() const { return failed == Step::none; }
};

// The one commit path of every calibration file: the bytes go to a temporary file beside the
// target, which gets the calibration files' mode and owner through its descriptor, is flushed to
// disk, renamed over the target, and the directory is synced. A crash, a kill or a power cut at
// any instant leaves the old file or the new one; a hang-up, interrupt or terminate waits until
// the temporary is gone. Nothing is followed through a link: a link at the name is replaced.
class SafeFileWriter {
  public:
    // Replaces `target` with `bytes`. Until the rename the target is untouched; the temporary
    // never outlives the call.
    [[nodiscard]] static WriteResult replace(const std::string& target, std::string_view bytes);

    // Whether `name` is ".<target>.XXXXXX" for a target ending in ".bin", the X's as mkstemp
    // fills them: the name of a temporary this writer makes.
    static bool isTemporaryName(std::string_view name);

    // Removes what writers killed before their rename left in `directory`: regular files with
    // a temporary's name, nothing else. Only for a caller holding the persist lock, under which
    // every writer runs, so that no live writer's file goes.
    static void removeStaleTemporaries(const UniqueFd& directory);
};
