// optoquill-inspect: a read-only audit of the calibration that optoquill stored on this device.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/devicepaths.h"
#include "inspect/deviceinspector.h"
#include "inspect/jsonreport.h"
#include "inspect/persistdirectory.h"
#include "inspect/textreport.h"

namespace {

const char kUsage[] =
    "Usage: optoquill-inspect [--json]\n"
    "Audits the camera calibration stored in the persist directory: is it complete, intact\n"
    "and for the sensors fitted now? Reads only.\n"
    "  --json      print the report as one JSON document\n"
    "  -h, --help  print this help\n"
    "Exit status: 0 no problem, 1 at least one problem, 2 usage error or unreadable persist\n"
    "directory.\n";

void print(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace

int main(int argc, char* argv[]) {
    bool json = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "-h" || argument == "--help") {
            print(kUsage);
            return 0;
        }
        if (argument != "--json") {
            fprintf(stderr, "optoquill-inspect: unknown argument \"%s\"\n%s", argument.c_str(),
                    kUsage);
            return 2;
        }
        json = true;
    }
    PersistDirectory directory(persistDirectory());
    if (!directory.open()) {
        fprintf(stderr, "optoquill-inspect: cannot read %s: %s\n", directory.path().c_str(),
                strerror(errno));
        return 2;
    }
    const InspectReport report = DeviceInspector(directory).inspect();
    print(json ? renderJsonReport(report) : renderTextReport(report));
    return report.problems.empty() ? 0 : 1;
}
