// Feeds arbitrary bytes to everything that reads calibration files or property text: none of it
// may read past its input, whatever the input holds.
#include <cstdint>
#include <string>
#include <vector>

#include "ae/aerecord.h"
#include "af/afcalibrationdata.h"
#include "awblsc/awblscrecord.h"
#include "common/decimaltext.h"
#include "common/fuseidproperty.h"
#include "eeprom/eeprombinrecord.h"
#include "platform/host/propertystore.h"

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
    return 0;
}
