#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// The AF and PD-offset files' cut: lines at '\n', fields as the regular expression "\s*,\s*"
// cuts them. Views point into the text they were cut from; nothing is allocated per line.
//
// A line's fields are the texts between separators, a separator being a comma with any white
// space on either side. Empty fields between commas count; an empty field after the last comma
// does not; blanks at the very start and end of the line stay. A line without a comma is one
// field, even when empty. They are bare when every separator is a bare comma, so that the fields
// lie in the line exactly as they would be written again.
//
// A whole file's lines (cut as forEachLine cuts them) are split in one pass over its bytes,
// sixteen at a time; a line with a blank is split again on its own.
class FieldLines {
  public:
    // The fields of one line. Its room is kept from line to line and only grows.
    class Fields {
      public:
        size_t size() const { return count; }
        const std::string_view& operator[](size_t i) const { return room[i]; }
        const std::string_view& front() const { return room[0]; }
        const std::string_view& back() const { return room[count - 1]; }
        const std::string_view* begin() const { return room.data(); }
        const std::string_view* end() const { return room.data() + count; }

      private:
        friend class FieldLines;
        void clear() { count = 0; }
        void add(std::string_view field);
        // The room, holding `more` fields after the first `used` at least.
        std::string_view* roomFor(size_t used, size_t more);

        std::vector<std::string_view> room;  // its size is the room; the first `count` are used
        size_t count = 0;
    };

    explicit FieldLines(std::string_view text) : text(text) {}

    // Splits one line on its own. Returns whether it is bare.
    static bool split(std::string_view line, Fields* fields);

    // The next line and its fields, and whether they are bare; false after the last line.
    bool next(std::string_view* line, Fields* fields, bool* bare);

  private:
    static bool splitSeparated(std::string_view line, Fields* fields);

    std::string_view text;
    size_t from = 0;   // where the next line begins
    size_t block = 0;  // where the sixteen bytes that hold `from` begin
};
