// Host stand-in for the platform's <cutils/properties.h>: only what optoquill uses.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

#define PROPERTY_VALUE_MAX 92

// Copies the property's value (or the default when the property is unset or empty) into
// `value`, which holds PROPERTY_VALUE_MAX bytes, and returns its length.
int property_get(const char* key, char* value, const char* default_value);

#ifdef __cplusplus
}
#endif
