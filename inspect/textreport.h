#pragma once

#include <string>

#include "inspect/inspectreport.h"

// The report for people: one section per camera, then the shared files, the entries and the
// problems, in aligned columns.
std::string renderTextReport(const InspectReport& report);
