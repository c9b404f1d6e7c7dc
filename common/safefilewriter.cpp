#include "common/safefilewriter.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
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

// Whether `name` is ".<target>.XXXXXX" for a target ending in ".bin", the X's as mkstemp fills
// them.
bool isTemporaryName(const std::string& name) {
    static const std::string kExtension = ".bin";
    constexpr size_t kRandom = 6;
    if (name.size() < 1 + kExtension.size() + 1 + kRandom || name[0] != '.') return false;
    const size_t dot = name.size() - kRandom - 1;
    if (name[dot] != '.' ||
        name.compare(dot - kExtension.size(), kExtension.size(), kExtension) != 0) {
        return false;
    }
    return std::all_of(name.begin() + dot + 1, name.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
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

void SafeFileWriter::removeStaleTemporaries(int directoryFd) {
    UniqueFd copy(fcntl(directoryFd, F_DUPFD_CLOEXEC, 0));  // the listing closes its own
    DIR* listing = copy.valid() ? fdopendir(copy.get()) : nullptr;
    if (listing == nullptr) return;
    copy.release();
    std::unique_ptr<DIR, int (*)(DIR*)> closer(listing, closedir);
    rewinddir(listing);
    while (dirent* entry = readdir(listing)) {
        if (!isTemporaryName(entry->d_name)) continue;
        struct stat info;
        if (fstatat(directoryFd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(info.st_mode)) {
            unlinkat(directoryFd, entry->d_name, 0);
        }
    }
}

void SafeFileWriter::discard() {
    fd.reset();
    if (!temporary.empty()) {
        unlink(temporary.c_str());
        temporary.clear();
    }
}
