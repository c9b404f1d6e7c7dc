#pragma once

#include <string>

// The folder of a path: "." for a bare name, "/" for a name at the root.
std::string directoryOf(const std::string& path);

// The name after a path's last '/' (the whole path when it has none).
std::string baseName(const std::string& path);
