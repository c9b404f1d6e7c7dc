#pragma once

#include <string>

#include "inspect/inspectreport.h"

// The report as one JSON document, built with jsoncpp; inspect/report.schema.json describes it.
std::string renderJsonReport(const InspectReport& report);
