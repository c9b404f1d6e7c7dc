#pragma once

#include <string>
#include <vector>

// Reads a whole file. False when it cannot be opened or read (a directory, say, or a link when
// links are not to be followed).
bool readWholeFile(const char* path, std::vector<unsigned char>* bytes, bool followLinks = true);

// Two upper-case hexadecimal digits per byte, no separators.
std::string hexText(const std::vector<unsigned char>& bytes);

// The same for up to `count` bytes from `from`; bytes past the end are left out.
std::string hexText(const std::vector<unsigned char>& bytes, size_t from, size_t count);
