#include "common/recordfile.h"

#include <android/log.h>

WriteResult storeRecordFile(const std::string& file, std::string_view bytes, const char* tag,
                            const char* prefix, int successPriority) {
    const WriteResult result = SafeFileWriter::replace(file, bytes);
    if (result.failed == WriteResult::Step::open) {
        __android_log_print(ANDROID_LOG_ERROR, tag, "%sfailed to open file %s\n", prefix,
                            file.c_str());
    } else if (!result.stored()) {
        __android_log_print(ANDROID_LOG_ERROR, tag, "%sfailed to write file %s\n", prefix,
                            file.c_str());
    } else if (successPriority != 0) {
        __android_log_print(successPriority, tag, "successfully write to file %s\n", file.c_str());
    }
    return result;
}
