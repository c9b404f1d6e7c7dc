#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

struct DirectoryCloser {
    void operator()(DIR* listing) const { closedir(listing); }
};

// A listing of a directory's entries (readdir), closed when it goes out of scope.
using DirectoryStream = std::unique_ptr<DIR, DirectoryCloser>;

// Owns a file descriptor and closes it when it goes out of scope. Closing never changes errno,
// so an error can be read after the descriptor that caused it is gone.
class UniqueFd {
  public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : fd(fd) {}
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd&& other) noexcept : fd(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    int get() const { return fd; }
    bool valid() const { return fd >= 0; }

    int release() {
        const int released = fd;
        fd = -1;
        return released;
    }

    // Closes the descriptor held, if any, and takes `replacement`. Returns close()'s error (0 when
    // it succeeded or nothing was held); errno stays as it was.
    int reset(int replacement = -1) {
        const int saved = errno;
        const int error = fd >= 0 && ::close(fd) != 0 ? errno : 0;
        fd = replacement;
        errno = saved;
        return error;
    }

    // The entries of the directory this descriptor holds, from the first, through a descriptor of
    // the listing's own, so that this one stays open and keeps its place. Null, with errno set,
    // when no listing can be made.
    //
    // A directory this run owns keeps its access time: every store lists the persist directory
    // it has just changed, and the access time that a listing would then write costs a journal
    // entry, as much as the rest of the listing. Another owner's is left to the kernel, as only
    // a capability (which would be asked for, and logged when refused) allows that there.
    DirectoryStream listDirectory() const {
        struct stat info;
        const int noAtime = fstat(fd, &info) == 0 && info.st_uid == geteuid() ? O_NOATIME : 0;
        UniqueFd own(openat(fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC | noAtime));
        DIR* listing = own.valid() ? fdopendir(own.get()) : nullptr;
        if (listing == nullptr) return nullptr;
        own.release();
        return DirectoryStream(listing);
    }

  private:
    int fd = -1;
};
