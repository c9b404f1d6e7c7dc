#include "base/filereader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/uniquefd.h"

std::string FileRead::reason() const {
    switch (status) {
        case Status::ok:
            return "read";
        case Status::link:
            return "a symbolic link";
        case Status::notRegular:
            return error != 0 ? strerror(error) : "not a regular file";
        case Status::tooLarge:
            return "larger than " + std::to_string(kMaxFileSize >> 20) + " MiB";
        case Status::absent:
        case Status::ioError:
            break;
    }
    return strerror(error);
}

void FileRead::report(const std::string& path) const {
    if (status == Status::absent) return;
    fprintf(stderr, "Error:cannot read %s: %s\n", path.c_str(), reason().c_str());
}

FileRead readFile(const std::string& path, Links links) {
    return readFileAt(AT_FDCWD, path, links);
}

FileRead readFileAt(int directoryFd, const std::string& name, Links links) {
    constexpr size_t cap = kMaxFileSize;
    FileRead result;
    // Non-blocking: opening a FIFO must not wait for a writer. No controlling terminal either.
    const int flags =
        O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (links == Links::refuse ? O_NOFOLLOW : 0);
    UniqueFd fd(openat(directoryFd, name.c_str(), flags));
    struct stat info;
    if (!fd.valid() || fstat(fd.get(), &info) != 0) {
        result.error = errno;
        if (result.error == ELOOP && links == Links::refuse) {
            result.status = FileRead::Status::link;
        } else if (result.error == ENOENT || result.error == ENOTDIR) {
            result.status = FileRead::Status::absent;
        } else {
            result.status = FileRead::Status::ioError;
        }
        return result;
    }
    if (!S_ISREG(info.st_mode)) {
        result.status = FileRead::Status::notRegular;
        if (S_ISDIR(info.st_mode)) result.error = EISDIR;
        return result;
    }
    // The size is a hint: a file that grows meanwhile is read on, up to the cap and one byte.
    const size_t hint = info.st_size > 0 ? static_cast<size_t>(info.st_size) : 0;
    std::string& bytes = result.bytes;
    bytes.resize(std::min(hint, cap) + 1);
    size_t used = 0;
    for (;;) {
        if (used == bytes.size()) {
            if (used > cap) break;
            bytes.resize(std::min(std::max(used * 2, size_t{4096}), cap + 1));
        }
        const ssize_t count = read(fd.get(), &bytes[used], bytes.size() - used);
        if (count > 0) {
            used += static_cast<size_t>(count);
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            result.error = errno;
            result.status = FileRead::Status::ioError;
            bytes.clear();
            return result;
        }
    }
    if (used > cap) {
        result.status = FileRead::Status::tooLarge;
        bytes.clear();
        return result;
    }
    bytes.resize(used);
    result.status = FileRead::Status::ok;
    return result;
}
