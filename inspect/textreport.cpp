#include "inspect/textreport.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr size_t kLabelWidth = 20;

std::string padded(const std::string& text, size_t width) {
    return text.size() >= width ? text + " " : text + std::string(width - text.size(), ' ');
}

// One "label  value" line, the values of a section lined up.
void row(std::string* out, int indent, const std::string& label, const std::string& value) {
    *out += std::string(static_cast<size_t>(indent), ' ') +
            padded(label, kLabelWidth - static_cast<size_t>(indent)) + value + "\n";
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
            *out += std::string(static_cast<size_t>(indent), ' ') + line + "\n";
        } else {
            row(out, indent, r == 0 ? label : "", line);
        }
    }
}

std::string hex4(unsigned value) {
    char text[8];
    snprintf(text, sizeof text, "0x%04X", value & 0xFFFF);
    return text;
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
    return name + (presence == InspectReport::Presence::absent ? ": absent" : ": unreadable");
}

std::string count(size_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string resultText(int result) {
    return result < 0 ? "-" : std::to_string(result);
}

std::string linesText(const std::vector<int>& lines) {
    std::string text;
    for (int line : lines) text += (text.empty() ? "" : ", ") + std::to_string(line);
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
                  const std::vector<InspectReport::AfPoint>& points, bool withFuseId) {
    std::vector<std::vector<std::string>> rows;
    rows.push_back({"line", "camera", "distance", "DAC", "temp", "use", "CRC"});
    if (withFuseId) rows.back().insert(rows.back().begin() + 1, "fuse ID");
    for (const InspectReport::AfPoint& point : points) {
        rows.push_back(pointCells(point));
        if (withFuseId) rows.back().insert(rows.back().begin() + 1, point.fuseId);
    }
    table(out, indent, label, rows);
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

}  // namespace

std::string renderTextReport(const InspectReport& report) {
    std::string out;
    row(&out, 0, "Persist directory", report.persistDirectory);
    for (const InspectReport::Camera& camera : report.cameras) {
        out += "\nCamera " + camera.name + " (role " + std::to_string(camera.roleId) + ")\n";
        row(&out, 2, "fitted sensor", sensorText(camera.sensor));
        if (camera.focusSensor.name != camera.sensor.name ||
            camera.focusSensor.value != camera.sensor.value) {
            row(&out, 2, "focus sensor", sensorText(camera.focusSensor));
        }
        aeSection(&out, camera.ae);
        if (camera.hasAwbLsc) awbLscSection(&out, camera.awbLsc);
        if (camera.afPoints.empty()) {
            row(&out, 2, "AF points", "none");
        } else {
            afPointTable(&out, 2, "AF points", camera.afPoints, false);
        }
        row(&out, 2, "PD offset",
            camera.hasPdOffset
                ? pdOffsetText(camera.pdOffset) +
                      (camera.pdOffset.crcOk ? ": read-back accepts it" : ": read-back refuses it")
                : "none");
        row(&out, 2, "calibration log",
            "last AE " + resultText(camera.lastAeResult) + ", last AWB " +
                resultText(camera.lastAwbResult));
    }

    out += "\n";
    textFileRow(&out, "AF file", report.afFile, "dropped lines");
    if (report.afFile.presence == InspectReport::Presence::read) {
        row(&out, 2, "CRC failures", linesText(report.afFile.crcFailures));
        if (!report.unfittedAfPoints.empty()) {
            afPointTable(&out, 2, "not fitted", report.unfittedAfPoints, true);
        }
    }
    textFileRow(&out, "PD-offset file", report.pdOffsetFile, "dropped lines");
    if (report.pdOffsetFile.presence == InspectReport::Presence::read) {
        row(&out, 2, "CRC failures", linesText(report.pdOffsetFile.crcFailures));
        for (const InspectReport::PdOffsetRecord& record : report.unfittedPdOffsets) {
            row(&out, 2, "not fitted", record.fuseId + " " + pdOffsetText(record));
        }
    }
    textFileRow(&out, "Calibration log", report.calibrationLog, "malformed lines");

    out += "\nEEPROM copies\n";
    if (report.eepromCopies.empty()) row(&out, 2, "none", "");
    for (const InspectReport::EepromCopy& copy : report.eepromCopies) {
        if (copy.presence != InspectReport::Presence::read) {
            row(&out, 2, copy.name, "unreadable");
            continue;
        }
        std::string owners;
        for (const std::string& camera : copy.cameras)
            owners += (owners.empty() ? "" : ",") + camera;
        char byte[3];
        snprintf(byte, sizeof byte, "%02X", copy.record.checksum);
        row(&out, 2, copy.name,
            "fuse ID " + copy.fuseId + ", camera " + (owners.empty() ? "NONE" : owners) +
                ", checksum " + (copy.record.hasChecksum ? byte : "MISSING") + " vs " +
                (copy.publishedChecksum.empty() ? "(unset)" : copy.publishedChecksum) + ": " +
                verdict(copy.checksumAgrees));
    }

    out += "\nEntries\n";
    std::vector<std::vector<std::string>> rows = {{"name", "type", "mode", "owner", "role"}};
    for (const InspectReport::Entry& entry : report.entries) {
        char mode[8];
        snprintf(mode, sizeof mode, "%04o", entry.mode);
        rows.push_back({entry.name, entry.type, mode,
                        std::to_string(entry.uid) + ":" + std::to_string(entry.gid), entry.role});
    }
    table(&out, 2, "", rows);

    out += "\nProblems: " + std::to_string(report.problems.size()) + "\n";
    for (const InspectReport::Problem& problem : report.problems)
        out += "  " + problem.message + "\n";
    return out;
}
