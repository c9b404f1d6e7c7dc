#pragma once

#include <string>

#include "inspect/inspectreport.h"

// The report as one JSON document (the schema is in README.md), built with jsoncpp.
std::string renderJsonReport(const InspectReport& report);
