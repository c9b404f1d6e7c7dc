// Feeds arbitrary bytes to everything that reads calibration files or property text: none of it
// may read past its input, whatever the input holds.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "ae/aecalibrationdata.h"
#include "af/afcalibrationdata.h"
#include "awblsc/eepromcalibrationdata.h"
#include "common/decimaltext.h"
#include "common/filebytes.h"
#include "platform/host/propertystore.h"

namespace {

const std::string& inputFile() {
    static const std::string file = [] {
        char name[] = "/tmp/optoquill-fuzz-XXXXXX";
        int fd = mkstemp(name);
        if (fd >= 0) close(fd);
        // The records print their complaints.
        if (freopen("/dev/null", "w", stdout) == nullptr) abort();
        return std::string(name);
    }();
    return file;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (FILE* out = fopen(inputFile().c_str(), "wb")) {
        fwrite(data, 1, size, out);
        fclose(out);
    }
    AeCalibrationData ae;
    if (ae.parse(inputFile().c_str())) ae.dump();
    EepromCalibrationData awbLsc;
    if (awbLsc.parse(inputFile().c_str())) awbLsc.dump();

    PropertyStore store;
    store.loadText(text);
    leadingDecimal(text);

    AfCalibrationData af;
    std::vector<std::string> items;
    af.splitAFInfoString(text, items, ",");
    af.splitAFInfoString(text, items, ":");
    return 0;
}
