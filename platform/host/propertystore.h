#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// The system properties of the emulated device, as a getprop snapshot or a build.prop file
// gives them.
class PropertyStore {
  public:
    // A line that is not taken as it stands: its number (from 1) and what was done with it.
    struct Warning {
        int line;
        const char* what;  // "is neither name=value nor [name]: [value], skipped", ...
    };

    // Replaces the store's contents with the properties in `file`, a regular file (a link to one
    // is followed). On failure returns false, leaves the store as it was and says why in
    // `error`.
    bool loadFile(const std::string& file, std::string* error,
                  std::vector<Warning>* warnings = nullptr);

    // Adds the properties of a file's text: lines `name=value` or `[name]: [value]` (a value
    // may run over several lines, up to one that ends with ']', as getprop prints it); blank
    // lines and lines starting with '#' are skipped; a later line for a name wins. Any other
    // line is skipped with a warning; a value holding a NUL byte is cut there, as a device's
    // property would be, and a byte-order mark before the first line is dropped, each with a
    // warning.
    void loadText(std::string_view text, std::vector<Warning>* warnings = nullptr);

    // Sets one property; the value is cut to what a device holds (up to a NUL, 91 bytes).
    void set(const std::string& name, const std::string& value);
    void clear() { values.clear(); }

    // The property's value, or null when it was never set.
    const std::string* find(const std::string& name) const;

    // The store behind property_get, loaded from OPTOQUILL_PROPERTIES on first use. A file that
    // cannot be read stops the process with status 2 (the run reads it before any stage).
    static PropertyStore& process();

  private:
    // False for a line of neither form.
    bool addLine(std::string_view line);
    // Whether `line` is the first line of getprop's print of a value that holds line breaks.
    static bool opensMultiLineValue(std::string_view line);

    std::map<std::string, std::string> values;
};
