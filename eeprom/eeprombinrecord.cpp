#include "eeprom/eeprombinrecord.h"

#include <strings.h>

#include "base/text.h"

namespace {

std::string withCase(std::string text, char from, char to) {
    for (char& c : text) {
        if (c >= from && c <= static_cast<char>(from + 25)) c = static_cast<char>(c - from + to);
    }
    return text;
}

}  // namespace

EepromBinRecord EepromBinRecord::decode(std::string_view bytes) {
    EepromBinRecord record;
    if (bytes.size() > checksumOffset) {
        record.hasChecksum = true;
        record.checksum = static_cast<unsigned char>(bytes[checksumOffset]);
    }
    return record;
}

std::string EepromBinRecord::fuseIdOfPath(const std::string& path) {
    const size_t slash = path.rfind('/');
    const size_t start = slash == std::string::npos ? 0 : slash + 1;
    // The first ".bin" of the whole path, even one in a folder name before the last '/'.
    size_t end = path.find(".bin");
    if (end == std::string::npos || end < start) end = path.size();
    return withCase(path.substr(start, end - start), 'A', 'a');
}

bool EepromBinRecord::belongsTo(const std::string& pathFuseId, const std::string& propertyValue) {
    return propertyValue.find(upperCase(pathFuseId)) != std::string::npos;
}

bool EepromBinRecord::checksumAgrees(const std::string& publishedChecksum) const {
    if (!hasChecksum) return false;
    return strcasecmp(hexByte(checksum).c_str(), publishedChecksum.c_str()) == 0;
}

std::string EepromBinRecord::upperCase(std::string text) {
    return withCase(std::move(text), 'a', 'A');
}
