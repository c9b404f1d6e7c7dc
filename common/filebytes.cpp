#include "common/filebytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "common/uniquefd.h"

bool readWholeFile(const char* path, std::vector<unsigned char>* bytes) {
    UniqueFd fd(open(path, O_RDONLY | O_CLOEXEC));
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
    static const char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (unsigned char byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}
