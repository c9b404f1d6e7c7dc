#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Two upper-case hexadecimal digits per byte, no separators.
std::string hexText(const std::vector<unsigned char>& bytes);

// The same for up to `count` bytes from `from`; bytes past the end are left out.
std::string hexText(const std::vector<unsigned char>& bytes, size_t from, size_t count);
