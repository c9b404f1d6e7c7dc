#include <cutils/properties.h>

#include <cstring>

#include "platform/host/propertystore.h"

int property_get(const char* key, char* value, const char* default_value) {
    const std::string* found = PropertyStore::process().find(key);
    const char* source = "";
    size_t length = 0;
    if (found != nullptr && !found->empty()) {
        source = found->c_str();
        length = found->size();
    } else if (default_value != nullptr) {
        source = default_value;
        length = strnlen(default_value, PROPERTY_VALUE_MAX - 1);
    }
    memcpy(value, source, length);
    value[length] = '\0';
    return static_cast<int>(length);
}
