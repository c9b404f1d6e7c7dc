#pragma once

#include <string>
#include <string_view>

#include "base/filereader.h"
#include "common/safefilewriter.h"

// Reads a calibration file of the persist directory, never through a link: through the held
// persist lock's directory when there is one.
[[nodiscard]] FileRead loadRecordFile(const std::string& file);

// Stores a calibration file through the safe writer (in the held persist lock's directory when
// the file lies there, checked to be still the persist directory before the rename) and logs the
// outcome under `tag`: "<prefix>failed to open file %s\n" (error) when no temporary could be
// made, "<prefix>failed to write file %s\n" (error) when a later step failed (the old file then
// stays, or, when only the directory sync failed, the new one is not yet durable), and on success
// "successfully write to file %s\n" at `successPriority`, when one is given (not 0).
[[nodiscard]] WriteResult storeRecordFile(const std::string& file,
                                          const SafeFileWriter::Produce& produce, const char* tag,
                                          const char* prefix, int successPriority);
[[nodiscard]] WriteResult storeRecordFile(const std::string& file, std::string_view bytes,
                                          const char* tag, const char* prefix, int successPriority);
