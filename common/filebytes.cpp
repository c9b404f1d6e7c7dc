#include "common/filebytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "common/uniquefd.h"

bool readWholeFile(const char* path, std::vector<unsigned char>* bytes, bool followLinks) {
    UniqueFd fd(open(path, O_RDONLY | O_CLOEXEC | (followLinks ? 0 : O_NOFOLLOW)));
    if (!fd.valid()) return false;
    std::vector<unsigned char> content;
    unsigned char buffer[8192];
    for (;;) {
        ssize_t count = read(fd.get(), buffer, sizeof buffer);
        if (count > 0) {
            content.insert(content.end(), buffer, buffer + count);
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            return false;
        }
    }
    *bytes = std::move(content);
    return true;
}

std::string hexText(const std::vector<unsigned char>& bytes) {
    return hexText(bytes, 0, bytes.size());
}

std::string hexText(const std::vector<unsigned char>& bytes, size_t from, size_t count) {
    static const char kDigits[] = "0123456789ABCDEF";
    const size_t end = from + std::min(count, bytes.size() - std::min(from, bytes.size()));
    std::string text;
    for (size_t i = from; i < end; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0x0F];
    }
    return text;
}
