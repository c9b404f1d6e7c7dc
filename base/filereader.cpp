#include "base/filereader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

FileRead readFile(const std::string& path, Links links) {
    return readFileAt(AT_FDCWD, path, links);
}

namespace {

FileRead refused(FileRead::Status status, int error) {
    FileRead result;
    result.status = status;
    result.error = error;
    return result;
}

FileRead failed(int error) {
    return refused(
        error == ENOENT || error == ENOTDIR ? FileRead::Status::absent : FileRead::Status::ioError,
        error);
}

// The whole content of an open regular file, up to the cap and one byte. Its size is a hint: a
// file that grows meanwhile is read on. A read that ends where the size said, short of the room
// that holds one byte more, is the end, without the read that would return nothing.
FileRead readToEnd(int fd, off_t size) {
    constexpr size_t cap = kMaxFileSize;
    FileRead result;
    const size_t hint = size > 0 ? static_cast<size_t>(size) : 0;
    std::string& bytes = result.bytes;
    bytes.resize(std::min(hint, cap) + 1);
    size_t used = 0;
    for (;;) {
        if (used == bytes.size()) {
            if (used > cap) break;
            bytes.resize(std::min(std::max(used * 2, size_t{4096}), cap + 1));
        }
        const ssize_t count = read(fd, &bytes[used], bytes.size() - used);
        if (count > 0) {
            used += static_cast<size_t>(count);
            if (used == hint) break;
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

// The refusal of what is not a regular file.
FileRead refusedAsNotRegular(mode_t mode) {
    if (S_ISLNK(mode)) return refused(FileRead::Status::link, ELOOP);
    return refused(FileRead::Status::notRegular, S_ISDIR(mode) ? EISDIR : 0);
}

}  // namespace

FileRead readFileAt(int directoryFd, const std::string& name, Links links) {
    const int noFollow = links == Links::refuse ? AT_SYMLINK_NOFOLLOW : 0;
    struct stat info;
    if (fstatat(directoryFd, name.c_str(), &info, noFollow) != 0) return failed(errno);
    if (!S_ISREG(info.st_mode)) return refusedAsNotRegular(info.st_mode);
    // What stood there may change before the open: non-blocking all the same, so that a FIFO put
    // in its place cannot wait for a writer, and checked again.
    const int flags =
        O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (links == Links::refuse ? O_NOFOLLOW : 0);
    UniqueFd fd(openat(directoryFd, name.c_str(), flags));
    if (!fd.valid()) {
        return errno == ELOOP && links == Links::refuse ? refused(FileRead::Status::link, ELOOP)
                                                        : failed(errno);
    }
    if (fstat(fd.get(), &info) != 0) return failed(errno);
    if (!S_ISREG(info.st_mode)) return refusedAsNotRegular(info.st_mode);
    return readToEnd(fd.get(), info.st_size);
}
