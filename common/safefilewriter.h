#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/uniquefd.h"

// What a replacement did: the first step that failed, with its errno, and whether the owner
// could be set (without root it cannot; the file is stored all the same and the caller says so).
struct WriteResult {
    enum class Step { none, open, write, sync, chmod, moved, rename, syncDirectory };

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
    // Takes a new file's bytes as they are produced and writes them to the temporary in blocks,
    // so that a large file is never held twice in memory.
    class Sink {
      public:
        void append(std::string_view bytes);

      private:
        friend class SafeFileWriter;
        explicit Sink(int fd) : fd(fd) {}
        bool flush();

        int fd;
        std::string buffer;
        int error = 0;  // of the first write that failed; later bytes are dropped
    };

    using Produce = std::function<void(Sink&)>;
    // Asked just before the rename whether the directory is still where the file belongs.
    using InPlace = std::function<bool()>;

    // Replaces `name`, a path relative to the directory `directory` (AT_FDCWD: the working
    // directory), with what `produce` appends. Every step works on the file's folder through one
    // descriptor. Until the rename the target is untouched; the temporary never outlives the
    // call. When `inPlace` says no, nothing is renamed (Step::moved).
    [[nodiscard]] static WriteResult replace(int directory, const std::string& name,
                                             const Produce& produce, const InPlace& inPlace = {});
    [[nodiscard]] static WriteResult replace(int directory, const std::string& name,
                                             std::string_view bytes, const InPlace& inPlace = {});

    // Whether `name` is ".<target>.XXXXXX" for a target ending in ".bin", the X's letters and
    // digits: the name of a temporary this writer makes.
    static bool isTemporaryName(std::string_view name);

    // Removes what writers killed before their rename left in `directory`: regular files with
    // a temporary's name, nothing else. Only for a caller holding the persist lock, under which
    // every writer runs, so that no live writer's file goes.
    static void removeStaleTemporaries(const UniqueFd& directory);
};
