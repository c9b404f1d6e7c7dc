#pragma once

#include <string>

// The value of a system property; empty when it is unset or empty.
std::string readProperty(const std::string& name);

// Takes the fuse ID out of a fuse-ID property value: 4 characters that are skipped, a
// 4-character decimal length N, then N characters of ID (the rest of the value when N is
// negative or longer than what is left). `length` receives N. A value shorter than 8 characters
// or without a number in its length field ends the run abnormally, naming the property.
std::string decodeFuseIdProperty(const std::string& value, const std::string& property,
                                 int* length = nullptr);
