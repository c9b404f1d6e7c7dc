// Feeds arbitrary bytes to everything that reads calibration files or property text: none of it
// may read past its input, whatever the input holds.
#include <algorithm>
#include <cstdint>
#include <regex>
#include <string>
#include <vector>

#include "ae/aerecord.h"
#include "af/afcalibrationdata.h"
#include "af/aflines.h"
#include "awblsc/awblscrecord.h"
#include "common/decimaltext.h"
#include "common/fuseidproperty.h"
#include "eeprom/eeprombinrecord.h"
#include "platform/host/propertystore.h"

namespace {

void sameRecord(const DecodedLine& read, const DecodedLine& again) {
    if (again.status != LineStatus::ok || again.storedCrc != read.storedCrc ||
        again.computedCrc != read.computedCrc || again.fields.size() != read.fields.size() ||
        !std::equal(read.fields.begin(), read.fields.end() - 1, again.fields.begin())) {
        abort();
    }
}

// The AF and PD-offset line split is the regex token split it replaced (on a bounded prefix: the
// regex recurses per character), and a decoded line written back decodes to the same.
void checkAfLines(const std::string& text) {
    static const std::regex separator("\\s*,\\s*");
    const std::string prefix = text.substr(0, 256);
    const std::vector<std::string_view> fields = splitFields(prefix);
    if (std::vector<std::string>(fields.begin(), fields.end()) !=
        std::vector<std::string>(
            std::sregex_token_iterator(prefix.begin(), prefix.end(), separator, -1),
            std::sregex_token_iterator())) {
        abort();
    }
    const DecodedLine af = decodeAfLine(text);
    if (af.status == LineStatus::ok) {
        std::string written;
        appendAfLine(&written, {af.fields.begin(), af.fields.end() - 1}, af.storedCrc);
        written.pop_back();  // the "\n" that a loader splits lines at
        sameRecord(af, decodeAfLine(written));
    }
    const DecodedLine pd = decodePdOffsetLine(text);
    if (pd.status == LineStatus::ok) {
        const auto values = pd.fields.begin() + 4;
        const auto sfrData = values + pd.valueCount;
        std::string written;
        appendPdOffsetLine(&written, {pd.fields.begin(), values}, {values, sfrData},
                           {sfrData, pd.fields.end() - 1}, pd.storedCrc);
        written.pop_back();
        sameRecord(pd, decodePdOffsetLine(written));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);

    // The record decoders take the bytes as they are: no file, nothing left behind.
    {
        const std::vector<unsigned char> bytes(data, data + size);
        AeRecord::decode(bytes);
        AwbLscRecord::decode(bytes);
        EepromBinRecord::decode(bytes).checksumAgrees(text);
        EepromBinRecord::belongsTo(EepromBinRecord::fuseIdOfPath(text), text);
        splitFuseIdProperty("vendor.camera.sensor.w.fuseID", text);
    }

    PropertyStore store;
    store.loadText(text);
    leadingDecimal(text);

    AfCalibrationData af;
    std::vector<std::string> items;
    af.splitAFInfoString(text, items, ",");
    af.splitAFInfoString(text, items, ":");
    checkAfLines(text);
    return 0;
}
