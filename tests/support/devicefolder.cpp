#include "tests/support/devicefolder.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <regex>
#include <sstream>

std::string withoutOwnershipRefusals(const std::string& err) {
    static const std::regex refusal(
        "Error changing group ownership of [^:]*: Operation not permitted");
    return geteuid() == 0 ? err : std::regex_replace(err, refusal, "");
}

bool canTrace() {
    return std::string(OPTOQUILL_TEST_EMULATOR).empty() && access("/usr/bin/strace", X_OK) == 0;
}

DeviceFolder::DeviceFolder() {
    rootPath = makeScratchDirectory();
    for (const char* folder :
         {"/mnt", "/mnt/vendor", "/mnt/vendor/persist", "/mnt/vendor/persist/camera", "/sdcard"}) {
        mkdir((rootPath + folder).c_str(), 0755);
    }
    static std::atomic<int> counter{0};
    prefix = "optoquill-test-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".";
    writeProperties();
}

DeviceFolder::~DeviceFolder() {
    removeTree(rootPath);
}

std::string DeviceFolder::persistFile(const std::string& name) const {
    return rootPath + "/mnt/vendor/persist/camera/" + name;
}

void DeviceFolder::setProperty(const std::string& name, const std::string& value) {
    properties[name] = value;
    writeProperties();
}

void DeviceFolder::writeProperties() const {
    std::string text = "# properties of the emulated device\n";
    for (const auto& [name, value] : properties) text += name + "=" + value + "\n";
    writeFile(rootPath + "/properties", text);
}

std::string DeviceFolder::log() const {
    struct stat info;
    const bool regular = stat((rootPath + "/log").c_str(), &info) == 0 && S_ISREG(info.st_mode);
    return regular ? readFile(rootPath + "/log") : "";
}

std::vector<std::string> DeviceFolder::persistEntries() const {
    return directoryEntries(rootPath + "/mnt/vendor/persist/camera");
}

RunResult DeviceFolder::run(const std::vector<std::string>& arguments,
                            const RunOptions& options) const {
    std::istringstream emulator(OPTOQUILL_TEST_EMULATOR);
    std::vector<std::string> command{std::istream_iterator<std::string>(emulator), {}};
    if (!options.strace.empty()) {
        command.push_back("/usr/bin/strace");
        command.insert(command.end(), options.strace.begin(), options.strace.end());
    }
    command.push_back(options.inspect ? OPTOQUILL_INSPECT_BINARY : OPTOQUILL_BINARY);
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : command) argv.push_back(word.data());
    argv.push_back(nullptr);
    const std::string propertiesFile = rootPath + "/properties";
    const std::string log = rootPath + "/log";

    int outPipe[2];
    int errPipe[2];
    // Close-on-exec, so that runs started at once from several threads do not hold each other's pipes.
    if (pipe2(outPipe, O_CLOEXEC) != 0 || pipe2(errPipe, O_CLOEXEC) != 0) abort();
    pid_t child = fork();
    if (child == 0) {
        dup2(options.output.empty() ? outPipe[1] : open(options.output.c_str(), O_WRONLY), 1);
        dup2(errPipe[1], 2);
        for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) close(fd);
        if (options.asNobody && geteuid() == 0) {
            if (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0) _exit(126);
        }
        setenv("OPTOQUILL_ROOT", rootPath.c_str(), 1);
        setenv("OPTOQUILL_LOG", log.c_str(), 1);
        setenv("OPTOQUILL_SOCKET_PREFIX", prefix.c_str(), 1);
        setenv("OPTOQUILL_PROPERTIES", propertiesFile.c_str(), 1);
        if (!options.strace.empty()) {
            // LeakSanitizer cannot work under ptrace; the other sanitizers can.
            const char* asan = getenv("ASAN_OPTIONS");
            setenv("ASAN_OPTIONS", (std::string(asan ? asan : "") + ":detect_leaks=0").c_str(), 1);
        }
        if (options.fileSizeLimit >= 0) {
            signal(SIGXFSZ, SIG_IGN);  // a write past the limit fails, as on a full disk
            rlimit limit = {static_cast<rlim_t>(options.fileSizeLimit),
                            static_cast<rlim_t>(options.fileSizeLimit)};
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        if (options.memoryLimit >= 0) {
            rlimit limit = {static_cast<rlim_t>(options.memoryLimit),
                            static_cast<rlim_t>(options.memoryLimit)};
            setrlimit(RLIMIT_AS, &limit);
        }
        alarm(60);  // a run that hangs ends, and its row fails, instead of the whole suite hanging
        execv(argv[0], argv.data());
        _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    RunResult result;
    // Standard error holds a few lines at most: it waits in its pipe while standard output drains.
    result.out = readToEnd(outPipe[0]);
    result.err = readToEnd(errPipe[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    // Under qemu-user the emulator reports the signal itself; the tool on a device does not.
    const std::string qemuLine = "qemu: uncaught target signal 6 (Aborted) - core dumped\n";
    size_t at = result.err.find(qemuLine);
    if (at != std::string::npos) result.err.erase(at, qemuLine.size());
    return result;
}
