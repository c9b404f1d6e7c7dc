#pragma once

#include <cstddef>

// Stores a calibration record's bytes at `file` through the safe writer, with the record classes'
// log lines under `tag`: "failed to open file %s\n" or "failed to write file %s\n" (error), or
// "successfully write to file %s\n" at `successPriority`. On failure the old file stays.
bool storeRecordFile(const char* file, const void* bytes, size_t size, const char* tag,
                     int successPriority);
