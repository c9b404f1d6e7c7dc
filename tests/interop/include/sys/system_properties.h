// Stand-in for bionic's <sys/system_properties.h>, which the platform's <cutils/properties.h>
// includes for this one constant.
#pragma once

#define PROP_VALUE_MAX 92
