#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// The AF and PD-offset files' cut: lines at '\n', fields as the regular expression "\s*,\s*"
// cuts them. Views point into the text they were cut from; nothing is allocated per line.

// The fields of one line: the texts between separators, a separator being a comma with any
// white space on either side. Empty fields between commas count; an empty field after the last
// comma does not; blanks at the very start and end of the line stay. A line without a comma is
// one field, even when empty. `fields` is cleared first; its room is reused from line to line.
// Returns whether every separator was a bare comma, so that the fields lie in the line exactly
// as they would be written again.
bool splitFields(std::string_view line, std::vector<std::string_view>* fields);

// A whole file's lines (cut as forEachLine cuts them), each split as splitFields splits it, in
// one pass over the bytes, sixteen at a time; a line with a blank is split again on its own.
class FieldLines {
  public:
    explicit FieldLines(std::string_view text) : text(text) {}

    // The next line and its fields, and whether they are bare; false after the last line.
    bool next(std::string_view* line, std::vector<std::string_view>* fields, bool* bare);

  private:
    std::string_view text;
    size_t from = 0;   // where the next line begins
    size_t block = 0;  // where the sixteen bytes that hold `from` begin
};
