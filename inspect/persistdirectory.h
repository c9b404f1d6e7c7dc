#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "common/uniquefd.h"

// The persist directory as the audit sees it: its entries as they are (a link is an entry, never
// followed) and the whole content of a regular file among them. Opens nothing for writing.
class PersistDirectory {
  public:
    struct Entry {
        std::string name;
        std::string type;   // "regular", "directory", "symlink" or "other"
        unsigned mode = 0;  // permission bits
        unsigned uid = 0;
        unsigned gid = 0;
    };

    enum class Read { ok, absent, notRegular, failed };

    explicit PersistDirectory(std::string path);

    // Opens the directory and lists it; false (with errno kept) when it cannot be read.
    bool open();

    const std::string& path() const { return directory; }
    const std::vector<Entry>& entries() const { return list; }
    const Entry* find(const std::string& name) const;

    // The content of entry `name`, when it is a regular file that can be read whole.
    Read read(const std::string& name, std::vector<unsigned char>* bytes) const;

  private:
    std::string directory;
    UniqueFd fd;
    std::vector<Entry> list;
};
