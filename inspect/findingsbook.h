#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "inspect/inspectreport.h"

// The problems and notes of one report as they are found: each counted, and only the first
// kListLimit of a kind in one file (or among the persist directory's entries) worded, so that
// junk costs no words.
class FindingsBook {
  public:
    // Whether a finding is listed with the others about its own file or with those about the
    // persist directory's entries, which are many when the directory is full of junk.
    enum class Scope { file, entries };

    explicit FindingsBook(InspectReport* report) : report(*report) {}

    // Counts a problem (or a note); while it is among the first of its kind and scope, returns
    // the sentence to fill in, else null.
    std::string* problem(FindingKind kind, const std::string& file, const std::string& camera,
                         Scope scope = Scope::file);
    std::string* note(FindingKind kind, const std::string& file, const std::string& camera,
                      Scope scope = Scope::file);

    // Says how many of each kind went unworded; the last call.
    void close();

  private:
    // Findings counted per kind and file ("" for the entries).
    using Counts = std::map<std::pair<FindingKind, std::string>, size_t>;

    static std::string* find(InspectReport::Findings* findings, Counts* counts, FindingKind kind,
                             const std::string& file, const std::string& camera, Scope scope);
    static void noteUnlisted(const Counts& counts, InspectReport::Findings* findings);

    InspectReport& report;
    Counts problemCounts;
    Counts noteCounts;
};
