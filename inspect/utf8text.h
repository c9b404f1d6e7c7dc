#pragma once

#include <string>
#include <string_view>

// `text` as valid UTF-8: each byte that does not belong to a well-formed sequence (RFC 3629: no
// overlong form, no surrogate, nothing past U+10FFFF) becomes U+FFFD, and nothing else changes.
std::string validUtf8(std::string_view text);

// The same, with control characters also made U+FFFD, so that a name or a field from the device
// stays on its one line of a report.
std::string printableUtf8(std::string_view text);
