#include "common/recordfile.h"

#include <android/log.h>

#include "common/persistlock.h"

FileRead loadRecordFile(const std::string& file) {
    const FileAt at = FileAt::of(file);
    return readFileAt(at.directory, at.name, Links::refuse);
}

WriteResult storeRecordFile(const std::string& file, const SafeFileWriter::Produce& produce,
                            const char* tag, const char* prefix, int successPriority) {
    const FileAt at = FileAt::of(file);
    const WriteResult result = SafeFileWriter::replace(at.directory, at.name, produce, [&at] {
        return at.lock == nullptr || at.lock->stillNamesItsDirectory();
    });
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

WriteResult storeRecordFile(const std::string& file, std::string_view bytes, const char* tag,
                            const char* prefix, int successPriority) {
    return storeRecordFile(
        file, [bytes](SafeFileWriter::Sink& sink) { sink.append(bytes); }, tag, prefix,
        successPriority);
}
