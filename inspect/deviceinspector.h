#pragma once

#include <string>
#include <vector>

#include "inspect/inspectreport.h"
#include "inspect/persistdirectory.h"

// Gathers the facts of a device's stored calibration and the problems they show: per camera
// role of the camera map the fitted sensor (from the system properties) and its files, then the
// shared files and every entry of the persist directory. Reads only; decodes with the records'
// own decoders.
class DeviceInspector {
  public:
    explicit DeviceInspector(const PersistDirectory& directory);

    InspectReport inspect();

  private:
    void inspectCamera(InspectReport::Camera* camera);
    void inspectAe(InspectReport::Camera* camera);
    void inspectAwbLsc(InspectReport::Camera* camera);
    void inspectAfFile();
    void inspectPdOffsetFile();
    void inspectEepromCopy(const std::string& name);
    void inspectCalibrationLog();
    void inspectEntries();

    // Reads a calibration file; an entry that cannot be read is a problem.
    InspectReport::Presence readFile(const std::string& name, std::vector<unsigned char>* bytes,
                                     const std::string& camera = "");
    // Reads one of the text files, AF or PD-offset, into `file` and its lines; false when it
    // cannot be read (the problem is noted).
    bool readLines(const std::string& path, InspectReport::TextFile* file,
                   std::vector<std::string>* lines);
    void problem(const std::string& kind, const std::string& file, const std::string& camera,
                 const std::string& message);
    InspectReport::Camera* cameraOfFocusFuseId(const std::string& fuseId);

    const PersistDirectory& directory;
    InspectReport report;
};
