#pragma once

#include <unistd.h>

// Owns a file descriptor and closes it when it goes out of scope.
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
        int released = fd;
        fd = -1;
        return released;
    }

    // Closes the descriptor held, if any, and takes `replacement`; returns close()'s result.
    int reset(int replacement = -1) {
        int result = fd >= 0 ? ::close(fd) : 0;
        fd = replacement;
        return result;
    }

  private:
    int fd = -1;
};
