#include "inspect/persistdirectory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace {

const char* typeOf(mode_t mode) {
    if (S_ISREG(mode)) return "regular";
    if (S_ISDIR(mode)) return "directory";
    if (S_ISLNK(mode)) return "symlink";
    return "other";
}

bool byName(const PersistDirectory::Entry& entry, const std::string& name) {
    return entry.name < name;
}

}  // namespace

PersistDirectory::PersistDirectory(std::string path) : directory(std::move(path)) {}

int PersistDirectory::open() {
    fd.reset(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!fd.valid()) return errno;
    const DirectoryStream listing = fd.listDirectory();
    if (listing == nullptr) return errno;
    errno = 0;
    while (dirent* entry = readdir(listing.get())) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        struct stat info;
        Entry& item = list.emplace_back();
        item.name = name;
        item.type = "other";
        if (fstatat(fd.get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
            item.type = typeOf(info.st_mode);
            item.mode = info.st_mode & 07777;
            item.uid = info.st_uid;
            item.gid = info.st_gid;
        }
        errno = 0;
    }
    if (errno != 0) return errno;
    std::sort(list.begin(), list.end(),
              [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return 0;
}

const PersistDirectory::Entry* PersistDirectory::find(const std::string& name) const {
    auto entry = std::lower_bound(list.begin(), list.end(), name, byName);
    return entry != list.end() && entry->name == name ? &*entry : nullptr;
}

FileRead PersistDirectory::read(const std::string& name) const {
    return readFileAt(fd.get(), name, Links::refuse);
}
