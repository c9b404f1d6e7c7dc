#include "inspect/textreport.h"

#include <algorithm>
#include <cstdio>

#include "base/text.h"
#include "inspect/utf8text.h"

namespace {

constexpr size_t kLabelWidth = 20;

std::string padded(const std::string& text, size_t width) {
    return text.size() >= width ? text + " " : text + std::string(width - text.size(), ' ');
}

// One "label  value" line, the values of a section lined up. Texts from the device may hold any
// bytes: each stays on its line, as valid UTF-8.
void row(std::string* out, int indent, const std::string& label, const std::string& value) {
    *out += std::string(static_cast<size_t>(indent), ' ') +
            padded(printableUtf8(label), kLabelWidth - static_cast<size_t>(indent)) +
            printableUtf8(value) + "\n";
}

// Rows of cells, each column as wide as its widest cell, beside a label (or only indented).
void table(std::string* out, int indent, const std::string& label,
           const std::vector<std::vector<std::string>>& rows) {
    std::vector<size_t> widths;
    for (const auto& cells : rows) {
        widths.resize(std::max(widths.size(), cells.size()));
        for (size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
    }
    for (size_t r = 0; r < rows.size(); ++r) {
        std::string line;
        for (size_t i = 0; i < rows[r].size(); ++i) {
            line += i + 1 == rows[r].size() ? rows[r][i] : padded(rows[r][i], widths[i] + 2);
        }
        if (label.empty()) {
            *out += std::string(static_cast<size_t>(indent), ' ') + printableUtf8(line) + "\n";
        } else {
            row(out, indent, r == 0 ? label : "", line);
        }
    }
}

std::string verdict(bool ok) {
    return ok ? "ok" : "WRONG";
}

std::string sensorText(const FuseIdProperty& sensor) {
    if (!sensor.set()) return "none (no fuse-ID property set)";
    if (!sensor.wellFormed) return "malformed \"" + sensor.value + "\" in " + sensor.name;
    return sensor.fuseId + " from " + sensor.name;
}

std::string fuseIdText(const std::string& fuseId, bool matches) {
    return (fuseId.empty() ? "(none)" : fuseId) + (matches ? ": matches" : ": DIFFERS");
}

std::string presenceText(const std::string& name, InspectReport::Presence presence) {
    return name + (presence == InspectReport::Presence::absent     ? ": absent"
                   : presence == InspectReport::Presence::tooLarge ? ": too large"
                                                                   : ": unreadable");
}

std::string count(size_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string resultText(int result) {
    return result < 0 ? "-" : std::to_string(result);
}

// "and 12 more points": what a listing leaves out.
std::string moreText(size_t unlisted, const std::string& noun) {
    return "and " + std::to_string(unlisted) + " more " + noun;
}

std::string linesText(const Listing<size_t>& lines) {
    std::string text;
    for (size_t line : lines.items) text += (text.empty() ? "" : ", ") + std::to_string(line);
    if (lines.unlisted() > 0) text += " " + moreText(lines.unlisted(), "lines");
    return text.empty() ? "none" : text;
}

void aeSection(std::string* out, const InspectReport::AeFile& ae) {
    if (ae.presence != InspectReport::Presence::read) {
        row(out, 2, "AE file", presenceText(ae.name, ae.presence));
        return;
    }
    const AeRecord& record = ae.record;
    const std::string size = std::to_string(record.size) + " bytes";
    switch (record.form) {
        case AeRecord::Form::maintain:
            row(out, 2, "AE file", ae.name + ": maintain form, " + size);
            row(out, 4, "CRC",
                "stored " + hex4(record.storedCrc) + ", computed " + hex4(record.computedCrc) +
                    ": " + verdict(record.crcMatches()));
            break;
        case AeRecord::Form::factory:
            row(out, 2, "AE file", ae.name + ": factory form (no CRC), " + size);
            break;
        case AeRecord::Form::badSize:
            row(out, 2, "AE file",
                ae.name + ": " + size + ", WRONG size (" + std::to_string(record.fuseLength + 12) +
                    " expected)");
            break;
    }
    row(out, 4, "fuse ID", fuseIdText(record.fuseIdHex, ae.fuseIdMatches));
    row(out, 4, "values",
        "luma " + std::to_string(record.luma) + ", gain " + std::to_string(record.gain) +
            ", exposure " + std::to_string(record.exposure));
}

void awbLscSection(std::string* out, const InspectReport::AwbLscFile& file) {
    if (file.presence != InspectReport::Presence::read) {
        row(out, 2, "AWB/LSC file", presenceText(file.name, file.presence));
        return;
    }
    row(out, 2, "AWB/LSC file", file.name + ": " + std::to_string(file.record.size) + " bytes");
    const std::pair<const char*, const AwbLscRecord::Block*> blocks[] = {
        {"AWB checksum", &file.record.awb}, {"LSC checksum", &file.record.lsc}};
    for (const auto& [label, block] : blocks) {
        row(out, 4, label,
            block->present ? "stored " + std::to_string(block->stored) + ", computed " +
                                 std::to_string(block->computed) + ": " + verdict(block->ok())
                           : "WRONG: the file ends before it");
    }
    row(out, 4, "fuse ID", fuseIdText(file.record.fuseIdHex, file.fuseIdMatches));
}

std::vector<std::string> pointCells(const InspectReport::AfPoint& point) {
    return {std::to_string(point.line), point.camera,  point.distance,      point.dac,
            point.temperature,          point.useFlag, verdict(point.crcOk)};
}

void afPointTable(std::string* out, int indent, const std::string& label,
                  const Listing<InspectReport::AfPoint>& points, bool withFuseId) {
    std::vector<std::vector<std::string>> rows;
    rows.push_back({"line", "camera", "distance", "DAC", "temp", "use", "CRC"});
    if (withFuseId) rows.back().insert(rows.back().begin() + 1, "fuse ID");
    for (const InspectReport::AfPoint& point : points.items) {
        rows.push_back(pointCells(point));
        if (withFuseId) rows.back().insert(rows.back().begin() + 1, point.fuseId);
    }
    table(out, indent, label, rows);
    if (points.unlisted() > 0) row(out, indent, "", moreText(points.unlisted(), "points"));
}

std::string pdOffsetText(const InspectReport::PdOffsetRecord& record) {
    return "line " + std::to_string(record.line) + ": " + std::to_string(record.valueCount) +
           " values, " + (record.sfrPresent ? "SFR data" : "no SFR data") + ", CRC " +
           verdict(record.crcOk);
}

void textFileRow(std::string* out, const std::string& label, const InspectReport::TextFile& file,
                 const char* dropped) {
    if (file.presence != InspectReport::Presence::read) {
        row(out, 0, label, presenceText(file.name, file.presence));
        return;
    }
    row(out, 0, label, file.name + ": " + count(static_cast<size_t>(file.lines), "line"));
    row(out, 2, dropped, linesText(file.droppedLines));
}

// The verdict, then each problem and note on its line, then what was not listed of them.
void findingsSection(std::string* out, const std::string& heading,
                     const InspectReport::Findings& findings, const std::string& noun) {
    *out += heading + "\n";
    for (const InspectReport::Finding& finding : findings.listed) {
        *out += "  " + printableUtf8(finding.message) + "\n";
    }
    for (const InspectReport::Unlisted& more : findings.unlisted) {
        *out += "  (" +
                count(more.count, "more " + std::string(findingKindName(more.kind)) + " " + noun) +
                " " + (more.file.empty() ? "among the entries" : "in " + printableUtf8(more.file)) +
                ")\n";
    }
}

void cameraSection(std::string* out, const InspectReport::Camera& camera) {
    *out += "\nCamera " + camera.name + " (role " + std::to_string(camera.roleId) + ")\n";
    row(out, 2, "fitted sensor", sensorText(camera.sensor));
    if (camera.focusSensor.name != camera.sensor.name ||
        camera.focusSensor.value != camera.sensor.value) {
        row(out, 2, "focus sensor", sensorText(camera.focusSensor));
    }
    aeSection(out, camera.ae);
    if (camera.hasAwbLsc) awbLscSection(out, camera.awbLsc);
    if (camera.afPoints.count == 0) {
        row(out, 2, "AF points", "none");
    } else {
        afPointTable(out, 2, "AF points", camera.afPoints, false);
    }
    row(out, 2, "PD offset",
        camera.hasPdOffset
            ? pdOffsetText(camera.pdOffset) +
                  (camera.pdOffset.crcOk ? ": read-back accepts it" : ": read-back refuses it")
            : "none");
    row(out, 2, "EEPROM copy", camera.hasEepromCopy ? "stored" : "none");
    row(out, 2, "calibration log",
        "last AE " + resultText(camera.lastAeResult) + ", last AWB " +
            resultText(camera.lastAwbResult));
}

void sharedFiles(std::string* out, const InspectReport& report) {
    textFileRow(out, "AF file", report.afFile, "dropped lines");
    if (report.afFile.presence == InspectReport::Presence::read) {
        row(out, 2, "CRC failures", linesText(report.afFile.crcFailures));
        if (report.unfittedAfPoints.count > 0) {
            afPointTable(out, 2, "not fitted", report.unfittedAfPoints, true);
        }
    }
    textFileRow(out, "PD-offset file", report.pdOffsetFile, "dropped lines");
    if (report.pdOffsetFile.presence == InspectReport::Presence::read) {
        row(out, 2, "CRC failures", linesText(report.pdOffsetFile.crcFailures));
        for (const InspectReport::PdOffsetRecord& record : report.unfittedPdOffsets.items) {
            row(out, 2, "not fitted", record.fuseId + " " + pdOffsetText(record));
        }
        if (report.unfittedPdOffsets.unlisted() > 0) {
            row(out, 2, "", moreText(report.unfittedPdOffsets.unlisted(), "records"));
        }
    }
    textFileRow(out, "Calibration log", report.calibrationLog, "malformed lines");

    *out += "\nEEPROM copies\n";
    if (report.eepromCopies.count == 0) row(out, 2, "none", "");
    for (const InspectReport::EepromCopy& copy : report.eepromCopies.items) {
        if (copy.presence != InspectReport::Presence::read) {
            row(out, 2, copy.name, presenceText("", copy.presence).substr(2));
            continue;
        }
        std::string owners;
        for (const std::string& camera : copy.cameras) {
            owners += (owners.empty() ? "" : ",") + camera;
        }
        const std::string byte = hexByte(copy.record.checksum);
        row(out, 2, copy.name,
            "fuse ID " + copy.fuseId + ", camera " + (owners.empty() ? "NONE" : owners) +
                ", checksum " + (copy.record.hasChecksum ? byte : "MISSING") + " vs " +
                (copy.publishedChecksum.empty() ? "(unset)" : copy.publishedChecksum) + ": " +
                verdict(copy.checksumAgrees));
    }
    if (report.eepromCopies.unlisted() > 0) {
        row(out, 2, "", moreText(report.eepromCopies.unlisted(), "copies"));
    }

    *out += "\nEntries\n";
    std::vector<std::vector<std::string>> rows = {{"name", "type", "mode", "owner", "role"}};
    for (const InspectReport::Entry& entry : report.entries.items) {
        char mode[8];
        snprintf(mode, sizeof mode, "%04o", entry.mode);
        rows.push_back({entry.name, entry.type, mode,
                        std::to_string(entry.uid) + ":" + std::to_string(entry.gid), entry.role});
    }
    table(out, 2, "", rows);
    if (report.entries.unlisted() > 0) {
        row(out, 2, moreText(report.entries.unlisted(), "entries"), "");
    }
}

}  // namespace

std::string renderTextReport(const InspectReport& report) {
    const size_t problems = report.problems.count;
    std::string out;
    findingsSection(&out, problems == 0 ? "PASS" : "FAIL: " + count(problems, "problem"),
                    report.problems, "problem");
    if (report.notes.count > 0) {
        findingsSection(
            &out, "Notes: " + std::to_string(report.notes.count) + ", history that is not a problem",
            report.notes, "note");
    }
    out += "\n";
    row(&out, 0, "Persist directory", report.persistDirectory);
    if (!report.needs.empty()) {
        std::string needs;
        for (const InspectReport::Need& need : report.needs) {
            needs += (needs.empty() ? "" : ", ") + need.camera + " " +
                     std::string(needKindName(need.kind)) + (need.met ? " met" : " NOT MET");
        }
        row(&out, 0, "Needs", needs);
    }
    std::string unfitted;
    for (const InspectReport::Camera& camera : report.cameras) {
        if (camera.fitted) {
            cameraSection(&out, camera);
        } else {
            unfitted += (unfitted.empty() ? "" : ", ") + camera.name;
        }
    }
    if (!unfitted.empty()) {
        out += "\n";
        row(&out, 0, "Not fitted", unfitted + " (no fuse-ID property set)");
    }
    out += "\n";
    sharedFiles(&out, report);
    return out;
}
