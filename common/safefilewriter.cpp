#include "common/safefilewriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "common/fileattribute.h"
#include "common/uniquefd.h"

namespace {

std::string directoryOf(const std::string& path) {
    size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

void syncDirectory(const std::string& directory) {
    UniqueFd fd(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd.valid()) fsync(fd.get());
}

}  // namespace

SafeFileWriter::SafeFileWriter(std::string target) : target(std::move(target)) {}

SafeFileWriter::~SafeFileWriter() {
    discard();
}

bool SafeFileWriter::open() {
    discard();
    failed = false;
    std::string pattern = directoryOf(target) + "/." + nameOf(target) + ".XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    fd.reset(mkostemp(name.data(), O_CLOEXEC));
    if (!fd.valid()) return false;
    temporary = name.data();
    // Set before the rename, so that the file never shows under its name otherwise.
    if (fchmod(fd.get(), kCalibrationFileMode) < 0) failed = true;
    if (fchown(fd.get(), kSystemId, kSystemId) < 0) {
        // No failure of the write: the caller's changeFileAttribute reports the owner.
    }
    return true;
}

void SafeFileWriter::write(const void* bytes, size_t size) {
    if (!fd.valid() || failed) {
        failed = true;
        return;
    }
    const char* next = static_cast<const char*>(bytes);
    while (size > 0) {
        ssize_t count = ::write(fd.get(), next, size);
        if (count < 0) {
            if (errno == EINTR) continue;
            failed = true;
            return;
        }
        next += count;
        size -= static_cast<size_t>(count);
    }
}

bool SafeFileWriter::commit() {
    if (!fd.valid()) return false;
    bool ok = !failed && fsync(fd.get()) == 0;
    ok = fd.reset() == 0 && ok;
    if (!ok || rename(temporary.c_str(), target.c_str()) != 0) {
        discard();
        return false;
    }
    temporary.clear();
    syncDirectory(directoryOf(target));
    return true;
}

void SafeFileWriter::discard() {
    fd.reset();
    if (!temporary.empty()) {
        unlink(temporary.c_str());
        temporary.clear();
    }
}
