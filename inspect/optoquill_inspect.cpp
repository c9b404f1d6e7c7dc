// optoquill-inspect: a read-only audit of the calibration that optoquill stored on this device.
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "common/devicepaths.h"
#include "common/persistlock.h"
#include "common/standardoutput.h"
#include "inspect/deviceinspector.h"
#include "inspect/jsonreport.h"
#include "inspect/persistdirectory.h"
#include "inspect/productneeds.h"
#include "inspect/textreport.h"

namespace {

constexpr char kExitStatus[] =
    "Exit status: 0 no problem, 1 at least one problem (notes do not count), 2 usage error,\n"
    "unreadable persist directory, or a store that held it too long.\n";

std::string usage() {
    return "Usage: optoquill-inspect [--json] [--expect CAMERA=KIND[,KIND...]]...\n"
           "Audits the camera calibration stored in the persist directory: is what the product "
           "needs\n"
           "stored, intact and for the sensors fitted now? Reads only.\n"
           "  --json        print the report as one JSON document\n"
           "  --expect      a camera (" +
           cameraNames(&CameraRole::shortName) +
           ") needs these kinds of\n"
           "                calibration: ae, awblsc, af, pdoffset, eeprom; repeatable\n"
           "  -h, --help    print this help\n" +
           kExitStatus;
}

void print(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

// A usage error: one line on standard error.
int usageError(const std::string& why) {
    fprintf(stderr, "optoquill-inspect: %s (see optoquill-inspect --help)\n", why.c_str());
    return 2;
}

}  // namespace

int main(int argc, char* argv[]) {
    bool json = false;
    std::vector<ProductNeed> needs;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        constexpr std::string_view kExpect = "--expect";
        if (argument == "-h" || argument == "--help") {
            print(usage());
            return 0;
        }
        if (argument == "--json") {
            json = true;
        } else if (argument == kExpect || argument.substr(0, kExpect.size() + 1) == "--expect=") {
            std::string_view value = argument.substr(kExpect.size());
            if (value.empty()) {
                if (i + 1 == argc) return usageError("--expect needs CAMERA=KIND[,KIND...]");
                value = argv[++i];
            } else {
                value.remove_prefix(1);
            }
            const std::string error = parseProductNeeds(value, &needs);
            if (!error.empty()) return usageError(error);
        } else {
            return usageError("unknown argument \"" + std::string(argument) + "\"");
        }
    }
    // Shared, so that the audit sees the directory between two stores: a temporary seen while
    // it holds the lock is one a killed run left, never a running store's.
    PersistLock lock(LockMode::shared);
    if (lock.acquire() == PersistLock::Outcome::busy) {
        fprintf(stderr,
                "optoquill-inspect: %s is in use by another optoquill, gave up after %d ms; "
                "nothing was judged\n",
                lock.path().c_str(), lock.timeoutMs());
        return 2;
    }
    PersistDirectory directory(persistDirectory());
    if (const int error = directory.open()) {
        fprintf(stderr, "optoquill-inspect: cannot read %s: %s\n", directory.path().c_str(),
                strerror(error));
        return 2;
    }
    const InspectReport report = DeviceInspector(directory, std::move(needs)).inspect();
    print(json ? renderJsonReport(report) : renderTextReport(report));
    flushStandardOutput("optoquill-inspect");
    return report.problems.count == 0 ? 0 : 1;
}
