#include "inspect/persistdirectory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

// Calibration files are a few kilobytes; anything much larger is not one of ours.
constexpr size_t kMaxFileSize = 16 << 20;

std::string typeOf(mode_t mode) {
    if (S_ISREG(mode)) return "regular";
    if (S_ISDIR(mode)) return "directory";
    if (S_ISLNK(mode)) return "symlink";
    return "other";
}

}  // namespace

PersistDirectory::PersistDirectory(std::string path) : directory(std::move(path)) {}

bool PersistDirectory::open() {
    fd.reset(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!fd.valid()) return false;
    // fdopendir takes the descriptor it is given: hand it a duplicate, keep ours for openat.
    int listing = fcntl(fd.get(), F_DUPFD_CLOEXEC, 0);
    DIR* dir = listing < 0 ? nullptr : fdopendir(listing);
    if (dir == nullptr) {
        if (listing >= 0) close(listing);
        return false;
    }
    errno = 0;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        struct stat info;
        Entry item;
        item.name = name;
        if (fstatat(fd.get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
            item.type = typeOf(info.st_mode);
            item.mode = info.st_mode & 07777;
            item.uid = info.st_uid;
            item.gid = info.st_gid;
        } else {
            item.type = "other";
        }
        list.push_back(item);
    }
    const bool listed = errno == 0;
    closedir(dir);
    std::sort(list.begin(), list.end(),
              [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return listed;
}

const PersistDirectory::Entry* PersistDirectory::find(const std::string& name) const {
    for (const Entry& entry : list) {
        if (entry.name == name) return &entry;
    }
    return nullptr;
}

PersistDirectory::Read PersistDirectory::read(const std::string& name,
                                              std::vector<unsigned char>* bytes) const {
    const Entry* entry = find(name);
    if (entry == nullptr) return Read::absent;
    if (entry->type != "regular") return Read::notRegular;
    // Non-blocking, so a FIFO put there since the listing cannot hold the audit up.
    UniqueFd file(openat(fd.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.valid()) return errno == ELOOP ? Read::notRegular : Read::failed;
    struct stat info;
    if (fstat(file.get(), &info) != 0) return Read::failed;
    if (!S_ISREG(info.st_mode)) return Read::notRegular;
    std::vector<unsigned char> content;
    unsigned char buffer[8192];
    for (;;) {
        ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count > 0) {
            content.insert(content.end(), buffer, buffer + count);
            if (content.size() > kMaxFileSize) return Read::failed;
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            return Read::failed;
        }
    }
    *bytes = std::move(content);
    return Read::ok;
}
