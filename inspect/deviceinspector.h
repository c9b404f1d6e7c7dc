#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/cameras.h"
#include "inspect/devicejudge.h"
#include "inspect/findingsbook.h"
#include "inspect/inspectreport.h"
#include "inspect/persistdirectory.h"
#include "inspect/productneeds.h"

// Gathers the facts of a device's stored calibration: per camera role of the camera map the
// fitted sensor (from the system properties) and its files, then the shared files, every entry
// of the persist directory and the product's needs. Reads only; decodes with the records' own
// decoders, and hands each fact to the judge as it comes to it. Time is linear in the
// directory's size, and only the first kListLimit findings of a kind in a file are kept, the
// rest counted.
class DeviceInspector {
  public:
    DeviceInspector(const PersistDirectory& directory, std::vector<ProductNeed> needs);

    // The report; once per inspector.
    InspectReport inspect();

  private:
    void inspectCamera(InspectReport::Camera* camera, const CameraRole& role);
    void inspectAe(InspectReport::Camera* camera, const CameraRole& role);
    void inspectAwbLsc(InspectReport::Camera* camera, const CameraRole& role);
    // One walk over the lines of the AF or the PD-offset file; `visit` takes each line the
    // loader keeps.
    template <typename Visit>
    void inspectLineFile(InspectReport::TextFile* file, std::string_view name,
                         DeviceJudge::LineFile kind, Visit visit);
    void inspectAfFile();
    void inspectPdOffsetFile();
    void inspectEepromCopy(const std::string& name);
    void inspectCalibrationLog();
    void inspectEntries();

    // Reads a calibration file into `bytes`; an entry that cannot be read is judged.
    InspectReport::Presence readFile(const std::string& name, const std::string& camera,
                                     std::string* bytes);
    InspectReport::Camera* cameraOfFocusFuseId(std::string_view fuseId);

    const PersistDirectory& directory;
    std::vector<ProductNeed> needs;
    InspectReport report;
    FindingsBook book{&report};
    DeviceJudge judge{&book};
};
