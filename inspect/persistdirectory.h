#pragma once

#include <string>
#include <vector>

#include "base/filereader.h"
#include "base/uniquefd.h"

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

    explicit PersistDirectory(std::string path);

    // Opens the directory and lists it, sorted by name: 0, or the errno of the step that failed.
    int open();

    const std::string& path() const { return directory; }
    const std::vector<Entry>& entries() const { return list; }
    const Entry* find(const std::string& name) const;

    // Entry `name` read whole by the one reader, never through a link.
    FileRead read(const std::string& name) const;

  private:
    std::string directory;
    UniqueFd fd;
    std::vector<Entry> list;
};
