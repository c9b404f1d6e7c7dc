#include "tests/support/awblscfile.h"

std::string awbLscFile(const std::string& fuseId) {
    const size_t l = fuseId.size();
    std::string file(l + 1810, '\0');
    file[0] = static_cast<char>(l);
    file.replace(1, l, fuseId);
    for (size_t i = 1 + l; i < file.size(); ++i) file[i] = static_cast<char>((i * 37 + 11) & 0xFF);
    auto checksum = [&](size_t from, size_t to) {
        unsigned sum = 0;
        for (size_t i = from; i <= to; ++i) sum += static_cast<unsigned char>(file[i]);
        return static_cast<char>(sum % 255 + 1);
    };
    file[awbChecksumAt(l)] = checksum(5 + l, 13 + l);
    file[lscChecksumAt(l)] = checksum(37 + l, 1808 + l);
    return file;
}
