#include "base/fieldlines.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

#include "base/text.h"

#if defined(__SSE2__)
FieldLines::Marks FieldLines::marksOf(const char* block) {
    const __m128i comma = _mm_set1_epi8(',');
    const __m128i newline = _mm_set1_epi8('\n');
    const __m128i space = _mm_set1_epi8(0x20);
    Marks marks;
    for (size_t i = 0; i < kBlock; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
        const auto bits = [i](__m128i equal) {
            return uint64_t{static_cast<unsigned>(_mm_movemask_epi8(equal))} << i;
        };
        marks.commas |= bits(_mm_cmpeq_epi8(bytes, comma));
        marks.newlines |= bits(_mm_cmpeq_epi8(bytes, newline));
        marks.low |= bits(_mm_cmpeq_epi8(_mm_max_epu8(bytes, space), space));
    }
    return marks;
}
#elif defined(__ARM_NEON)
namespace {

// NEON has no movemask: each byte's mark is weighed by its place among eight, and neighbours are
// added pairwise until each byte of the result holds the marks of eight bytes.
uint64_t bitsOf(const uint8x16_t (&equal)[4]) {
    const uint8x16_t weights = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    const uint8x16_t low = vpaddq_u8(vandq_u8(equal[0], weights), vandq_u8(equal[1], weights));
    const uint8x16_t high = vpaddq_u8(vandq_u8(equal[2], weights), vandq_u8(equal[3], weights));
    const uint8x16_t quarters = vpaddq_u8(low, high);
    return vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(quarters, quarters)), 0);
}

}  // namespace

FieldLines::Marks FieldLines::marksOf(const char* block) {
    uint8x16_t commas[4], newlines[4], low[4];
    for (size_t i = 0; i < 4; ++i) {
        const uint8x16_t bytes = vld1q_u8(reinterpret_cast<const uint8_t*>(block) + 16 * i);
        commas[i] = vceqq_u8(bytes, vdupq_n_u8(','));
        newlines[i] = vceqq_u8(bytes, vdupq_n_u8('\n'));
        low[i] = vcleq_u8(bytes, vdupq_n_u8(0x20));
    }
    Marks marks;
    marks.commas = bitsOf(commas);
    marks.newlines = bitsOf(newlines);
    marks.low = bitsOf(low);
    return marks;
}
#else
FieldLines::Marks FieldLines::marksOf(const char* block) {
    Marks marks;
    for (size_t i = 0; i < kBlock; ++i) {
        const unsigned char byte = static_cast<unsigned char>(block[i]);
        marks.commas |= uint64_t{byte == ','} << i;
        marks.newlines |= uint64_t{byte == '\n'} << i;
        marks.low |= uint64_t{byte <= 0x20} << i;
    }
    return marks;
}
#endif

FieldLines::Marks FieldLines::marksAt(std::string_view text, size_t at) {
    if (text.size() - at >= kBlock) return marksOf(text.data() + at);
    // Past the end, bytes of 'x': nothing marked.
    char padded[kBlock];
    memset(padded, 'x', kBlock);
    memcpy(padded, text.data() + at, text.size() - at);
    return marksOf(padded);
}

size_t FieldLines::cutBlock(std::string_view text, size_t at, const size_t* lineStarts,
                            Cursor* cursor, Cut* cuts) {
    const Marks marks = marksAt(text, at);
    size_t* out = cursor->out;
    bool low = cursor->low;
    Cut* cut = cuts;
    uint64_t commas = marks.commas;
    // The block's bytes of the line being cut: after a line break, those after it.
    uint64_t lineBytes = ~uint64_t{0};
    for (uint64_t breaks = marks.newlines;; breaks &= breaks - 1) {
        // The commas up to the next line break, or to the block's end, each begin a field.
        const uint64_t upToBreak = breaks ^ (breaks - 1);
        for (uint64_t mine = commas & upToBreak; mine != 0; mine &= mine - 1) {
            *out++ = at + 1 + static_cast<unsigned>(__builtin_ctzll(mine));
        }
        if (breaks == 0) break;
        commas &= ~upToBreak;
        const unsigned offset = static_cast<unsigned>(__builtin_ctzll(breaks));
        const size_t end = at + offset;
        const size_t* last = closeLine(out, end, lineStarts);
        const bool blanks = low || (marks.low & lineBytes & ((uint64_t{1} << offset) - 1)) != 0;
        *cut++ = {end, last, out - 1, blanks};
        lineStarts = out - 1;
        low = false;
        lineBytes = ~uint64_t{1} << offset;
    }
    cursor->out = out;
    cursor->low = low || (marks.low & lineBytes) != 0;
    return static_cast<size_t>(cut - cuts);
}

size_t* FieldLines::Fields::grow(size_t size) {
    room.resize(std::max(2 * room.size(), size));
    return room.data();
}

bool FieldLines::hasBareCommas(std::string_view line) {
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ',' &&
            ((i > 0 && isBlank(line[i - 1])) || (i + 1 < line.size() && isBlank(line[i + 1])))) {
            return false;
        }
    }
    return true;
}

// The split of a line with blanks beside its commas: each separator takes the blanks before the
// comma (back to the field's start) and all the blanks after it. The fields are joined again by
// bare commas, so that they are held as any other line's.
bool FieldLines::splitSeparated(std::string_view line, Fields* fields) {
    std::vector<char>& joined = fields->joined;
    std::vector<size_t>& starts = fields->joinedStarts;
    joined.clear();
    starts.clear();
    const auto add = [&](std::string_view field) {
        starts.push_back(joined.size());
        joined.insert(joined.end(), field.begin(), field.end());
        joined.push_back(',');
    };
    const char* text = line.data();
    const size_t size = line.size();
    size_t start = 0;
    bool separated = false;
    bool bare = true;
    for (size_t i = 0; i < size; ++i) {
        if (text[i] != ',') continue;
        size_t end = i;
        while (end > start && isBlank(text[end - 1])) --end;
        add(line.substr(start, end - start));
        start = i + 1;
        while (start < size && isBlank(text[start])) ++start;
        bare = bare && end == i && start == i + 1;
        i = start - 1;
        separated = true;
    }
    if (!separated || start < size) add(line.substr(start));
    starts.push_back(joined.size());
    fields->text = joined.data();
    fields->starts = starts.data();
    fields->count = starts.size() - 1;
    return bare;
}

bool FieldLines::split(std::string_view line, Fields* fields) {
    // An empty text is one empty field; a line break inside is a blank like any other.
    if (line.empty() || line.find('\n') != std::string_view::npos) {
        return splitSeparated(line, fields);
    }
    bool bare = true;
    forEach(line, fields,
            [&bare](std::string_view, const Fields&, bool lineBare) { bare = lineBare; });
    return bare;
}
