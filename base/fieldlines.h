#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <vector>

// The AF and PD-offset files' cut: lines at '\n', fields as the regular expression "\s*,\s*"
// cuts them. Views point into the text they were cut from (those of a line with blanks beside its
// commas, into a copy of its fields); nothing is allocated per line.
//
// A line's fields are the texts between separators, a separator being a comma with any white
// space on either side. Empty fields between commas count; an empty field after the last comma
// does not; blanks at the very start and end of the line stay. A line without a comma is one
// field, even when empty. They are bare when every separator is a bare comma, so that the fields
// lie in the line exactly as they would be written again.
//
// A whole file's lines (cut as forEachLine cuts them) are split in one pass over its bytes,
// sixty-four at a time, each block looked at once for every line that shares it; a line with a
// blank beside a comma is split again on its own.
class FieldLines {
  public:
    // The fields of one line; valid until the next line is cut into the same room. Each field is
    // held as where it begins: it ends one byte before the next begins, past its separator.
    class Fields {
      public:
        class Iterator {
          public:
            using iterator_category = std::forward_iterator_tag;
            using value_type = std::string_view;
            using difference_type = std::ptrdiff_t;
            using pointer = void;
            using reference = std::string_view;

            Iterator(const Fields* fields, size_t at) : fields(fields), at(at) {}
            std::string_view operator*() const { return (*fields)[at]; }
            Iterator& operator++() {
                ++at;
                return *this;
            }
            bool operator==(const Iterator& other) const { return at == other.at; }
            bool operator!=(const Iterator& other) const { return at != other.at; }

          private:
            const Fields* fields;
            size_t at;
        };

        Fields() = default;
        Fields(Fields&&) = default;
        Fields& operator=(Fields&&) = default;
        // A copy would point into the other's room.
        Fields(const Fields&) = delete;
        Fields& operator=(const Fields&) = delete;

        size_t size() const { return count; }
        std::string_view operator[](size_t i) const {
            return std::string_view(text + starts[i], starts[i + 1] - starts[i] - 1);
        }
        std::string_view front() const { return (*this)[0]; }
        std::string_view back() const { return (*this)[count - 1]; }
        Iterator begin() const { return Iterator(this, 0); }
        Iterator end() const { return Iterator(this, count); }

      private:
        friend class FieldLines;
        // The room, holding `size` starts at least; it is kept from line to line and only grows.
        size_t* roomFor(size_t size) { return room.size() >= size ? room.data() : grow(size); }
        size_t* grow(size_t size);

        std::vector<size_t> room;  // the starts of a block's lines, in order, in the text
        // A line with blanks beside its commas: its fields joined by bare commas, and their starts.
        std::vector<char> joined;
        std::vector<size_t> joinedStarts;
        const char* text = nullptr;
        const size_t* starts = nullptr;  // count + 1 of them
        size_t count = 0;
    };

    // The bytes looked at together.
    static constexpr size_t kBlock = 64;

    // Splits one line on its own. Returns whether it is bare.
    static bool split(std::string_view line, Fields* fields);

    // Calls `visit(line, *fields, bare)` for each line of `text`, its fields in `fields`.
    template <typename Visit>
    static void forEach(std::string_view text, Fields* fields, Visit visit);

  private:
    // Where the commas, the line breaks and the bytes up to 0x20 (every blank among them) lie in
    // a block: bit i for its byte i.
    struct Marks {
        uint64_t commas = 0;
        uint64_t newlines = 0;
        uint64_t low = 0;
    };

    // A line that a block ends: where, the start that closes its last field, the first start of
    // the next line, and whether it has a byte up to 0x20 (a blank, maybe beside a comma).
    struct Cut {
        size_t end;
        const size_t* last;
        const size_t* next;
        bool low;
    };

    // Where a cut through the text stands between blocks.
    struct Cursor {
        size_t* out;  // where the next start goes
        bool low;     // the line being cut holds a byte up to 0x20
    };

    static bool splitSeparated(std::string_view line, Fields* fields);
    static bool hasBareCommas(std::string_view line);
    static Marks marksOf(const char* block);
    // The marks of the block of `text` at `at`, which may end past the text.
    static Marks marksAt(std::string_view text, size_t at);
    // Cuts what the block of `text` at `at` ends: a start for each field that a comma or line
    // break begins goes where the cursor says, each line (whose starts begin at `lineStarts`) to
    // `cuts`. Returns the count of lines. Calls nothing, so that the cut stays in registers.
    static size_t cutBlock(std::string_view text, size_t at, const size_t* lineStarts,
                           Cursor* cursor, Cut* cuts);

    // Ends the line whose starts begin at `lineStarts` at `end`, adding the start that follows it,
    // and returns the start that closes its last field: an empty field after a comma is no field,
    // its own start closing the one before; an empty line is one empty field.
    static const size_t* closeLine(size_t*& out, size_t end, const size_t* lineStarts) {
        const bool emptyLast = out[-1] == end && out - 1 != lineStarts;
        *out++ = end + 1;
        return emptyLast ? out - 2 : out - 1;
    }

    // Gives the line `whole` of `text` its fields, whose starts run from `first` to `last`, split
    // again when a blank may stand beside a comma, and visits it.
    template <typename Visit>
    static void visitLine(std::string_view text, std::string_view whole, const size_t* first,
                          const size_t* last, bool low, Fields* fields, Visit& visit) {
        if (low && !hasBareCommas(whole)) {
            visit(whole, *fields, splitSeparated(whole, fields));
            return;
        }
        fields->text = text.data();
        fields->starts = first;
        fields->count = static_cast<size_t>(last - first);
        visit(whole, *fields, true);
    }
};

// In the header, so that the visit is inlined. Each block is looked at once, in two steps: its
// commas and line breaks cut the fields and lines, then each line it ended is visited.
template <typename Visit>
void FieldLines::forEach(std::string_view text, Fields* fields, Visit visit) {
    const size_t size = text.size();
    if (size == 0) return;
    // The line a block ends in goes on in the next, with the starts of its fields so far from
    // `head` to `used` in the room; the first line begins with the text.
    size_t line = 0;
    size_t head = 0;
    size_t used = 1;
    fields->roomFor(1)[0] = 0;
    bool low = false;
    Cut cuts[kBlock];
    for (size_t blockAt = 0; blockAt < size; blockAt += kBlock) {
        // Each comma or line break of the block adds one start. When the room is full, the line
        // being cut moves to its front.
        size_t* room = fields->room.data();
        if (fields->room.size() - used < kBlock) {
            for (size_t i = head; i < used; ++i) room[i - head] = room[i];
            used -= head;
            head = 0;
            room = fields->roomFor(used + 4 * kBlock);
        }
        Cursor cursor = {room + used, low};
        const size_t count = cutBlock(text, blockAt, room + head, &cursor, cuts);
        const size_t* first = room + head;
        for (size_t i = 0; i < count; ++i) {
            visitLine(text, text.substr(line, cuts[i].end - line), first, cuts[i].last, cuts[i].low,
                      fields, visit);
            line = cuts[i].end + 1;
            first = cuts[i].next;
        }
        head = static_cast<size_t>(first - room);
        used = static_cast<size_t>(cursor.out - room);
        low = cursor.low;
    }
    // A last line without a line break; its last field ends with the text.
    if (line == size) return;
    size_t* const room = fields->roomFor(used + 1);
    size_t* out = room + used;
    const size_t* last = closeLine(out, size, room + head);
    visitLine(text, text.substr(line), room + head, last, low, fields, visit);
}
