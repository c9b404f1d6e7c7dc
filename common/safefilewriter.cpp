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

#include "base/paths.h"
#include "base/signalblock.h"
#include "base/uniquefd.h"
#include "common/fileattribute.h"

namespace {

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

// The temporary's name, removed when the store did not reach the rename.
class Temporary {
  public:
    explicit Temporary(std::string name) : name(std::move(name)) {}
    ~Temporary() {
        if (!name.empty()) unlink(name.c_str());
    }
    void renamed() { name.clear(); }

  private:
    std::string name;
};

}  // namespace

WriteResult SafeFileWriter::replace(const std::string& target, std::string_view bytes) {
    // From its creation to its rename or removal the temporary is this run's to clean up.
    SignalBlock holdSignals;
    const std::string directory = directoryOf(target);
    std::string pattern = directory + "/." + baseName(target) + ".XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    UniqueFd fd(mkostemp(name.data(), O_CLOEXEC));
    if (!fd.valid()) return failure(WriteResult::Step::open, errno);
    const std::string temporaryName = name.data();
    Temporary temporary(temporaryName);

    WriteResult result;
    // Set before the rename, so that the file never shows under its name otherwise.
    if (fchmod(fd.get(), kCalibrationFileMode) < 0) return failure(WriteResult::Step::chmod, errno);
    if (fchown(fd.get(), kSystemId, kSystemId) < 0) result.ownerError = errno;
    if (!writeAll(fd.get(), bytes)) return failure(WriteResult::Step::write, errno);
    if (fsync(fd.get()) != 0) return failure(WriteResult::Step::sync, errno);
    if (const int error = fd.reset()) return failure(WriteResult::Step::write, error);
    if (rename(temporaryName.c_str(), target.c_str()) != 0) {
        return failure(WriteResult::Step::rename, errno);
    }
    temporary.renamed();
    // Until the directory is on disk, a power cut can bring the old file back.
    UniqueFd directoryFd(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directoryFd.valid() || fsync(directoryFd.get()) != 0) {
        return failure(WriteResult::Step::syncDirectory, errno);
    }
    return result;
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
