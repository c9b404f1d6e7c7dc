#include "inspect/findingsbook.h"

std::string* FindingsBook::problem(FindingKind kind, const std::string& file,
                                   const std::string& camera, Scope scope) {
    return find(&report.problems, &problemCounts, kind, file, camera, scope);
}

std::string* FindingsBook::note(FindingKind kind, const std::string& file,
                                const std::string& camera, Scope scope) {
    return find(&report.notes, &noteCounts, kind, file, camera, scope);
}

void FindingsBook::close() {
    noteUnlisted(problemCounts, &report.problems);
    noteUnlisted(noteCounts, &report.notes);
}

std::string* FindingsBook::find(InspectReport::Findings* findings, Counts* counts, FindingKind kind,
                                const std::string& file, const std::string& camera, Scope scope) {
    ++findings->count;
    size_t& count = (*counts)[{kind, scope == Scope::file ? file : ""}];
    if (++count > kListLimit) return nullptr;
    findings->listed.push_back({kind, file, camera, ""});
    return &findings->listed.back().message;
}

void FindingsBook::noteUnlisted(const Counts& counts, InspectReport::Findings* findings) {
    for (const auto& [group, count] : counts) {
        if (count > kListLimit)
            findings->unlisted.push_back({group.first, group.second, count - kListLimit});
    }
}
