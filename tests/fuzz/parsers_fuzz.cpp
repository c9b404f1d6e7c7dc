// Feeds arbitrary bytes to everything that reads calibration files or property values: none of
// it may read past its input, whatever the input holds. Portable code only, so that the same
// target builds for the device (Android.bp's cc_fuzz).
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

#include "ae/aerecord.h"
#include "af/afcalibrationdata.h"
#include "af/aflines.h"
#include "awblsc/awblscrecord.h"
#include "base/fieldlines.h"
#include "base/parseint.h"
#include "common/fuseidproperty.h"
#include "eeprom/eeprombinrecord.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);

    // The record decoders take the bytes as they are: no file, nothing left behind.
    {
        AeRecord::decode(text);
        AwbLscRecord::decode(text);
        EepromBinRecord::decode(text).checksumAgrees(text);
        EepromBinRecord::belongsTo(EepromBinRecord::fuseIdOfPath(text), text);
        splitFuseIdProperty("vendor.camera.sensor.w.fuseID", text);
    }

    leadingInt(text);
    atoiOnDevice(text);
    parseInt(text, INT64_MIN, INT64_MAX, Rest::refuse, 16);

    AfCalibrationData af;
    std::vector<std::string> items;
    af.splitAFInfoString(text, items, ",");
    af.splitAFInfoString(text, items, ":");
    decodeAfLine(text);
    decodePdOffsetLine(text);

    // The AF and PD-offset files' one-pass cut is getline's lines, each split as the regex token
    // split it replaced (on a bounded prefix: the regex recurses per character).
    static const std::regex separator("\\s*,\\s*");
    const std::string prefix = text.substr(0, 256);
    FieldLines::Fields fields;
    size_t at = 0;  // where the next line must begin
    FieldLines::forEach(prefix, &fields, [&](std::string_view line, const FieldLines::Fields&, bool) {
        const std::string expected(line);
        at += line.size();
        if (line.data() + line.size() != prefix.data() + at ||
            expected.find('\n') != std::string::npos || (at < prefix.size() && prefix[at] != '\n') ||
            std::vector<std::string>(fields.begin(), fields.end()) !=
                std::vector<std::string>(
                    std::sregex_token_iterator(expected.begin(), expected.end(), separator, -1),
                    std::sregex_token_iterator())) {
            abort();
        }
        ++at;
    });
    if (at < prefix.size()) abort();
    return 0;
}
