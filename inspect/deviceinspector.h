#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "common/cameras.h"
#include "inspect/inspectreport.h"
#include "inspect/persistdirectory.h"
#include "inspect/productneeds.h"

// Gathers the facts of a device's stored calibration and the problems and notes they show: per
// camera role of the camera map the fitted sensor (from the system properties) and its files,
// then the shared files, every entry of the persist directory and the product's needs. Reads
// only; decodes with the records' own decoders. Time is linear in the directory's size, and
// only the first kListLimit findings of a kind in a file are kept, the rest counted.
class DeviceInspector {
  public:
    DeviceInspector(const PersistDirectory& directory, std::vector<ProductNeed> needs);

    InspectReport inspect();

  private:
    // Whether a finding is listed with the others about its own file or with those about the
    // persist directory's entries, which are many when the directory is full of junk.
    enum class Scope { file, entries };

    void inspectCamera(InspectReport::Camera* camera, const CameraRole& role);
    void inspectAe(InspectReport::Camera* camera, const CameraRole& role);
    void inspectAwbLsc(InspectReport::Camera* camera, const CameraRole& role);
    // The finding about `file`, stored for `fuseId`, which is not the camera's fitted sensor's:
    // history where no sensor is fitted, a problem where another one is.
    void otherFuseId(const std::string& file, const std::string& fuseId,
                     const InspectReport::Camera& camera);
    // One walk over the lines of the AF or the PD-offset file: dropped lines, CRCs and runs of
    // an unfitted module's lines are judged alike; `visit` takes each line the loader keeps.
    struct LineFile;
    template <typename Visit>
    void inspectLineFile(InspectReport::TextFile* file, std::string_view name, const LineFile& kind,
                         Visit visit);
    void inspectAfFile();
    void inspectPdOffsetFile();
    void inspectEepromCopy(const std::string& name);
    void inspectCalibrationLog();
    void inspectEntries();
    void judgeNeeds();

    // Reads a calibration file into `bytes`; an entry that cannot be read is a problem.
    InspectReport::Presence readFile(const std::string& name, const std::string& camera,
                                     std::string* bytes);
    // Counts a problem (or a note); while it is among the first of its kind and scope, returns
    // the sentence to fill in, else null, so that junk costs no words.
    std::string* problem(const std::string& kind, const std::string& file,
                         const std::string& camera, Scope scope = Scope::file);
    std::string* note(const std::string& kind, const std::string& file, const std::string& camera,
                      Scope scope = Scope::file);
    // Findings counted per kind and file ("" for the entries).
    using Counts = std::map<std::pair<std::string, std::string>, size_t>;
    std::string* find(InspectReport::Findings* findings, Counts* counts, const std::string& kind,
                      const std::string& file, const std::string& camera, Scope scope);
    static void noteUnlisted(const Counts& counts, InspectReport::Findings* findings);
    InspectReport::Camera* cameraOfFocusFuseId(std::string_view fuseId);

    const PersistDirectory& directory;
    std::vector<ProductNeed> needs;
    InspectReport report;
    Counts problemCounts;
    Counts noteCounts;
};
