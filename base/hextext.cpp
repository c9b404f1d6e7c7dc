#include "base/hextext.h"

#include <algorithm>

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
