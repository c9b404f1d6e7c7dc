#include "common/standardoutput.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

bool flushStandardOutput(const char* program) {
    int error = fflush(stdout) == 0 ? 0 : errno;
    // A write that failed earlier, when the buffer filled, leaves the stream's error flag.
    if (error == 0 && ferror(stdout)) error = EIO;
    if (error == 0) return true;
    fprintf(stderr, "%s: standard output: %s\n", program, strerror(error));
    return false;
}
