#include "common/safefilewriter.h"

#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "base/paths.h"
#include "base/signalblock.h"
#include "common/fileattribute.h"

namespace {

// Bytes gathered before each write to the temporary.
constexpr size_t kBlock = 64 << 10;

WriteResult failure(WriteResult::Step step, int error) {
    WriteResult result;
    result.failed = step;
    result.error = error;
    return result;
}

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

// Six letters or digits that no other run is likely to pick at the same instant.
std::string randomSuffix(uint64_t seed) {
    static constexpr char kLetters[] =
        "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    // splitmix64: every bit of the seed reaches every letter.
    uint64_t mixed = seed + 0x9E3779B97F4A7C15ULL;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
    mixed ^= mixed >> 31;
    std::string suffix;
    for (int i = 0; i < 6; ++i, mixed /= 62) suffix += kLetters[mixed % 62];
    return suffix;
}

// The temporary beside the target, ".<name>.XXXXXX", made new (never an existing file, never
// through a link) and removed unless it was renamed.
class Temporary {
  public:
    Temporary(int directory, const std::string& target) : directory(directory) {
        // The kernel's random bytes for this process, read without a system call, and the time.
        uint64_t random = 0;
        if (const void* bytes = reinterpret_cast<const void*>(getauxval(AT_RANDOM))) {
            memcpy(&random, bytes, sizeof random);
        }
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        const uint64_t seed =
            random ^ static_cast<uint64_t>(now.tv_sec) << 30 ^ static_cast<uint64_t>(now.tv_nsec);
        for (uint64_t attempt = 0; attempt < 100 && !fd.valid(); ++attempt) {
            name = "." + target + "." + randomSuffix(seed + attempt);
            fd.reset(openat(directory, name.c_str(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
            if (!fd.valid() && errno != EEXIST) break;
        }
        if (!fd.valid()) name.clear();
    }
    ~Temporary() {
        if (!name.empty()) unlinkat(directory, name.c_str(), 0);
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    UniqueFd fd;
    int directory;
    std::string name;  // empty once renamed
};

}  // namespace

void SafeFileWriter::Sink::append(std::string_view bytes) {
    if (error != 0) return;
    if (buffer.size() + bytes.size() > kBlock && !flush()) return;
    if (bytes.size() >= kBlock) {
        if (!writeAll(fd, bytes)) error = errno;
        return;
    }
    buffer.append(bytes);
}

bool SafeFileWriter::Sink::flush() {
    if (error == 0 && !writeAll(fd, buffer)) error = errno;
    buffer.clear();
    errno = error;
    return error == 0;
}

WriteResult SafeFileWriter::replace(int directory, const std::string& name, const Produce& produce,
                                    const InPlace& inPlace) {
    // From its creation to its rename or removal the temporary is this run's to clean up.
    SignalBlock holdSignals;
    UniqueFd folder;
    int at = directory;
    std::string target = name;
    if (name.find('/') != std::string::npos) {
        folder.reset(
            openat(directory, directoryOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder.valid()) return failure(WriteResult::Step::open, errno);
        at = folder.get();
        target = baseName(name);
    }
    Temporary temporary(at, target);
    if (!temporary.fd.valid()) return failure(WriteResult::Step::open, errno);
    const int fd = temporary.fd.get();
    WriteResult result;
    // Set before the rename, so that the file never shows under its name otherwise.
    if (fchmod(fd, kCalibrationFileMode) < 0) return failure(WriteResult::Step::chmod, errno);
    if (fchown(fd, kSystemId, kSystemId) < 0) result.ownerError = errno;
    Sink sink(fd);
    produce(sink);
    if (!sink.flush()) return failure(WriteResult::Step::write, errno);
    if (fsync(fd) != 0) return failure(WriteResult::Step::sync, errno);
    if (const int error = temporary.fd.reset()) return failure(WriteResult::Step::write, error);
    if (inPlace && !inPlace()) return failure(WriteResult::Step::moved, 0);
    if (renameat(at, temporary.name.c_str(), at, target.c_str()) != 0) {
        return failure(WriteResult::Step::rename, errno);
    }
    temporary.name.clear();
    // Until the directory is on disk, a power cut can bring the old file back.
    if (at == AT_FDCWD) {
        folder.reset(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        at = folder.get();
    }
    if (fsync(at) != 0) return failure(WriteResult::Step::syncDirectory, errno);
    return result;
}

WriteResult SafeFileWriter::replace(int directory, const std::string& name, std::string_view bytes,
                                    const InPlace& inPlace) {
    return replace(
        directory, name, [bytes](Sink& sink) { sink.append(bytes); }, inPlace);
}

bool SafeFileWriter::isTemporaryName(std::string_view name) {
    static constexpr std::string_view kExtension = ".bin";
    constexpr size_t kRandom = 6;
    if (name.size() < 1 + kExtension.size() + 1 + kRandom || name[0] != '.') return false;
    const size_t dot = name.size() - kRandom - 1;
    if (name[dot] != '.' || name.substr(dot - kExtension.size(), kExtension.size()) != kExtension) {
        return false;
    }
    return std::all_of(name.begin() + dot + 1, name.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
}

void SafeFileWriter::removeStaleTemporaries(const UniqueFd& directory) {
    const DirectoryStream listing = directory.listDirectory();
    if (listing == nullptr) return;
    while (dirent* entry = readdir(listing.get())) {
        if (!isTemporaryName(entry->d_name)) continue;
        struct stat info;
        if (fstatat(directory.get(), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(info.st_mode)) {
            unlinkat(directory.get(), entry->d_name, 0);
        }
    }
}
