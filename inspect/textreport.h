#pragma once

#include <string>

#include "inspect/inspectreport.h"

// The report for people: the verdict on its first line, the problems and notes, then a section
// per fitted camera, the other cameras on one line, the shared files and the entries, in aligned
// columns.
std::string renderTextReport(const InspectReport& report);
