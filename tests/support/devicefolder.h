#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/testfiles.h"

// What one run of the tool left behind.
struct RunResult {
    std::string out;
    std::string err;
    int status = -1;  // exit status, or -1 when a signal ended the run
    int signal = 0;
};

struct RunOptions {
    long fileSizeLimit = -1;  // bytes any file may grow to (a full disk), -1 for none
    bool inspect = false;     // run optoquill-inspect instead of optoquill
    bool asNobody = false;    // run as user and group 65534, when the test runs as root
    long memoryLimit = -1;    // bytes of address space the tool may map, -1 for none
    std::string output;       // a file standard output goes to (/dev/full, say) instead of `out`
    // strace's options, to run the tool under it (faults and signals injected, calls recorded)
    std::vector<std::string> strace;
};

// Standard error without the ownership refusals that every file costs a user who is not root
// (only root may give a file to the system user).
std::string withoutOwnershipRefusals(const std::string& err);

// Whether the tool can run under strace here: strace is installed and the tool is native.
bool canTrace();

// A device in a temporary folder: the persist directory, sdcard, a properties file, a log file
// and a socket prefix of its own, removed with the object. It runs the real optoquill binary
// (or optoquill-inspect).
class DeviceFolder {
  public:
    DeviceFolder();
    ~DeviceFolder();
    DeviceFolder(const DeviceFolder&) = delete;
    DeviceFolder& operator=(const DeviceFolder&) = delete;

    const std::string& root() const { return rootPath; }
    std::string persistFile(const std::string& name) const;
    std::string path(const std::string& relative) const { return rootPath + "/" + relative; }
    const std::string& socketPrefix() const { return prefix; }

    void setProperty(const std::string& name, const std::string& value);

    RunResult run(const std::vector<std::string>& arguments, const RunOptions& options = {}) const;

    // The Android log lines that the runs so far wrote.
    std::string log() const;
    // Names in the persist directory, sorted.
    std::vector<std::string> persistEntries() const;

  private:
    void writeProperties() const;

    std::string rootPath;
    std::string prefix;
    std::map<std::string, std::string> properties;
};
