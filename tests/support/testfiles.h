#pragma once

#include <initializer_list>
#include <string>
#include <vector>

// File helpers for the tests.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
bool fileExists(const std::string& path);  // without following a link
std::string bytes(std::initializer_list<int> values);
std::string readToEnd(int fd);  // everything until the last writer closes it; closes `fd`
std::vector<std::string> directoryEntries(const std::string& directory);  // sorted, no . or ..
std::string makeScratchDirectory();        // a new one under $TMPDIR (or /tmp)
void removeTree(const std::string& path);  // and everything in it, no link followed
