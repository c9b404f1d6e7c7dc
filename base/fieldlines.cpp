#include "base/fieldlines.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

#include "base/text.h"

namespace {

// Where the commas, the line breaks and the bytes up to 0x20 (every blank among them) lie in a
// block of 16 bytes: a mark per byte, the first byte's lowest, kBitsPerMark bits apart.
struct Marks {
    uint64_t commas;
    uint64_t newlines;
    uint64_t low;
};

constexpr size_t kBlock = 16;

#if defined(__SSE2__)
constexpr unsigned kBitsPerMark = 1;

Marks marksOf(const char* block) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    const auto marks = [](__m128i equal) {
        return static_cast<uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(equal)));
    };
    const __m128i space = _mm_set1_epi8(0x20);
    return {marks(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(','))),
            marks(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n'))),
            marks(_mm_cmpeq_epi8(_mm_max_epu8(bytes, space), space))};
}
#elif defined(__ARM_NEON)
constexpr unsigned kBitsPerMark = 4;

Marks marksOf(const char* block) {
    const uint8x16_t bytes = vld1q_u8(reinterpret_cast<const uint8_t*>(block));
    // Narrowed to four bits a byte; one of the four is kept, so that clearing the lowest set bit
    // clears a whole mark.
    const auto marks = [](uint8x16_t equal) {
        const uint8x8_t nibbles = vshrn_n_u16(vreinterpretq_u16_u8(equal), 4);
        return vget_lane_u64(vreinterpret_u64_u8(nibbles), 0) & 0x8888888888888888ULL;
    };
    return {marks(vceqq_u8(bytes, vdupq_n_u8(','))), marks(vceqq_u8(bytes, vdupq_n_u8('\n'))),
            marks(vcleq_u8(bytes, vdupq_n_u8(0x20)))};
}
#else
constexpr unsigned kBitsPerMark = 1;

Marks marksOf(const char* block) {
    Marks marks = {0, 0, 0};
    for (size_t i = 0; i < kBlock; ++i) {
        const unsigned char byte = static_cast<unsigned char>(block[i]);
        marks.commas |= uint64_t{byte == ','} << i;
        marks.newlines |= uint64_t{byte == '\n'} << i;
        marks.low |= uint64_t{byte <= 0x20} << i;
    }
    return marks;
}
#endif

// The marks of the block of `text` at `at`; past the end, bytes of 'x' (nothing marked).
Marks marksAt(std::string_view text, size_t at) {
    if (text.size() - at >= kBlock) return marksOf(text.data() + at);
    char padded[kBlock];
    memset(padded, 'x', kBlock);
    memcpy(padded, text.data() + at, text.size() - at);
    return marksOf(padded);
}

// The offset in its block of the first byte a mask marks.
size_t firstMarked(uint64_t mask) {
    return static_cast<size_t>(__builtin_ctzll(mask)) / kBitsPerMark;
}

}  // namespace

void FieldLines::Fields::add(std::string_view field) {
    roomFor(count, 1)[count] = field;
    ++count;
}

std::string_view* FieldLines::Fields::roomFor(size_t used, size_t more) {
    if (room.size() - used < more) room.resize(2 * room.size() + more);
    return room.data();
}

// The split of a line with blanks beside its commas: each separator takes the blanks before the
// comma (back to the field's start) and all the blanks after it.
bool FieldLines::splitSeparated(std::string_view line, Fields* fields) {
    fields->clear();
    const char* text = line.data();
    const size_t size = line.size();
    size_t start = 0;
    bool separated = false;
    bool bare = true;
    for (size_t i = 0; i < size; ++i) {
        if (text[i] != ',') continue;
        size_t end = i;
        while (end > start && isBlank(text[end - 1])) --end;
        fields->add(line.substr(start, end - start));
        start = i + 1;
        while (start < size && isBlank(text[start])) ++start;
        bare = bare && end == i && start == i + 1;
        i = start - 1;
        separated = true;
    }
    if (!separated || start < size) fields->add(line.substr(start));
    return bare;
}

bool FieldLines::split(std::string_view line, Fields* fields) {
    FieldLines lines(line);
    std::string_view first;
    bool bare = true;
    // An empty text is one empty field; a line break inside is a blank like any other.
    if (lines.next(&first, fields, &bare) && first.size() == line.size()) return bare;
    return splitSeparated(line, fields);
}

bool FieldLines::next(std::string_view* line, Fields* fields, bool* bare) {
    // Locals, not members: the fields written cannot alias them, so they stay in registers.
    const char* const data = text.data();
    const size_t size = text.size();
    const size_t begin = from;
    if (begin >= size) return false;
    const auto endLine = [&](size_t end) {
        *line = std::string_view(data + begin, end - begin);
        from = end + 1;
        block = from - from % kBlock;
        return true;
    };
    *bare = true;
    size_t start = begin;
    size_t at = block;
    // Each block's fields go through `out`, with room for a field per byte and one more.
    std::string_view* first = fields->roomFor(0, kBlock + 1);
    std::string_view* out = first;
    // The bytes of the first block that belong to earlier lines are not looked at.
    uint64_t mine = ~uint64_t{0} << (kBitsPerMark * (begin - at));
    for (; at < size; at += kBlock, mine = ~uint64_t{0}) {
        const Marks marks = marksAt(text, at);
        uint64_t commas = marks.commas & mine;
        uint64_t newline = 0;
        if (const uint64_t low = marks.low & mine; low != 0) {
            newline = marks.newlines & mine;
            const uint64_t before = newline == 0 ? ~uint64_t{0} : (newline & (0 - newline)) - 1;
            if ((low & ~newline & before) != 0) {
                // A blank: the separated split, on the whole line.
                const size_t found = text.find('\n', begin);
                const size_t end = found == std::string_view::npos ? size : found;
                *bare = splitSeparated(text.substr(begin, end - begin), fields);
                return endLine(end);
            }
            commas &= before;
        }
        if (fields->room.size() - static_cast<size_t>(out - first) < kBlock + 1) {
            const size_t used = static_cast<size_t>(out - first);
            first = fields->roomFor(used, kBlock + 1);
            out = first + used;
        }
        for (; commas != 0; commas &= commas - 1) {
            const size_t comma = at + firstMarked(commas);
            *out++ = std::string_view(data + start, comma - start);
            start = comma + 1;
        }
        if (newline != 0) {
            const size_t end = at + firstMarked(newline);
            if (start < end || out == first) *out++ = std::string_view(data + start, end - start);
            fields->count = static_cast<size_t>(out - first);
            return endLine(end);
        }
    }
    // The last block left room for one more.
    if (start < size || out == first) *out++ = std::string_view(data + start, size - start);
    fields->count = static_cast<size_t>(out - first);
    return endLine(size);
}
