#pragma once

#include <cstddef>
#include <string>

// The one way this tool reads a file. It looks at what stands at the name before opening it, so
// that a FIFO, a socket or a device is never opened (nor can block the run), takes only a regular
// file, stops at a size cap, and says what went wrong.

// Far above any calibration file: a 10,000-record PD-offset file is about 1.4 MiB.
constexpr size_t kMaxFileSize = 16 << 20;

// Whether a symbolic link at the name is followed. Files in the persist directory are never read
// through one; paths given on the command line are used as given.
enum class Links { follow, refuse };

struct FileRead {
    enum class Status { ok, absent, link, notRegular, tooLarge, ioError };

    Status status = Status::absent;
    int error = 0;      // errno for absent and ioError; EISDIR for a directory
    std::string bytes;  // the whole file when ok

    bool ok() const { return status == Status::ok; }

    // Why the file could not be read, as a message's tail: "not a regular file", ...
    std::string reason() const;
};

// Reads the file at `path` (relative to `directoryFd` when given, e.g. an open persist
// directory).
[[nodiscard]] FileRead readFile(const std::string& path, Links links);
[[nodiscard]] FileRead readFileAt(int directoryFd, const std::string& name, Links links);
