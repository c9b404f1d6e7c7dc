#pragma once

#include <map>
#include <string>
#include <vector>

// The system properties of the emulated device, as a getprop snapshot or a build.prop file
// gives them.
class PropertyStore {
  public:
    // Replaces the store's contents with the properties in `file`. On failure returns false,
    // leaves the store as it was and says why in `error`.
    bool loadFile(const std::string& file, std::string* error,
                  std::vector<int>* skippedLines = nullptr);

    // Adds the properties of a file's text: lines `name=value` or `[name]: [value]`; blank
    // lines and lines starting with '#' are skipped; a later line for a name wins. Any other
    // line is skipped too, its number (from 1) added to `skippedLines`.
    void loadText(const std::string& text, std::vector<int>* skippedLines = nullptr);

    // Sets one property; the value is cut to what a device holds (91 bytes).
    void set(const std::string& name, const std::string& value);
    void clear() { values.clear(); }

    // The property's value, or null when it was never set.
    const std::string* find(const std::string& name) const;

    // The store behind property_get, loaded from OPTOQUILL_PROPERTIES at start-up. A file that
    // cannot be read stops the process with status 2 before any stage runs.
    static PropertyStore& process();

  private:
    // False for a line of neither form.
    bool addLine(std::string line);

    std::map<std::string, std::string> values;
};
