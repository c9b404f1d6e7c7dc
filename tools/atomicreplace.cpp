// The floor of a store, for tools/bench: one durable atomic replace of a file with its own bytes.
// Reads the file, writes the bytes to a temporary beside it, syncs it, renames it over the file
// and syncs the directory, which is the least any store of that file has to do.
//
//   atomicreplace <file>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "base/uniquefd.h"

namespace {

bool readAll(int fd, std::string* bytes) {
    struct stat info;
    if (fstat(fd, &info) != 0) return false;
    bytes->resize(static_cast<size_t>(info.st_size));
    size_t done = 0;
    while (done < bytes->size()) {
        const ssize_t got = read(fd, bytes->data() + done, bytes->size() - done);
        if (got <= 0) return false;
        done += static_cast<size_t>(got);
    }
    return true;
}

bool writeAll(int fd, const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t put = write(fd, bytes.data() + done, bytes.size() - done);
        if (put <= 0) return false;
        done += static_cast<size_t>(put);
    }
    return true;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        fprintf(stderr, "usage: atomicreplace <file>\n");
        return 2;
    }
    const std::string file = argv[1];
    const size_t slash = file.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : file.substr(0, slash + 1);
    const std::string temporary = folder + "/.atomicreplace.tmp";
    std::string bytes;
    UniqueFd in(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    UniqueFd out(open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    UniqueFd directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!in.valid() || !out.valid() || !directory.valid() || !readAll(in.get(), &bytes) ||
        !writeAll(out.get(), bytes) || fsync(out.get()) != 0 ||
        rename(temporary.c_str(), file.c_str()) != 0 || fsync(directory.get()) != 0) {
        perror(file.c_str());
        return 1;
    }
    return 0;
}
