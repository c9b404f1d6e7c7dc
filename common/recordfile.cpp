#include "common/recordfile.h"

#include <android/log.h>

#include "common/safefilewriter.h"

bool storeRecordFile(const char* file, const void* bytes, size_t size, const char* tag,
                     int successPriority) {
    SafeFileWriter out(file);
    if (!out.open()) {
        __android_log_print(ANDROID_LOG_ERROR, tag, "failed to open file %s\n", file);
        return false;
    }
    out.write(bytes, size);
    if (!out.commit()) {
        __android_log_print(ANDROID_LOG_ERROR, tag, "failed to write file %s\n", file);
        return false;
    }
    __android_log_print(successPriority, tag, "successfully write to file %s\n", file);
    return true;
}
